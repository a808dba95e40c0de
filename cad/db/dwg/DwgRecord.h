// One object of a DWG file after decoding: its common part and its own fields as DXF group
// codes and values, ready to be written as the structure a DXF reader takes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/ge/Point3d.h"

namespace cad::db::dwg {

// A Name tag's handle with this bit names the linetype at that place in the linetype table.
inline constexpr std::uint64_t kLinetypeIndex = std::uint64_t{1} << 63;

// One DXF tag of a decoded object, its value kept as decoded: numbers are turned into text
// only when the tag is written, so decoding allocates nothing for them.
struct DwgTag {
    enum class Kind : std::uint8_t {
        Text,     // `text`, bytes in the drawing's code page
        Marker,   // `marker`, a literal
        Integer,  // `integer`
        Real,     // `real`, written as DXF writes reals
        Handle,   // `handle`, written in hexadecimal
        // The name of the table record with handle `handle`, filled in once every record has
        // been read (DXF names layers, styles and blocks; DWG points at them).
        Name,
    };

    int code = 0;
    Kind kind = Kind::Text;
    union {
        std::int64_t integer = 0;
        double real;
        std::uint64_t handle;
        const char* marker;
    };
    std::string text;

    static DwgTag ofText(int code, std::string text) {
        DwgTag tag = of(code, Kind::Text);
        tag.text = std::move(text);
        return tag;
    }
    static DwgTag ofMarker(int code, const char* literal) {
        DwgTag tag = of(code, Kind::Marker);
        tag.marker = literal;
        return tag;
    }
    static DwgTag ofInteger(int code, std::int64_t value) {
        DwgTag tag = of(code, Kind::Integer);
        tag.integer = value;
        return tag;
    }
    static DwgTag ofReal(int code, double value) {
        DwgTag tag = of(code, Kind::Real);
        tag.real = value;
        return tag;
    }
    static DwgTag ofHandle(int code, std::uint64_t value) {
        DwgTag tag = of(code, Kind::Handle);
        tag.handle = value;
        return tag;
    }
    static DwgTag ofName(int code, std::uint64_t record) {
        DwgTag tag = of(code, Kind::Name);
        tag.handle = record;
        return tag;
    }

private:
    static DwgTag of(int code, Kind kind) {
        DwgTag tag;
        tag.code = code;
        tag.kind = kind;
        return tag;
    }
};

struct DwgRecord {
    std::uint64_t handle = 0;
    int type = 0;          // the object type number in the file
    // "LINE", "DICTIONARY", "BLOCK_RECORD"; the table's name for controls. Views a name that
    // outlives the reading: a literal or the file's class list.
    std::string_view dxfName;
    bool isEntity = false;
    bool isControl = false;  // a symbol table
    std::uint64_t owner = 0;
    std::vector<std::uint64_t> reactors;
    std::uint64_t xdictionary = 0;

    // Entities.
    int entityMode = 0;  // 0 owner named, 1 paper space, 2 model space
    std::uint64_t layer = 0;
    std::uint64_t linetype = 0;  // 0: by layer, or what linetypeName says
    std::string_view linetypeName;  // "ByBlock", "Continuous" when stored as a flag
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
