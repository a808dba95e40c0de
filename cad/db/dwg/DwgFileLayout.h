// The frame of an R13 to R2000 DWG file: its version, code page and section locators, the
// classes, and the object map (where each object's record starts). Objects themselves are
// decoded later, one at a time, from the offsets found here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cad::db::dwg {

// A structural failure, with the byte offset at which it was found and what was expected.
struct DwgError {
    std::uint64_t offset = 0;
    std::string message;  // complete: "offset 25: expected ..."
};

DwgError dwgError(std::uint64_t offset, std::string_view what);

enum class DwgVersion { R13, R14, R2000 };

struct DwgClass {
    int number = 0;  // the object type number objects of the class carry (500 and up)
    int proxyFlags = 0;
    std::string appName;
    std::string cppName;
    std::string dxfName;
    bool wasZombie = false;
    bool isEntity = false;
};

struct DwgMapEntry {
    std::uint64_t handle = 0;
    std::int64_t offset = 0;  // from the start of the file
};

struct DwgFileLayout {
    DwgVersion version = DwgVersion::R2000;
    std::string acadVer;  // "AC1015"
    int codePageIndex = 0;
    std::string codePageName;  // as a DXF header names it: "ANSI_1252"
    std::int64_t headerOffset = 0, headerSize = 0;
    std::vector<DwgClass> classes;
    std::vector<DwgMapEntry> objects;  // in map order
    // Checks that failed without making the file unreadable (a section's check value).
    std::vector<std::string> warnings;
};

// Whether the bytes start like a DWG file ("AC1" and three digits), whatever its version.
bool looksLikeDwg(std::string_view bytes);

// Reads the frame. DWG 2004 and later, and files before R13, are refused with a message that
// names the version.
std::optional<DwgError> readFileLayout(std::string_view bytes, DwgFileLayout& layout);

// The DXF name of a DWG code page number ("ANSI_1252"); empty when the number is unknown.
std::string_view dwgCodePageName(int index);

}  // namespace cad::db::dwg
