// One object of a DWG file after decoding: its common part and its own fields as DXF group
// codes and values, ready to be written as the structure a DXF reader takes.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "cad/ge/Point3d.h"

namespace cad::db::dwg {

// A DwgTag::nameOf with this bit names the linetype at that place in the linetype table.
inline constexpr std::uint64_t kLinetypeIndex = std::uint64_t{1} << 63;

// A real as a DXF value: the shortest text that reads back the same, with a decimal point even
// for whole numbers, as DXF files write reals; what is not a number reads as 0.
inline std::string formatReal(double value) {
    if (!std::isfinite(value)) value = 0.0;
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, result.ptr);
    if (text.find_first_of(".e") == std::string::npos) text += ".0";
    return text;
}

struct DwgTag {
    int code = 0;
    std::string value;  // as DXF text; bytes in the drawing's code page
    // Nonzero: the value is the name of the table record with this handle, filled in once
    // every record has been read (DXF names layers, styles and blocks; DWG points at them).
    std::uint64_t nameOf = 0;
};

struct DwgRecord {
    std::uint64_t handle = 0;
    int type = 0;          // the object type number in the file
    std::string dxfName;   // "LINE", "DICTIONARY", "BLOCK_RECORD"; the table's name for controls
    bool isEntity = false;
    bool isControl = false;  // a symbol table
    std::uint64_t owner = 0;
    std::vector<std::uint64_t> reactors;
    std::uint64_t xdictionary = 0;

    // Entities.
    int entityMode = 0;  // 0 owner named, 1 paper space, 2 model space
    std::uint64_t layer = 0;
    std::uint64_t linetype = 0;  // 0: by layer, or what linetypeName says
    std::string linetypeName;    // "BYBLOCK", "CONTINUOUS" when stored as a flag
    int color = 256;
    double linetypeScale = 1.0;
    bool invisible = false;
    int lineweight = -1;

    // Links that decide where things are written.
    std::uint64_t seqend = 0;        // INSERT, POLYLINE: the SEQEND that closes their list
    std::uint64_t blockEntity = 0;   // BLOCK_RECORD: its BLOCK and ENDBLK
    std::uint64_t endblkEntity = 0;
    std::vector<std::uint64_t> entries;  // symbol tables: their records
    std::string name;                    // symbol table records
    int blockFlags = 0;                  // BLOCK_RECORD: the 70 of its BLOCK
    ge::Point3d basePoint;
    std::string xrefPath;

    std::vector<DwgTag> tags;   // the fields after the common part, subclass markers included
    std::vector<DwgTag> xdata;  // extended data, from its first 1001
};

}  // namespace cad::db::dwg
