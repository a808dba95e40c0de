// DWG 2000 writing: the database's DXF structures encoded as DWG records (each a data stream
// and, from the bit its header names, a handle stream), then the header variables, the
// classes, the records and the object map that locates them, each section with its check
// value.
#include "cad/db/dwg/DwgWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>
#include <optional>
#include <tuple>
#include <unordered_map>

#include "cad/db/dwg/BitWriter.h"
#include "cad/db/dwg/DwgCrc.h"
#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/sys/AsciiCase.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {
namespace {

constexpr unsigned char kFileSentinel[16] = {0x95, 0xA0, 0x4E, 0x28, 0x99, 0x82, 0x1A, 0xE5,
                                             0x5E, 0x41, 0xE0, 0x5F, 0x9D, 0x3A, 0x4D, 0x00};
constexpr unsigned char kHeaderStart[16] = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                            0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};
constexpr unsigned char kHeaderEnd[16] = {0x30, 0x84, 0xE0, 0xDC, 0x02, 0x21, 0xC7, 0x56,
                                          0xA0, 0x83, 0x97, 0x47, 0xB1, 0x92, 0xCC, 0xA0};
constexpr unsigned char kClassesStart[16] = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                             0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};
constexpr unsigned char kClassesEnd[16] = {0x72, 0x5E, 0x3B, 0x47, 0x3B, 0x56, 0x07, 0x3A,
                                           0x3F, 0x23, 0x0B, 0xA0, 0x18, 0x30, 0x49, 0x75};

constexpr double kRadians = std::numbers::pi / 180.0;

// Handle codes of the references a record holds.
constexpr std::uint8_t kSoftOwner = 2, kHardOwner = 3, kSoftPointer = 4, kHardPointer = 5;

std::uint64_t parseHandle(const std::string& text) {
    return std::strtoull(text.c_str(), nullptr, 16);
}

// One DXF structure, its common part taken apart.
struct Item {
    std::string type;
    std::vector<std::pair<int, std::string>> tags;  // after the common part
    std::uint64_t handle = 0;
    std::uint64_t owner = 0;
    std::uint64_t xdictionary = 0;
    std::vector<std::uint64_t> reactors;
    std::vector<std::pair<int, std::string>> xdata;  // from the first 1001
    bool paper = false;

    const std::string* find(int code, int nth = 0) const {
        for (const auto& [c, v] : tags) {
            if (c == code && nth-- == 0) return &v;
        }
        return nullptr;
    }
    // The first tag of `code` after the marker `subclass`.
    const std::string* findIn(std::string_view subclass, int code) const {
        bool inside = false;
        for (const auto& [c, v] : tags) {
            if (c == 100) inside = v == subclass;
            if (inside && c == code) return &v;
        }
        return nullptr;
    }
    double realIn(std::string_view subclass, int code, double fallback = 0.0) const {
        const std::string* v = findIn(subclass, code);
        return v ? std::strtod(v->c_str(), nullptr) : fallback;
    }
    int integerIn(std::string_view subclass, int code, int fallback = 0) const {
        const std::string* v = findIn(subclass, code);
        return v ? static_cast<int>(std::strtol(v->c_str(), nullptr, 10)) : fallback;
    }
    std::string textIn(std::string_view subclass, int code) const {
        const std::string* v = findIn(subclass, code);
        return v ? sys::fromCaretForm(*v) : std::string();
    }
    ge::Point3d pointIn(std::string_view subclass, int code, const ge::Point3d& fallback = {}) const {
        return {realIn(subclass, code, fallback.x), realIn(subclass, code + 10, fallback.y),
                realIn(subclass, code + 20, fallback.z)};
    }
    std::string text(int code, std::string fallback = {}) const {
        const std::string* v = find(code);
        return v ? sys::fromCaretForm(*v) : fallback;
    }
    double real(int code, double fallback = 0.0) const {
        const std::string* v = find(code);
        return v ? std::strtod(v->c_str(), nullptr) : fallback;
    }
    int integer(int code, int fallback = 0) const {
        const std::string* v = find(code);
        return v ? static_cast<int>(std::strtol(v->c_str(), nullptr, 10)) : fallback;
    }
    std::uint64_t handleOf(int code) const {
        const std::string* v = find(code);
        return v ? parseHandle(*v) : 0;
    }
    ge::Point3d point(int code, const ge::Point3d& fallback = {}) const {
        return {real(code, fallback.x), real(code + 10, fallback.y), real(code + 20, fallback.z)};
    }
};

// Reads a structure's tags in order, as DXF lays out repeated groups (hatch paths, edges):
// each read takes the next tag when it has the code asked for, or gives the fallback.
class Cursor {
public:
    Cursor(const std::vector<std::pair<int, std::string>>& tags, std::size_t from)
        : tags_(tags), at_(from) {}
    bool next(int code) const { return at_ < tags_.size() && tags_[at_].first == code; }
    double real(int code, double fallback = 0.0) {
        return next(code) ? std::strtod(tags_[at_++].second.c_str(), nullptr) : fallback;
    }
    long integer(int code, long fallback = 0) {
        return next(code) ? std::strtol(tags_[at_++].second.c_str(), nullptr, 10) : fallback;
    }
    std::uint64_t handle(int code) {
        return next(code) ? parseHandle(tags_[at_++].second) : 0;
    }
    ge::Point3d point(int code, bool withZ = true) {
        const double x = real(code);
        const double y = real(code + 10);
        return {x, y, withZ ? real(code + 20) : 0.0};
    }
    // Moves on to the next tag of `code`, if there is one.
    void seek(int code) {
        while (at_ < tags_.size() && tags_[at_].first != code) ++at_;
    }

private:
    const std::vector<std::pair<int, std::string>>& tags_;
    std::size_t at_;
};

Item itemFrom(dxf::TagSpan span) {
    Item item;
    item.type = std::string(dxf::trimBlanks(span[0].value));
    bool body = false, extended = false;
    for (std::size_t i = 1; i < span.size(); ++i) {
        const int code = span[i].code;
        std::string value(span[i].code >= 100 && span[i].code < 1000 && span[i].code != 100
                              ? dxf::trimBlanks(span[i].value)
                              : span[i].value);
        // Extended data starts at its first application name; an xrecord's data may hold
        // other codes from 1000 up.
        if (code == 1001 || extended) {
            extended = true;
            item.xdata.emplace_back(code, std::move(value));
            continue;
        }
        if (!body && code == 102 && value.size() > 1 && value[0] == '{') {
            const bool reactors = value == "{ACAD_REACTORS";
            const bool dictionary = value == "{ACAD_XDICTIONARY";
            for (++i; i < span.size() && span[i].code != 102; ++i) {
                const std::uint64_t h = parseHandle(std::string(dxf::trimBlanks(span[i].value)));
                if (reactors && span[i].code == 330) item.reactors.push_back(h);
                if (dictionary && span[i].code == 360) item.xdictionary = h;
            }
            continue;
        }
        if (!body && (code == 5 || code == 105) && item.handle == 0) {
            item.handle = parseHandle(value);
            continue;
        }
        if (!body && code == 330) {
            item.owner = parseHandle(value);
            continue;
        }
        if (code == 100) body = true;
        if (code == 67 && dxf::trimBlanks(value) == "1") item.paper = true;
        item.tags.emplace_back(code, std::move(value));
    }
    return item;
}

int lineweightIndex(int weight) {
    static constexpr std::array<int, 24> kWeights{0,  5,  9,  13, 15, 18,  20,  25,
                                                  30, 35, 40, 50, 53, 60,  70,  80,
                                                  90, 100, 106, 120, 140, 158, 200, 211};
    if (weight == -1) return 29;
    if (weight == -2) return 30;
    if (weight == -3) return 31;
    for (std::size_t i = 0; i < kWeights.size(); ++i) {
        if (kWeights[i] >= weight) return static_cast<int>(i);
    }
    return 23;
}

int codePageIndex(std::string_view name) {
    for (int i = 0; i < 45; ++i) {
        if (!dwgCodePageName(i).empty() && sys::equalNoCase(dwgCodePageName(i), name)) {
            return i;
        }
    }
    return 30;  // ANSI_1252
}

// One record being encoded: its data stream and its handle stream.
struct Record {
    BitWriter data;
    BitWriter handles;
    std::size_t sizeAt = 0;  // where the size in bits goes, once known
};

class Encoder {
public:
    Encoder(std::vector<Item>& items, std::vector<std::string>& messages,
            const dxf::DxfStructure& structure, bool r2000)
        : items_(items), messages_(messages), structure_(structure), r2000_(r2000) {}

    std::string file();

private:
    struct Table {
        std::uint64_t control = 0;
        std::vector<std::uint64_t> entries;
    };

    std::uint64_t nameToHandle(std::string_view table, const std::string& name) const {
        const auto it = names_.find(std::string(table) + "\n" + sys::asciiUpper(name));
        return it == names_.end() ? 0 : it->second;
    }
    std::string headerText(std::string_view name, int code, std::string fallback = {}) const {
        if (const dxf::HeaderVariable* v = structure_.variable(name)) {
            for (const dxf::Tag& tag : v->tags) {
                if (tag.code == code) return std::string(dxf::trimBlanks(tag.value));
            }
        }
        return fallback;
    }
    double headerReal(std::string_view name, double fallback, int code = 40) const {
        const std::string v = headerText(name, code);
        return v.empty() ? fallback : std::strtod(v.c_str(), nullptr);
    }
    int headerInt(std::string_view name, int fallback, int code = 70) const {
        const std::string v = headerText(name, code);
        return v.empty() ? fallback : static_cast<int>(std::strtol(v.c_str(), nullptr, 10));
    }
    ge::Point3d headerPoint(std::string_view name, const ge::Point3d& fallback) const {
        return {headerReal(name, fallback.x, 10), headerReal(name, fallback.y, 20),
                headerReal(name, fallback.z, 30)};
    }

    void index();
    std::optional<int> typeOf(const Item& item) const;
    bool isEntity(int type) const {
        return type < 0x2A || (type >= 0x2B && type <= 0x2F) || type == 0x4D || type == 0x4E;
    }

    void commonObject(Record& r, const Item& item, int type);
    void commonEntity(Record& r, const Item& item, int type);
    void extendedData(BitWriter& w, const Item& item);
    void tableEntryStart(Record& r, const Item& item, int flags);
    bool encode(Record& r, const Item& item, int type);
    std::string finish(Record& r);
    std::string headerSection();
    std::string classesSection();

    std::vector<Item>& items_;
    std::vector<std::string>& messages_;
    const dxf::DxfStructure& structure_;
    std::unordered_map<std::string, std::uint64_t> names_;  // "LAYER\nNAME" -> handle
    std::map<std::string, Table> tables_;                    // by DXF table name
    std::unordered_map<std::uint64_t, const Item*> byHandle_;
    // Entities of each owner in drawing order, for the previous/next links.
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> owned_;
    std::unordered_map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> links_;
    std::unordered_map<std::uint64_t, std::uint64_t> blockOf_;  // BLOCK or ENDBLK -> record
    std::unordered_map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> blockEnds_;
    std::uint64_t modelSpace_ = 0, paperSpace_ = 0, handseed_ = 0;
    std::vector<std::pair<std::string, int>> classes_;  // DXF name, number
    std::map<std::string, int> leftOut_;
    std::vector<std::uint64_t> linetypeOrder_;  // the linetype control's counted entries
    bool r2000_ = true;  // false: R14
    int number_ = 0;     // the type number the record carries, when a class gives it
    int codePage_ = 30;
};

void Encoder::index() {
    std::uint64_t currentTable = 0;
    std::string currentTableName;
    std::uint64_t currentBlock = 0;
    std::uint64_t lastParent = 0;
    for (Item& item : items_) {
        handseed_ = std::max(handseed_, item.handle);
        byHandle_[item.handle] = &item;
        if (item.type == "TABLE") {
            currentTable = item.handle;
            currentTableName = item.text(2);
            tables_[currentTableName].control = item.handle;
            continue;
        }
        if (item.type == "BLOCK_RECORD" || item.type == "LAYER" || item.type == "LTYPE" ||
            item.type == "STYLE" || item.type == "DIMSTYLE" || item.type == "APPID" ||
            item.type == "VPORT" || item.type == "VIEW" || item.type == "UCS") {
            if (item.type == currentTableName) tables_[currentTableName].entries.push_back(item.handle);
            item.owner = currentTable;
            names_[item.type + "\n" + sys::asciiUpper(item.text(2))] = item.handle;
            if (item.type == "BLOCK_RECORD") {
                const std::string name = sys::asciiUpper(item.text(2));
                if (name == "*MODEL_SPACE") modelSpace_ = item.handle;
                if (name == "*PAPER_SPACE") paperSpace_ = item.handle;
            }
            continue;
        }
        if (item.type == "BLOCK") {
            currentBlock = item.owner;
            blockEnds_[currentBlock].first = item.handle;
            blockOf_[item.handle] = currentBlock;
            continue;
        }
        if (item.type == "ENDBLK") {
            blockEnds_[item.owner].second = item.handle;
            blockOf_[item.handle] = item.owner;
            continue;
        }
        const auto type = typeOf(item);
        if (!type || !isEntity(*type)) continue;
        // Attributes, vertices and SEQEND belong to the INSERT or POLYLINE before them.
        if (item.type == "ATTRIB" || item.type == "VERTEX" || item.type == "SEQEND") {
            if (item.owner == 0) item.owner = lastParent;
        } else {
            lastParent = item.handle;
        }
        owned_[item.owner].push_back(item.handle);
    }
    for (const auto& [owner, list] : owned_) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            links_[list[i]] = {i > 0 ? list[i - 1] : 0, i + 1 < list.size() ? list[i + 1] : 0};
        }
    }
    const std::string page = headerText("$DWGCODEPAGE", 3, "ANSI_1252");
    codePage_ = codePageIndex(page);
}

std::optional<int> Encoder::typeOf(const Item& item) const {
    static const std::map<std::string, int, std::less<>> kTypes{
        {"TEXT", 0x01},        {"ATTRIB", 0x02},     {"ATTDEF", 0x03},    {"BLOCK", 0x04},
        {"ENDBLK", 0x05},      {"SEQEND", 0x06},     {"INSERT", 0x07},    {"ARC", 0x11},
        {"CIRCLE", 0x12},      {"LINE", 0x13},       {"POINT", 0x1B},     {"SOLID", 0x1F},
        {"TRACE", 0x20},       {"VIEWPORT", 0x22},   {"ELLIPSE", 0x23},  {"3DFACE", 0x1C},
        {"SPLINE", 0x24},      {"RAY", 0x28},        {"XLINE", 0x29},     {"HATCH", 0x4E},
        {"LEADER", 0x2D},      {"TOLERANCE", 0x2E},    {"DICTIONARY", 0x2A}, {"MTEXT", 0x2C},
        {"BLOCK_RECORD", 0x31}, {"LAYER", 0x33},     {"STYLE", 0x35},     {"LTYPE", 0x39},
        {"VIEW", 0x3D},        {"UCS", 0x3F},        {"VPORT", 0x41},     {"APPID", 0x43},
        {"DIMSTYLE", 0x45},    {"GROUP", 0x48},      {"MLINESTYLE", 0x49},      {"LWPOLYLINE", 0x4D}, {"XRECORD", 0x4F},
        {"ACDBPLACEHOLDER", 0x50}, {"LAYOUT", 0x52},
    };
    if (item.type == "DIMENSION") {
        switch (item.integer(70) & 7) {
            case 0: return item.findIn("AcDbRotatedDimension", 100) || item.find(50) ? 0x15 : 0x16;
            case 1: return 0x16;
            case 2: return 0x18;
            case 3: return 0x1A;
            case 4: return 0x19;
            case 5: return 0x17;
            default: return 0x14;
        }
    }
    if (item.type == "POLYLINE") {
        const int flags = item.integer(70);
        return (flags & 64) ? 0x1D : (flags & 16) ? 0x1E : (flags & 8) ? 0x10 : 0x0F;
    }
    if (item.type == "VERTEX") {
        const int flags = item.integer(70);
        if (flags & 128) return (flags & 64) ? 0x0D : 0x0E;
        return (flags & 64) ? 0x0C : (flags & 32) ? 0x0B : 0x0A;
    }
    // R14 has no layouts, and a few types that 2000 made built-in are classes there.
    if (!r2000_ && item.type == "LAYOUT") return std::nullopt;
    const auto it = kTypes.find(item.type);
    if (it != kTypes.end()) return it->second;
    for (const auto& [name, number] : classes_) {
        if (name == item.type) return number;
    }
    return std::nullopt;
}

void Encoder::extendedData(BitWriter& w, const Item& item) {
    // Each application's items, grouped under its APPID.
    std::size_t i = 0;
    while (i < item.xdata.size()) {
        if (item.xdata[i].first != 1001) {
            ++i;
            continue;
        }
        const std::uint64_t app = nameToHandle("APPID", item.xdata[i].second);
        BitWriter group;
        for (++i; i < item.xdata.size() && item.xdata[i].first != 1001; ++i) {
            const int code = item.xdata[i].first;
            const std::string& value = item.xdata[i].second;
            switch (code) {
                case 1000: {
                    const std::string bytes = sys::fromCaretForm(value).substr(0, 255);
                    group.rawChar(static_cast<std::uint8_t>(code - 1000));
                    group.rawChar(static_cast<std::uint8_t>(bytes.size()));
                    group.rawShort(static_cast<std::int16_t>(codePage_));
                    group.bytes(bytes);
                    break;
                }
                case 1002:
                    group.rawChar(2);
                    group.rawChar(dxf::trimBlanks(value) == "}" ? 1 : 0);
                    break;
                case 1003:
                case 1005: {
                    const std::uint64_t h = code == 1003 ? nameToHandle("LAYER", value)
                                                         : parseHandle(value);
                    group.rawChar(static_cast<std::uint8_t>(code - 1000));
                    for (int b = 7; b >= 0; --b) group.rawChar(static_cast<std::uint8_t>(h >> (8 * b)));
                    break;
                }
                case 1004: {
                    std::string bytes;
                    for (std::size_t k = 0; k + 1 < value.size(); k += 2) {
                        bytes += static_cast<char>(std::strtol(value.substr(k, 2).c_str(), nullptr, 16));
                    }
                    group.rawChar(4);
                    group.rawChar(static_cast<std::uint8_t>(std::min<std::size_t>(bytes.size(), 255)));
                    group.bytes(std::string_view(bytes).substr(0, 255));
                    break;
                }
                case 1010: case 1011: case 1012: case 1013: {
                    ge::Point3d p{std::strtod(value.c_str(), nullptr), 0, 0};
                    if (i + 1 < item.xdata.size() && item.xdata[i + 1].first == code + 10) {
                        p.y = std::strtod(item.xdata[++i].second.c_str(), nullptr);
                    }
                    if (i + 1 < item.xdata.size() && item.xdata[i + 1].first == code + 20) {
                        p.z = std::strtod(item.xdata[++i].second.c_str(), nullptr);
                    }
                    group.rawChar(static_cast<std::uint8_t>(code - 1000));
                    group.point3Raw(p);
                    break;
                }
                case 1040: case 1041: case 1042:
                    group.rawChar(static_cast<std::uint8_t>(code - 1000));
                    group.rawDouble(std::strtod(value.c_str(), nullptr));
                    break;
                case 1070:
                    group.rawChar(70);
                    group.rawShort(static_cast<std::int16_t>(std::strtol(value.c_str(), nullptr, 10)));
                    break;
                case 1071:
                    group.rawChar(71);
                    group.rawLong(static_cast<std::int32_t>(std::strtol(value.c_str(), nullptr, 10)));
                    break;
                default:
                    break;  // codes 1020-1039 are consumed with their 1010-1013
            }
        }
        if (app == 0 || group.bytes().empty()) continue;
        w.bitShort(static_cast<std::int16_t>(group.bytes().size()));
        w.handle(kHardPointer, app);
        w.bytes(group.bytes());
    }
    w.bitShort(0);
}

void Encoder::commonObject(Record& r, const Item& item, int type) {
    r.data.bitShort(static_cast<std::int16_t>(number_ ? number_ : type));
    // The size in bits, patched once the data is complete, stands before the handle from
    // 2000 on, after the extended data before.
    if (r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
    r.data.handle(0, item.handle);
    extendedData(r.data, item);
    if (!r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
    r.data.bitLong(static_cast<std::int32_t>(item.reactors.size()));
    r.handles.handle(kSoftPointer, item.owner);
    for (const std::uint64_t reactor : item.reactors) r.handles.handle(kSoftPointer, reactor);
    r.handles.handle(kHardOwner, item.xdictionary);
}

void Encoder::commonEntity(Record& r, const Item& item, int type) {
    r.data.bitShort(static_cast<std::int16_t>(number_ ? number_ : type));
    if (r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
    r.data.handle(0, item.handle);
    extendedData(r.data, item);
    r.data.bit(false);  // no preview graphics
    if (!r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
    std::uint64_t owner = item.owner;
    if (type == 0x04 || type == 0x05) owner = blockOf_[item.handle];
    int mode = 0;
    if (owner == modelSpace_ && type != 0x04 && type != 0x05) mode = 2;
    if (owner == paperSpace_ && type != 0x04 && type != 0x05) mode = 1;
    r.data.twoBits(static_cast<std::uint8_t>(mode));
    r.data.bitLong(static_cast<std::int32_t>(item.reactors.size()));
    const auto link = links_.find(item.handle);
    const bool noLinks = link == links_.end();
    std::uint64_t layer = nameToHandle("LAYER", item.text(8, "0"));
    if (layer == 0) layer = nameToHandle("LAYER", "0");
    if (!r2000_) {
        // R14 names every linetype but "by layer" by its record.
        const std::string linetype = item.text(6);
        const std::uint64_t handle = linetype.empty() || sys::asciiUpper(linetype) == "BYLAYER"
                                         ? 0
                                         : nameToHandle("LTYPE", linetype);
        r.data.bit(handle == 0);
        r.data.bit(noLinks);
        const std::string* color = item.find(62);
        r.data.bitShort(static_cast<std::int16_t>(color ? std::strtol(color->c_str(), nullptr, 10) : 256));
        r.data.bitDouble(item.real(48, 1.0));
        r.data.bitShort(static_cast<std::int16_t>(item.integer(60)));
        if (mode == 0) r.handles.handle(kSoftPointer, owner);
        for (const std::uint64_t reactor : item.reactors) r.handles.handle(kSoftPointer, reactor);
        r.handles.handle(kHardOwner, item.xdictionary);
        r.handles.handle(kHardPointer, layer);
        if (handle != 0) r.handles.handle(kHardPointer, handle);
        if (!noLinks) {
            r.handles.handle(kSoftPointer, link->second.first);
            r.handles.handle(kSoftPointer, link->second.second);
        }
        return;
    }
    r.data.bit(noLinks);
    const std::string* color = item.find(62);
    r.data.bitShort(static_cast<std::int16_t>(color ? std::strtol(color->c_str(), nullptr, 10) : 256));
    r.data.bitDouble(item.real(48, 1.0));
    const std::string linetype = item.text(6);
    std::uint8_t linetypeFlags = 0;
    std::uint64_t linetypeHandle = 0;
    if (!linetype.empty()) {
        const std::string upper = sys::asciiUpper(linetype);
        if (upper == "BYBLOCK") {
            linetypeFlags = 1;
        } else if (upper == "CONTINUOUS") {
            linetypeFlags = 2;
        } else if (upper != "BYLAYER" && (linetypeHandle = nameToHandle("LTYPE", linetype)) != 0) {
            linetypeFlags = 3;
        }
    }
    r.data.twoBits(linetypeFlags);
    r.data.twoBits(0);  // plot style by layer
    r.data.bitShort(static_cast<std::int16_t>(item.integer(60)));
    r.data.rawChar(static_cast<std::uint8_t>(lineweightIndex(item.integer(370, -1))));
    if (mode == 0) r.handles.handle(kSoftPointer, owner);
    for (const std::uint64_t reactor : item.reactors) r.handles.handle(kSoftPointer, reactor);
    r.handles.handle(kHardOwner, item.xdictionary);
    if (!noLinks) {
        r.handles.handle(kSoftPointer, link->second.first);
        r.handles.handle(kSoftPointer, link->second.second);
    }
    r.handles.handle(kHardPointer, layer);
    if (linetypeFlags == 3) r.handles.handle(kHardPointer, linetypeHandle);
}

void Encoder::tableEntryStart(Record& r, const Item& item, int flags) {
    r.data.text(item.text(2));
    r.data.bit(flags & 64);
    r.data.bitShort(0);
    r.data.bit(flags & 16);
}

bool Encoder::encode(Record& r, const Item& item, int type) {
    BitWriter& d = r.data;
    BitWriter& h = r.handles;
    const auto extrusion = [&] { return item.point(210, {0, 0, 1}); };
    switch (type) {
        case 0x01:
        case 0x02:
        case 0x03: {
            commonEntity(r, item, type);
            const ge::Point3d insertion = item.point(10);
            const std::string* alignX = item.find(11);
            const ge::Point3d alignment = item.point(11, insertion);
            const double oblique = item.real(51) * kRadians;
            const double rotation = item.real(50) * kRadians;
            const double width = item.real(41, 1.0);
            const int generation = item.integer(71);
            const int horizontal = item.integer(72);
            const std::string* verticalTag =
                type == 0x02 ? item.findIn("AcDbAttribute", 74)
                             : item.findIn("AcDbAttributeDefinition", 74);
            // TEXT carries its vertical alignment in a second AcDbText segment, attributes in
            // their own.
            int vertical = 0;
            if (type == 0x01) {
                int seen = 0;
                for (const auto& [c, v] : item.tags) {
                    if (c == 100 && v == "AcDbText") ++seen;
                    if (seen == 2 && c == 73) vertical = static_cast<int>(std::strtol(v.c_str(), nullptr, 10));
                }
            } else if (verticalTag) {
                vertical = static_cast<int>(std::strtol(verticalTag->c_str(), nullptr, 10));
            }
            if (!r2000_) {
                d.bitDouble(insertion.z);
                d.point2Raw(insertion);
                d.point2Raw(alignX ? alignment : insertion);
                d.point3Bit(extrusion());
                d.bitDouble(item.real(39));
                d.bitDouble(oblique);
                d.bitDouble(rotation);
                d.bitDouble(item.real(40, 1.0));
                d.bitDouble(width);
                d.text(item.text(1));
                d.bitShort(static_cast<std::int16_t>(generation));
                d.bitShort(static_cast<std::int16_t>(horizontal));
                d.bitShort(static_cast<std::int16_t>(vertical));
            }
            std::uint8_t flags = 0;
            if (insertion.z == 0.0) flags |= 0x01;
            if (!alignX) flags |= 0x02;
            if (oblique == 0.0) flags |= 0x04;
            if (rotation == 0.0) flags |= 0x08;
            if (width == 1.0) flags |= 0x10;
            if (generation == 0) flags |= 0x20;
            if (horizontal == 0) flags |= 0x40;
            if (vertical == 0) flags |= 0x80;
            if (r2000_) {
                d.rawChar(flags);
                if (!(flags & 0x01)) d.rawDouble(insertion.z);
                d.point2Raw(insertion);
                if (!(flags & 0x02)) {
                    d.defaultDouble(alignment.x, insertion.x);
                    d.defaultDouble(alignment.y, insertion.y);
                }
                d.extrusion(extrusion());
                d.thickness(item.real(39));
                if (!(flags & 0x04)) d.rawDouble(oblique);
                if (!(flags & 0x08)) d.rawDouble(rotation);
                d.rawDouble(item.real(40, 1.0));
                if (!(flags & 0x10)) d.rawDouble(width);
                d.text(item.text(1));
                if (!(flags & 0x20)) d.bitShort(static_cast<std::int16_t>(generation));
                if (!(flags & 0x40)) d.bitShort(static_cast<std::int16_t>(horizontal));
                if (!(flags & 0x80)) d.bitShort(static_cast<std::int16_t>(vertical));
            }
            if (type != 0x01) {
                d.text(item.text(2));
                d.bitShort(0);
                d.rawChar(static_cast<std::uint8_t>(item.integer(70)));
                if (type == 0x03) d.text(item.text(3));
            }
            std::uint64_t style = nameToHandle("STYLE", item.text(7, "Standard"));
            h.handle(kHardPointer, style);
            return true;
        }
        case 0x04:
            commonEntity(r, item, type);
            d.text(item.text(2));
            return true;
        case 0x05:
        case 0x06:
            commonEntity(r, item, type);
            return true;
        case 0x07: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            const double sx = item.real(41, 1.0), sy = item.real(42, 1.0), sz = item.real(43, 1.0);
            if (!r2000_) {
                d.point3Bit({sx, sy, sz});
            } else if (sx == 1.0 && sy == 1.0 && sz == 1.0) {
                d.twoBits(3);
            } else if (sx == 1.0) {
                d.twoBits(1);
                d.defaultDouble(sy, 1.0);
                d.defaultDouble(sz, 1.0);
            } else if (sx == sy && sx == sz) {
                d.twoBits(2);
                d.rawDouble(sx);
            } else {
                d.twoBits(0);
                d.rawDouble(sx);
                d.defaultDouble(sy, sx);
                d.defaultDouble(sz, sx);
            }
            d.bitDouble(item.real(50) * kRadians);
            d.point3Bit(extrusion());
            const auto& children = owned_[item.handle];
            std::vector<std::uint64_t> attributes;
            std::uint64_t seqend = 0;
            for (const std::uint64_t child : children) {
                const Item* c = byHandle_[child];
                if (c && c->type == "ATTRIB") attributes.push_back(child);
                if (c && c->type == "SEQEND") seqend = child;
            }
            const bool hasAttributes = !attributes.empty() && seqend != 0;
            d.bit(hasAttributes);
            h.handle(kHardPointer, nameToHandle("BLOCK_RECORD", item.text(2)));
            if (hasAttributes) {
                h.handle(kSoftPointer, attributes.front());
                h.handle(kSoftPointer, attributes.back());
                h.handle(kHardOwner, seqend);
            }
            return true;
        }
        case 0x0A: {
            commonEntity(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(70)));
            d.point3Bit(item.point(10));
            const double start = item.real(40), end = item.real(41);
            if (start == end && start != 0.0) {
                d.bitDouble(-start);
            } else {
                d.bitDouble(start);
                d.bitDouble(end);
            }
            d.bitDouble(item.real(42));
            d.bitDouble(item.real(50) * kRadians);
            return true;
        }
        case 0x0B:
        case 0x0C:
        case 0x0D:
            // The kind of vertex is its type here, not a flag.
            commonEntity(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(70) & ~(32 | 64 | 128)));
            d.point3Bit(item.point(10));
            return true;
        case 0x0E:
            commonEntity(r, item, type);
            for (int code = 71; code <= 74; ++code) {
                d.bitShort(static_cast<std::int16_t>(item.integer(code)));
            }
            return true;
        case 0x1D:
        case 0x1E: {
            commonEntity(r, item, type);
            if (type == 0x1D) {
                d.bitShort(static_cast<std::int16_t>(item.integer(71)));
                d.bitShort(static_cast<std::int16_t>(item.integer(72)));
            } else {
                d.bitShort(static_cast<std::int16_t>(item.integer(70) & ~16));
                d.bitShort(static_cast<std::int16_t>(item.integer(75)));
                for (int code = 71; code <= 74; ++code) {
                    d.bitShort(static_cast<std::int16_t>(item.integer(code)));
                }
            }
            std::vector<std::uint64_t> vertices;
            std::uint64_t seqend = 0;
            for (const std::uint64_t child : owned_[item.handle]) {
                const Item* c = byHandle_[child];
                if (c && c->type == "VERTEX") vertices.push_back(child);
                if (c && c->type == "SEQEND") seqend = child;
            }
            h.handle(kSoftPointer, vertices.empty() ? 0 : vertices.front());
            h.handle(kSoftPointer, vertices.empty() ? 0 : vertices.back());
            h.handle(kHardOwner, seqend);
            return true;
        }
        case 0x0F:
        case 0x10: {
            commonEntity(r, item, type);
            const int flags = item.integer(70);
            if (type == 0x0F) {
                d.bitShort(static_cast<std::int16_t>(flags));
                d.bitShort(static_cast<std::int16_t>(item.integer(75)));
                d.bitDouble(item.real(40));
                d.bitDouble(item.real(41));
                d.thickness(item.real(39));
                d.bitDouble(item.point(10).z);
                d.extrusion(extrusion());
            } else {
                const int curve = item.integer(75);
                d.rawChar(static_cast<std::uint8_t>(curve == 5 ? 1 : curve == 6 ? 2 : 0));
                d.rawChar(static_cast<std::uint8_t>(flags & 1));
            }
            std::vector<std::uint64_t> vertices;
            std::uint64_t seqend = 0;
            for (const std::uint64_t child : owned_[item.handle]) {
                const Item* c = byHandle_[child];
                if (c && c->type == "VERTEX") vertices.push_back(child);
                if (c && c->type == "SEQEND") seqend = child;
            }
            h.handle(kSoftPointer, vertices.empty() ? 0 : vertices.front());
            h.handle(kSoftPointer, vertices.empty() ? 0 : vertices.back());
            h.handle(kHardOwner, seqend);
            return true;
        }
        case 0x11:
        case 0x12:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.bitDouble(item.real(40));
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            if (type == 0x11) {
                d.bitDouble(item.real(50) * kRadians);
                d.bitDouble(item.real(51) * kRadians);
            }
            return true;
        case 0x13: {
            commonEntity(r, item, type);
            const ge::Point3d start = item.point(10), end = item.point(11);
            const bool zeroZ = start.z == 0.0 && end.z == 0.0;
            if (!r2000_) {
                d.point3Bit(start);
                d.point3Bit(end);
            } else {
                d.bit(zeroZ);
                d.rawDouble(start.x);
                d.defaultDouble(end.x, start.x);
                d.rawDouble(start.y);
                d.defaultDouble(end.y, start.y);
                if (!zeroZ) {
                    d.rawDouble(start.z);
                    d.defaultDouble(end.z, start.z);
                }
            }
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            return true;
        }
        case 0x1B:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            d.bitDouble(item.real(50) * kRadians);
            return true;
        case 0x1F:
        case 0x20: {
            commonEntity(r, item, type);
            d.thickness(item.real(39));
            d.bitDouble(item.point(10).z);
            for (int i = 0; i < 4; ++i) d.point2Raw(item.point(10 + i));
            d.extrusion(extrusion());
            return true;
        }
        case 0x22: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41));
            if (!r2000_) {
                h.handle(kHardPointer, 0);  // viewport entity header
                return true;
            }
            d.point3Bit(item.point(17));
            d.point3Bit(item.point(16, {0, 0, 1}));
            d.bitDouble(item.real(51) * kRadians);
            d.bitDouble(item.real(45, item.real(41)));
            d.bitDouble(item.real(42, 50.0));
            d.bitDouble(item.real(43));
            d.bitDouble(item.real(44));
            d.bitDouble(item.real(50) * kRadians);
            d.point2Raw(item.point(12));
            d.point2Raw(item.point(13));
            d.point2Raw(item.point(14, {10, 10, 0}));
            d.point2Raw(item.point(15, {10, 10, 0}));
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 100)));
            std::vector<std::uint64_t> frozen;
            for (const auto& [c, v] : item.tags) {
                if (c == 331) frozen.push_back(parseHandle(v));
            }
            d.bitLong(static_cast<std::int32_t>(frozen.size()));
            d.bitLong(item.integer(90));
            d.text(item.text(1));
            d.rawChar(static_cast<std::uint8_t>(item.integer(281)));
            d.bit(item.integer(74) != 0);
            d.bit(item.integer(71) != 0);
            d.point3Bit(item.point(110));
            d.point3Bit(item.point(111, {1, 0, 0}));
            d.point3Bit(item.point(112, {0, 1, 0}));
            d.bitDouble(item.real(146));
            d.bitShort(static_cast<std::int16_t>(item.integer(79)));
            for (const std::uint64_t layer : frozen) h.handle(kHardPointer, layer);
            h.handle(kSoftPointer, item.handleOf(340));
            h.handle(kHardPointer, 0);  // viewport entity header
            h.handle(kHardPointer, item.handleOf(345));
            h.handle(kHardPointer, item.handleOf(346));
            return true;
        }
        case 0x14: case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A: {
            commonEntity(r, item, type);
            const int flags = item.integer(70);
            const ge::Point3d middle = item.point(11);
            d.point3Bit(extrusion());
            d.point2Raw(middle);
            d.bitDouble(middle.z);
            d.rawChar(static_cast<std::uint8_t>(((flags & 128) ? 0 : 1) | ((flags & 32) ? 2 : 0)));
            d.text(item.text(1));
            d.bitDouble(item.real(53) * kRadians);
            d.bitDouble(item.real(51) * kRadians);
            d.bitDouble(1.0);
            d.bitDouble(1.0);
            d.bitDouble(1.0);
            d.bitDouble(0.0);
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(71, 5)));
                d.bitShort(static_cast<std::int16_t>(item.integer(72, 1)));
                d.bitDouble(item.real(41, 1.0));
                d.bitDouble(item.real(42));
            }
            d.point2Raw(item.point(12));
            switch (type) {
                case 0x14:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.rawChar((flags & 64) ? 1 : 0);
                    break;
                case 0x15:
                case 0x16:
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(10));
                    d.bitDouble(item.real(52) * kRadians);
                    if (type == 0x15) d.bitDouble(item.real(50) * kRadians);
                    break;
                case 0x17:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(15));
                    break;
                case 0x18:
                    d.point2Raw(item.point(16));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(15));
                    d.point3Bit(item.point(10));
                    break;
                default:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(15));
                    d.bitDouble(item.real(40));
                    break;
            }
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            h.handle(kHardPointer, nameToHandle("BLOCK_RECORD", item.text(2)));
            return true;
        }
        case 0x1C: {
            commonEntity(r, item, type);
            std::array<ge::Point3d, 4> corners;
            for (int i = 0; i < 4; ++i) corners[i] = item.point(10 + i);
            const int flags = item.integer(70);
            if (!r2000_) {
                for (const ge::Point3d& corner : corners) d.point3Bit(corner);
                d.bitShort(static_cast<std::int16_t>(flags));
                return true;
            }
            d.bit(flags == 0);
            d.bit(corners[0].z == 0.0);
            d.rawDouble(corners[0].x);
            d.rawDouble(corners[0].y);
            if (corners[0].z != 0.0) d.rawDouble(corners[0].z);
            for (int i = 1; i < 4; ++i) {
                d.defaultDouble(corners[i].x, corners[i - 1].x);
                d.defaultDouble(corners[i].y, corners[i - 1].y);
                d.defaultDouble(corners[i].z, corners[i - 1].z);
            }
            if (flags != 0) d.bitShort(static_cast<std::int16_t>(flags));
            return true;
        }
        case 0x24: {
            commonEntity(r, item, type);
            std::vector<double> knots, weights;
            std::vector<ge::Point3d> controls, fits;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const int c = item.tags[i].first;
                const double v = std::strtod(item.tags[i].second.c_str(), nullptr);
                if (c == 40) knots.push_back(v);
                if (c == 41) weights.push_back(v);
                if (c == 10) controls.push_back({v, 0, 0});
                if (c == 20 && !controls.empty()) controls.back().y = v;
                if (c == 30 && !controls.empty()) controls.back().z = v;
                if (c == 11) fits.push_back({v, 0, 0});
                if (c == 21 && !fits.empty()) fits.back().y = v;
                if (c == 31 && !fits.empty()) fits.back().z = v;
            }
            const int flags = item.integer(70);
            const bool byControlPoints = !controls.empty();
            d.bitLong(byControlPoints ? 1 : 2);
            d.bitLong(item.integer(71, 3));
            const bool weighted = weights.size() == controls.size() && !weights.empty();
            if (byControlPoints) {
                d.bit(flags & 4);
                d.bit(flags & 1);
                d.bit(flags & 2);
                d.bitDouble(item.real(42, 1e-10));
                d.bitDouble(item.real(43, 1e-10));
                d.bitLong(static_cast<std::int32_t>(knots.size()));
                d.bitLong(static_cast<std::int32_t>(controls.size()));
                d.bit(weighted);
                for (const double k : knots) d.bitDouble(k);
                for (std::size_t i = 0; i < controls.size(); ++i) {
                    d.point3Bit(controls[i]);
                    if (weighted) d.bitDouble(weights[i]);
                }
            } else {
                d.bitDouble(item.real(44, 1e-10));
                d.point3Bit(item.point(12));
                d.point3Bit(item.point(13));
                d.bitLong(static_cast<std::int32_t>(fits.size()));
                for (const ge::Point3d& p : fits) d.point3Bit(p);
            }
            return true;
        }
        case 0x28:
        case 0x29:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11));
            return true;
        case 0x4E: {
            commonEntity(r, item, type);
            std::size_t start = 0;
            while (start < item.tags.size() &&
                   !(item.tags[start].first == 100 && item.tags[start].second == "AcDbHatch")) {
                ++start;
            }
            Cursor t(item.tags, start + 1);
            const double elevation = t.point(10).z;
            const ge::Point3d normal = t.next(210) ? t.point(210) : ge::Point3d{0, 0, 1};
            d.bitDouble(elevation);
            d.point3Bit(normal);
            d.text(item.text(2));
            t.seek(70);
            const bool solid = t.integer(70) != 0;
            d.bit(solid);
            d.bit(t.integer(71) != 0);
            const long paths = t.integer(91);
            d.bitLong(static_cast<std::int32_t>(paths));
            bool derived = false;
            for (long p = 0; p < paths; ++p) {
                t.seek(92);
                const long pathFlags = t.integer(92);
                if (pathFlags & 4) derived = true;
                d.bitLong(static_cast<std::int32_t>(pathFlags));
                if (!(pathFlags & 2)) {
                    const long edges = t.integer(93);
                    d.bitLong(static_cast<std::int32_t>(edges));
                    for (long e = 0; e < edges; ++e) {
                        const long kind = t.integer(72);
                        d.rawChar(static_cast<std::uint8_t>(kind));
                        if (kind == 1) {
                            d.point2Raw(t.point(10, false));
                            d.point2Raw(t.point(11, false));
                        } else if (kind == 2) {
                            d.point2Raw(t.point(10, false));
                            d.bitDouble(t.real(40));
                            d.bitDouble(t.real(50) * kRadians);
                            d.bitDouble(t.real(51) * kRadians);
                            d.bit(t.integer(73, 1) != 0);
                        } else if (kind == 3) {
                            d.point2Raw(t.point(10, false));
                            d.point2Raw(t.point(11, false));
                            d.bitDouble(t.real(40));
                            d.bitDouble(t.real(50) * kRadians);
                            d.bitDouble(t.real(51) * kRadians);
                            d.bit(t.integer(73, 1) != 0);
                        } else {
                            d.bitLong(static_cast<std::int32_t>(t.integer(94, 3)));
                            const bool rational = t.integer(73) != 0;
                            d.bit(rational);
                            d.bit(t.integer(74) != 0);
                            const long knots = t.integer(95);
                            const long controls = t.integer(96);
                            d.bitLong(static_cast<std::int32_t>(knots));
                            d.bitLong(static_cast<std::int32_t>(controls));
                            for (long k = 0; k < knots; ++k) d.bitDouble(t.real(40));
                            for (long c = 0; c < controls; ++c) {
                                d.point2Raw(t.point(10, false));
                                if (rational) d.bitDouble(t.real(42, 1.0));
                            }
                            // Fit data (97 and on) came after 2000; it is not kept.
                            if (t.next(97)) {
                                const long fitCount = t.integer(97);
                                for (long f = 0; f < fitCount; ++f) t.point(11, false);
                                t.point(12, false);
                                t.point(13, false);
                            }
                        }
                    }
                } else {
                    const bool bulges = t.integer(72) != 0;
                    d.bit(bulges);
                    d.bit(t.integer(73) != 0);
                    const long vertices = t.integer(93);
                    d.bitLong(static_cast<std::int32_t>(vertices));
                    for (long v = 0; v < vertices; ++v) {
                        d.point2Raw(t.point(10, false));
                        const double bulge = t.real(42);
                        if (bulges) d.bitDouble(bulge);
                    }
                }
                const long sources = t.integer(97);
                d.bitLong(static_cast<std::int32_t>(sources));
                for (long s = 0; s < sources; ++s) h.handle(kSoftPointer, t.handle(330));
            }
            t.seek(75);
            d.bitShort(static_cast<std::int16_t>(t.integer(75)));
            d.bitShort(static_cast<std::int16_t>(t.integer(76, 1)));
            if (!solid) {
                d.bitDouble(t.real(52) * kRadians);
                d.bitDouble(t.real(41, 1.0));
                d.bit(t.integer(77) != 0);
                const long lines = t.integer(78);
                d.bitShort(static_cast<std::int16_t>(lines));
                for (long l = 0; l < lines; ++l) {
                    d.bitDouble(t.real(53) * kRadians);
                    d.bitDouble(t.real(43));
                    d.bitDouble(t.real(44));
                    d.bitDouble(t.real(45));
                    d.bitDouble(t.real(46));
                    const long dashes = t.integer(79);
                    d.bitShort(static_cast<std::int16_t>(dashes));
                    for (long k = 0; k < dashes; ++k) d.bitDouble(t.real(49));
                }
            }
            if (derived) d.bitDouble(t.real(47));
            t.seek(98);
            const long seeds = t.integer(98);
            d.bitLong(static_cast<std::int32_t>(seeds));
            for (long k = 0; k < seeds; ++k) d.point2Raw(t.point(10, false));
            return true;
        }
        case 0x2D: {
            commonEntity(r, item, type);
            std::vector<ge::Point3d> vertices;
            for (const auto& [c, v] : item.tags) {
                const double value = std::strtod(v.c_str(), nullptr);
                if (c == 10) vertices.push_back({value, 0, 0});
                if (c == 20 && !vertices.empty()) vertices.back().y = value;
                if (c == 30 && !vertices.empty()) vertices.back().z = value;
            }
            d.bit(false);
            d.bitShort(static_cast<std::int16_t>(item.integer(73, 3)));
            d.bitShort(static_cast<std::int16_t>(item.integer(72)));
            d.bitLong(static_cast<std::int32_t>(vertices.size()));
            for (const ge::Point3d& p : vertices) d.point3Bit(p);
            d.point3Bit(vertices.empty() ? ge::Point3d{} : vertices.front());
            d.point3Bit(extrusion());
            d.point3Bit(item.point(211, {1, 0, 0}));
            d.point3Bit(item.point(212));
            d.point3Bit(item.point(213));
            if (!r2000_) d.bitDouble(0.0);  // the style's gap when it was made
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41));
            d.bit(item.integer(74) != 0);
            d.bit(item.integer(71, 1) != 0);
            if (!r2000_) {
                d.bitShort(0);
                d.bitDouble(0.0);
                d.bit(false);
                d.bit(false);
                d.bitShort(0);
                d.bitShort(0);
                d.bit(false);
                d.bit(false);
            } else {
                d.bitShort(0);
                d.bit(false);
                d.bit(false);
            }
            h.handle(kHardPointer, item.handleOf(340));
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            return true;
        }
        case 0x2E:
            commonEntity(r, item, type);
            if (!r2000_) {
                d.bitShort(0);
                d.bitDouble(0.0);
                d.bitDouble(0.0);
            }
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.point3Bit(extrusion());
            d.text(item.text(1));
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            return true;
        case 0x23:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11));
            d.point3Bit(extrusion());
            d.bitDouble(item.real(40, 1.0));
            d.bitDouble(item.real(41));
            d.bitDouble(item.real(42, 2 * std::numbers::pi));
            return true;
        case 0x2C: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(extrusion());
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.bitDouble(item.real(41));
            d.bitDouble(item.real(40, 1.0));
            d.bitShort(static_cast<std::int16_t>(item.integer(71, 1)));
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 1)));
            d.bitDouble(0.0);
            d.bitDouble(0.0);
            std::string value;
            for (const auto& [c, v] : item.tags) {
                if (c == 3) value += v;
            }
            value += item.find(1) ? *item.find(1) : std::string();
            d.text(sys::fromCaretForm(value));
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(73, 1)));
                d.bitDouble(item.real(44, 1.0));
                d.bit(false);
            }
            h.handle(kHardPointer, nameToHandle("STYLE", item.text(7, "Standard")));
            return true;
        }
        case 0x4D: {
            commonEntity(r, item, type);
            std::vector<ge::Point3d> points;
            std::vector<double> bulges, starts, ends;
            bool anyBulge = false, anyWidth = false;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const auto& [c, v] = item.tags[i];
                if (c == 10) {
                    points.push_back({std::strtod(v.c_str(), nullptr), 0, 0});
                    bulges.push_back(0.0);
                    starts.push_back(0.0);
                    ends.push_back(0.0);
                } else if (points.empty()) {
                    continue;
                } else if (c == 20) {
                    points.back().y = std::strtod(v.c_str(), nullptr);
                } else if (c == 42) {
                    bulges.back() = std::strtod(v.c_str(), nullptr);
                    anyBulge = anyBulge || bulges.back() != 0.0;
                } else if (c == 40) {
                    starts.back() = std::strtod(v.c_str(), nullptr);
                    anyWidth = anyWidth || starts.back() != 0.0;
                } else if (c == 41) {
                    ends.back() = std::strtod(v.c_str(), nullptr);
                    anyWidth = anyWidth || ends.back() != 0.0;
                }
            }
            const int dxfFlags = item.integer(70);
            const std::string* constant = item.find(43);
            const double elevation = item.real(38), thickness = item.real(39);
            const ge::Point3d normal = extrusion();
            const bool normalSet = !(normal.x == 0.0 && normal.y == 0.0 && normal.z == 1.0);
            int flags = 0;
            if (normalSet) flags |= 1;
            if (thickness != 0.0) flags |= 2;
            if (constant) flags |= 4;
            if (elevation != 0.0) flags |= 8;
            if (anyBulge) flags |= 16;
            if (anyWidth) flags |= 32;
            if (dxfFlags & 128) flags |= 256;
            if (dxfFlags & 1) flags |= 512;
            d.bitShort(static_cast<std::int16_t>(flags));
            if (flags & 4) d.bitDouble(std::strtod(constant->c_str(), nullptr));
            if (flags & 8) d.bitDouble(elevation);
            if (flags & 2) d.bitDouble(thickness);
            if (flags & 1) d.point3Bit(normal);
            d.bitLong(static_cast<std::int32_t>(points.size()));
            if (flags & 16) d.bitLong(static_cast<std::int32_t>(points.size()));
            if (flags & 32) d.bitLong(static_cast<std::int32_t>(points.size()));
            for (std::size_t i = 0; i < points.size(); ++i) {
                if (i == 0 || !r2000_) {
                    d.point2Raw(points[i]);
                } else {
                    d.defaultDouble(points[i].x, points[i - 1].x);
                    d.defaultDouble(points[i].y, points[i - 1].y);
                }
            }
            if (flags & 16) {
                for (const double b : bulges) d.bitDouble(b);
            }
            if (flags & 32) {
                for (std::size_t i = 0; i < points.size(); ++i) {
                    d.bitDouble(starts[i]);
                    d.bitDouble(ends[i]);
                }
            }
            return true;
        }
        case 0x2A: {
            commonObject(r, item, type);
            std::vector<std::pair<std::string, std::uint64_t>> entries;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                if (item.tags[i].first != 3) continue;
                std::uint64_t target = 0;
                if (i + 1 < item.tags.size() &&
                    (item.tags[i + 1].first == 350 || item.tags[i + 1].first == 360)) {
                    target = parseHandle(item.tags[i + 1].second);
                }
                entries.emplace_back(sys::fromCaretForm(item.tags[i].second), target);
            }
            const int hardOwner = item.integer(280);
            d.bitLong(static_cast<std::int32_t>(entries.size()));
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(281, 1)));
                d.rawChar(static_cast<std::uint8_t>(hardOwner));
            } else {
                d.rawChar(0);
            }
            for (const auto& entry : entries) d.text(entry.first);
            for (const auto& entry : entries) h.handle(kSoftOwner, entry.second);
            return true;
        }
        case 0x48: {
            commonObject(r, item, type);
            std::vector<std::uint64_t> members;
            for (const auto& [c, v] : item.tags) {
                if (c == 340) members.push_back(parseHandle(v));
            }
            d.text(item.text(300));
            d.bitShort(static_cast<std::int16_t>(item.integer(70)));
            d.bitShort(static_cast<std::int16_t>(item.integer(71, 1)));
            d.bitLong(static_cast<std::int32_t>(members.size()));
            for (const std::uint64_t m : members) h.handle(kHardPointer, m);
            return true;
        }
        case 0x4F: {
            commonObject(r, item, type);
            BitWriter values;
            bool inData = false;
            bool cloningFlag = false;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const int c = item.tags[i].first;
                const std::string& v = item.tags[i].second;
                if (c == 100) {
                    inData = v == "AcDbXrecord";
                    cloningFlag = inData;
                    continue;
                }
                // The cloning flag comes first after the marker; any later 280 is data.
                if (cloningFlag && c == 280) {
                    cloningFlag = false;
                    continue;
                }
                cloningFlag = false;
                if (!inData) continue;
                const auto in = [c](int lo, int hi) { return c >= lo && c <= hi; };
                values.rawShort(static_cast<std::int16_t>(c));
                if (in(0, 9) || in(100, 109) || in(300, 309) || in(410, 419) || in(430, 439) ||
                    in(470, 479) || in(999, 1003)) {
                    const std::string bytes = sys::fromCaretForm(v);
                    values.rawShort(static_cast<std::int16_t>(bytes.size()));
                    values.rawChar(static_cast<std::uint8_t>(codePage_));
                    values.bytes(bytes);
                } else if (in(10, 39) || in(110, 139) || in(210, 239) || in(1010, 1039)) {
                    ge::Point3d p{std::strtod(v.c_str(), nullptr), 0, 0};
                    if (i + 1 < item.tags.size() && item.tags[i + 1].first == c + 10) {
                        p.y = std::strtod(item.tags[++i].second.c_str(), nullptr);
                    }
                    if (i + 1 < item.tags.size() && item.tags[i + 1].first == c + 20) {
                        p.z = std::strtod(item.tags[++i].second.c_str(), nullptr);
                    }
                    values.point3Raw(p);
                } else if (in(40, 59) || in(140, 149) || in(460, 469) || in(1040, 1059)) {
                    values.rawDouble(std::strtod(v.c_str(), nullptr));
                } else if (in(60, 79) || in(170, 179) || in(270, 279) || in(370, 389) ||
                           in(400, 409) || in(1060, 1070)) {
                    values.rawShort(static_cast<std::int16_t>(std::strtol(v.c_str(), nullptr, 10)));
                } else if (in(90, 99) || in(420, 429) || in(440, 449) || c == 1071) {
                    values.rawLong(static_cast<std::int32_t>(std::strtoll(v.c_str(), nullptr, 10)));
                } else if (in(280, 299)) {
                    values.rawChar(static_cast<std::uint8_t>(std::strtol(v.c_str(), nullptr, 10)));
                } else if (in(160, 169) || in(450, 459)) {
                    const auto n = static_cast<std::uint64_t>(std::strtoll(v.c_str(), nullptr, 10));
                    for (int b = 0; b < 8; ++b) values.rawChar(static_cast<std::uint8_t>(n >> (8 * b)));
                } else if (in(310, 319) || c == 1004) {
                    std::string bytes;
                    for (std::size_t k = 0; k + 1 < v.size(); k += 2) {
                        bytes += static_cast<char>(std::strtol(v.substr(k, 2).c_str(), nullptr, 16));
                    }
                    values.rawChar(static_cast<std::uint8_t>(std::min<std::size_t>(bytes.size(), 255)));
                    values.bytes(std::string_view(bytes).substr(0, 255));
                } else {
                    const std::uint64_t n = parseHandle(v);
                    for (int b = 0; b < 8; ++b) values.rawChar(static_cast<std::uint8_t>(n >> (8 * b)));
                }
            }
            d.bitLong(static_cast<std::int32_t>(values.bytes().size()));
            d.bytes(values.bytes());
            if (r2000_) d.bitShort(static_cast<std::int16_t>(item.integer(280, 1)));
            return true;
        }
        case 0x49: {
            commonObject(r, item, type);
            d.text(item.text(2));
            d.text(item.text(3));
            static constexpr std::pair<int, int> kFlagBits[] = {
                {1, 2}, {2, 1}, {16, 16}, {32, 64}, {64, 32}, {256, 256}, {512, 1024}, {1024, 512}};
            const int flags = item.integer(70);
            int stored = 0;
            for (const auto& [dwgBit, dxfBit] : kFlagBits) {
                if (flags & dxfBit) stored |= dwgBit;
            }
            d.bitShort(static_cast<std::int16_t>(stored));
            d.bitShort(static_cast<std::int16_t>(item.integer(62, 256)));
            d.bitDouble(item.real(51, 90.0) * kRadians);
            d.bitDouble(item.real(52, 90.0) * kRadians);
            // Elements: 49 offset, 62 colour, 6 linetype, after the 71 count.
            std::vector<std::tuple<double, int, std::string>> elements;
            bool counting = false;
            for (const auto& [c, v] : item.tags) {
                if (c == 71) counting = true;
                if (!counting) continue;
                if (c == 49) elements.emplace_back(std::strtod(v.c_str(), nullptr), 256, "BYLAYER");
                if (c == 62 && !elements.empty()) std::get<1>(elements.back()) = std::atoi(v.c_str());
                if (c == 6 && !elements.empty()) std::get<2>(elements.back()) = v;
            }
            d.rawChar(static_cast<std::uint8_t>(elements.size()));
            for (const auto& [offset, color, linetype] : elements) {
                d.bitDouble(offset);
                d.bitShort(static_cast<std::int16_t>(color));
                const std::string upper = sys::asciiUpper(linetype);
                int index = 32767;
                if (upper == "BYBLOCK") {
                    index = 32766;
                } else if (upper != "BYLAYER") {
                    const auto& order = linetypeOrder_;
                    const auto at = std::find(order.begin(), order.end(),
                                              nameToHandle("LTYPE", linetype));
                    if (at != order.end()) index = static_cast<int>(at - order.begin());
                }
                d.bitShort(static_cast<std::int16_t>(index));
            }
            return true;
        }
        case 0x50:
            commonObject(r, item, type);
            return true;
        case 0x31: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            const Item* begin = byHandle_[blockEnds_[item.handle].first];
            const int blockFlags = begin ? begin->integer(70) : 0;
            d.bit(blockFlags & 1);
            d.bit(blockFlags & 2);
            d.bit(blockFlags & 4);
            d.bit(blockFlags & 8);
            if (r2000_) d.bit(true);  // loaded
            d.point3Bit(begin ? begin->point(10) : ge::Point3d{});
            d.text(begin ? begin->text(1) : std::string());
            std::string preview;
            for (const auto& [c, v] : item.tags) {
                if (c != 310) continue;
                for (std::size_t k = 0; k + 1 < v.size(); k += 2) {
                    preview += static_cast<char>(std::strtol(v.substr(k, 2).c_str(), nullptr, 16));
                }
            }
            if (r2000_) {
                d.rawChar(0);  // no insert list
                d.text({});
                d.bitLong(static_cast<std::int32_t>(preview.size()));
                d.bytes(preview);
            }
            h.handle(kHardPointer, 0);
            h.handle(kHardOwner, blockEnds_[item.handle].first);
            std::vector<std::uint64_t> entities;
            for (const std::uint64_t e : owned_[item.handle]) {
                const Item* c = byHandle_[e];
                if (c && c->type != "ATTRIB" && c->type != "VERTEX" && c->type != "SEQEND") {
                    entities.push_back(e);
                }
            }
            if (!(blockFlags & 4) && !(blockFlags & 8)) {
                h.handle(kSoftPointer, entities.empty() ? 0 : entities.front());
                h.handle(kSoftPointer, entities.empty() ? 0 : entities.back());
            }
            h.handle(kHardOwner, blockEnds_[item.handle].second);
            if (r2000_) h.handle(kHardPointer, item.handleOf(340));
            return true;
        }
        case 0x33: {
            commonObject(r, item, type);
            int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            const int color = item.integer(62, 7);
            int values = 0;
            if (flags & 1) values |= 1;
            if (color < 0) values |= 2;
            if (flags & 2) values |= 4;
            if (flags & 4) values |= 8;
            if (item.integer(290, 1) != 0) values |= 16;
            values |= lineweightIndex(item.integer(370, -3)) << 5;
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(values));
            } else {
                d.bit(flags & 1);
                d.bit(color >= 0);
                d.bit(flags & 2);
                d.bit(flags & 4);
            }
            d.bitShort(static_cast<std::int16_t>(std::abs(color)));
            h.handle(kHardPointer, 0);
            if (r2000_) h.handle(kHardPointer, item.handleOf(390));
            h.handle(kHardPointer, nameToHandle("LTYPE", item.text(6, "Continuous")));
            return true;
        }
        case 0x35: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            d.bit(flags & 4);
            d.bit(flags & 1);
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41, 1.0));
            d.bitDouble(item.real(50) * kRadians);
            d.rawChar(static_cast<std::uint8_t>(item.integer(71)));
            d.bitDouble(item.real(42, 2.5));
            d.text(item.text(3));
            d.text(item.text(4));
            h.handle(kHardPointer, 0);
            return true;
        }
        case 0x39: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.text(item.text(3));
            d.bitDouble(item.real(40));
            d.rawChar(static_cast<std::uint8_t>(item.integer(72, 65)));
            std::vector<double> dashes;
            for (const auto& [c, v] : item.tags) {
                if (c == 49) dashes.push_back(std::strtod(v.c_str(), nullptr));
            }
            d.rawChar(static_cast<std::uint8_t>(dashes.size()));
            for (const double dash : dashes) {
                d.bitDouble(dash);
                d.bitShort(0);
                d.rawDouble(0.0);
                d.rawDouble(0.0);
                d.bitDouble(1.0);
                d.bitDouble(0.0);
                d.bitShort(0);
            }
            d.bytes(std::string(256, '\0'));
            h.handle(kHardPointer, 0);
            for (std::size_t i = 0; i < dashes.size(); ++i) h.handle(kHardPointer, 0);
            return true;
        }
        case 0x45: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            const auto real = [&](int code, double fallback) { d.bitDouble(item.real(code, fallback)); };
            const auto flag = [&](int code, int fallback) { d.bit(item.integer(code, fallback) != 0); };
            const auto small = [&](int code, int fallback) {
                d.bitShort(static_cast<std::int16_t>(item.integer(code, fallback)));
            };
            if (!r2000_) {
                const auto byte = [&](int code, int fallback) {
                    d.rawChar(static_cast<std::uint8_t>(item.integer(code, fallback)));
                };
                for (const auto& [code, fallback] :
                     {std::pair{71, 0}, {72, 0}, {73, 1}, {74, 1}, {75, 0}, {76, 0}, {170, 0},
                      {172, 0}, {173, 0}, {174, 0}, {175, 0}}) {
                    flag(code, fallback);
                }
                byte(171, 2);
                byte(78, 0);
                flag(281, 0);
                flag(282, 0);
                byte(283, 1);
                byte(280, 0);
                byte(287, 3);
                flag(288, 0);
                byte(284, 0);
                byte(285, 0);
                byte(286, 0);
                byte(77, 0);
                for (const auto& [code, fallback] :
                     {std::pair{270, 2}, {275, 0}, {271, 4}, {272, 4}, {273, 2}, {274, 2}}) {
                    small(code, fallback);
                }
                const std::pair<int, double> reals[] = {
                    {40, 1.0},  {41, 2.5},  {42, 0.625}, {43, 3.75},  {44, 1.25}, {45, 0.0},
                    {46, 0.0},  {47, 0.0},  {48, 0.0},   {140, 2.5},  {141, 2.5}, {142, 0.0},
                    {143, 25.4}, {144, 1.0}, {145, 0.0}, {146, 1.0}, {147, 0.625}};
                for (const auto& [code, fallback] : reals) real(code, fallback);
                d.text(item.text(3));
                d.text(item.text(4));
                // R14 names the arrow blocks; 2000 points at them.
                for (int code = 342; code <= 344; ++code) {
                    const Item* block = byHandle_[item.handleOf(code)];
                    d.text(block ? block->text(2) : std::string());
                }
                small(176, 0);
                small(177, 0);
                small(178, 0);
                d.bit(false);
                h.handle(kHardPointer, 0);
                h.handle(kHardPointer, item.handleOf(340));
                return true;
            }
            d.text(item.text(3));
            d.text(item.text(4));
            const std::pair<int, double> sizes[] = {{40, 1.0}, {41, 2.5}, {42, 0.625},
                                                     {43, 3.75}, {44, 1.25}, {45, 0.0},
                                                     {46, 0.0}, {47, 0.0}, {48, 0.0}};
            for (const auto& [code, fallback] : sizes) real(code, fallback);
            for (const auto& [code, fallback] : {std::pair{71, 0}, {72, 0}, {73, 1}, {74, 1},
                                                 {75, 0}, {76, 0}}) {
                flag(code, fallback);
            }
            small(77, 0);
            small(78, 0);
            small(79, 0);
            const std::pair<int, double> more[] = {{140, 2.5}, {141, 2.5}, {142, 0.0},
                                                    {143, 25.4}, {144, 1.0}, {145, 0.0},
                                                    {146, 1.0}, {147, 0.625}, {148, 0.0}};
            for (const auto& [code, fallback] : more) real(code, fallback);
            flag(170, 0);
            small(171, 2);
            for (const int code : {172, 173, 174, 175}) flag(code, 0);
            for (const auto& [code, fallback] :
                 {std::pair{176, 0}, {177, 0}, {178, 0}, {179, 0}, {271, 4}, {272, 4}, {273, 2},
                  {274, 2}, {275, 0}, {276, 0}, {277, 2}, {278, 46}, {279, 0}, {280, 0}}) {
                small(code, fallback);
            }
            flag(281, 0);
            flag(282, 0);
            for (const int code : {283, 284, 285, 286}) small(code, 0);
            flag(288, 0);
            small(289, 3);
            small(371, -2);
            small(372, -2);
            d.bit(false);
            h.handle(kHardPointer, 0);
            h.handle(kHardPointer, item.handleOf(340));
            for (int code = 341; code <= 344; ++code) h.handle(kHardPointer, item.handleOf(code));
            return true;
        }
        case 0x41: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            const double height = item.real(40, 1.0);
            const int mode = item.integer(71);
            d.bitDouble(height);
            d.bitDouble(item.real(41, 1.0) * height);
            d.point2Raw(item.point(12));
            d.point3Bit(item.point(17));
            d.point3Bit(item.point(16, {0, 0, 1}));
            d.bitDouble(item.real(51) * kRadians);
            d.bitDouble(item.real(42, 50.0));
            d.bitDouble(item.real(43));
            d.bitDouble(item.real(44));
            d.bit(mode & 1);
            d.bit(mode & 2);
            d.bit(mode & 4);
            d.bit(!(mode & 16));
            if (r2000_) d.rawChar(static_cast<std::uint8_t>(item.integer(281)));
            d.point2Raw(item.point(10));
            d.point2Raw(item.point(11, {1, 1, 0}));
            d.bit(mode & 8);
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 1000)));
            d.bit(item.integer(73, 1) != 0);
            const int icon = item.integer(74, 3);
            d.bit(icon & 1);
            d.bit(icon & 2);
            d.bit(item.integer(76) != 0);
            d.point2Raw(item.point(15));
            d.bit(item.integer(75) != 0);
            d.bit(item.integer(77) != 0);
            d.bitShort(static_cast<std::int16_t>(item.integer(78)));
            d.bitDouble(item.real(50) * kRadians);
            d.point2Raw(item.point(13));
            d.point2Raw(item.point(14, {10, 10, 0}));
            if (!r2000_) {
                h.handle(kHardPointer, 0);
                return true;
            }
            d.bit(false);
            d.bit(item.integer(65) != 0);
            d.point3Bit(item.point(110));
            d.point3Bit(item.point(111, {1, 0, 0}));
            d.point3Bit(item.point(112, {0, 1, 0}));
            d.bitDouble(item.real(146));
            d.bitShort(static_cast<std::int16_t>(item.integer(79)));
            h.handle(kHardPointer, 0);
            h.handle(kHardPointer, item.handleOf(345));
            h.handle(kHardPointer, item.handleOf(346));
            return true;
        }
        case 0x52: {
            if (!r2000_) return false;
            commonObject(r, item, type);
            constexpr std::string_view plot = "AcDbPlotSettings", layout = "AcDbLayout";
            d.text(item.textIn(plot, 1));
            d.text(item.textIn(plot, 2));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 70, 688)));
            for (int code = 40; code <= 45; ++code) d.bitDouble(item.realIn(plot, code));
            d.text(item.textIn(plot, 4));
            d.bitDouble(item.realIn(plot, 46));
            d.bitDouble(item.realIn(plot, 47));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 72, 1)));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 73)));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 74, 5)));
            d.bitDouble(item.realIn(plot, 48));
            d.bitDouble(item.realIn(plot, 49));
            d.bitDouble(item.realIn(plot, 140));
            d.bitDouble(item.realIn(plot, 141));
            d.text(item.textIn(plot, 6));
            d.bitDouble(item.realIn(plot, 142, 1.0));
            d.bitDouble(item.realIn(plot, 143, 1.0));
            d.text(item.textIn(plot, 7));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 75)));
            d.bitDouble(item.realIn(plot, 147, 1.0));
            d.bitDouble(item.realIn(plot, 148));
            d.bitDouble(item.realIn(plot, 149));
            d.text(item.textIn(layout, 1));
            d.bitLong(item.integerIn(layout, 71));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(layout, 70, 1)));
            d.point3Bit(item.pointIn(layout, 13));
            d.point2Raw(item.pointIn(layout, 10));
            d.point2Raw(item.pointIn(layout, 11, {12, 9, 0}));
            d.point3Bit(item.pointIn(layout, 12));
            d.point3Bit(item.pointIn(layout, 16, {1, 0, 0}));
            d.point3Bit(item.pointIn(layout, 17, {0, 1, 0}));
            d.bitDouble(item.realIn(layout, 146));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(layout, 76)));
            d.point3Bit(item.pointIn(layout, 14));
            d.point3Bit(item.pointIn(layout, 15));
            const auto handleIn = [&](int code) {
                const std::string* v = item.findIn(layout, code);
                return v ? parseHandle(*v) : 0;
            };
            h.handle(kSoftPointer, handleIn(330));
            h.handle(kSoftPointer, handleIn(331));
            h.handle(kHardPointer, handleIn(346));
            h.handle(kHardPointer, handleIn(345));
            return true;
        }
        case 500: {
            commonObject(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(280)));
            d.text(item.text(1));
            return true;
        }
        case 501: {
            commonObject(r, item, type);
            std::vector<std::pair<std::string, std::uint64_t>> entries;
            for (std::size_t i = 0; i + 1 < item.tags.size(); ++i) {
                if (item.tags[i].first == 3) {
                    entries.emplace_back(sys::fromCaretForm(item.tags[i].second),
                                         parseHandle(item.tags[i + 1].second));
                }
            }
            d.bitLong(static_cast<std::int32_t>(entries.size()));
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(281, 1)));
                d.rawChar(static_cast<std::uint8_t>(item.integer(280)));
            } else {
                d.rawChar(0);
            }
            for (const auto& entry : entries) d.text(entry.first);
            for (const auto& entry : entries) h.handle(kSoftOwner, entry.second);
            h.handle(kHardPointer, item.handleOf(340));
            return true;
        }
        case 502:
            commonObject(r, item, type);
            d.bitShort(0);
            d.text(item.text(300));
            d.bitDouble(item.real(140, 1.0));
            d.bitDouble(item.real(141, 1.0));
            d.bit(item.integer(290) != 0);
            return true;
        case 503: {
            commonObject(r, item, type);
            std::vector<std::pair<std::uint64_t, std::uint64_t>> pairs;  // entity, sort key
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                if (item.tags[i].first == 331) pairs.emplace_back(parseHandle(item.tags[i].second), 0);
                if (item.tags[i].first == 5 && !pairs.empty()) {
                    pairs.back().second = parseHandle(item.tags[i].second);
                }
            }
            std::uint64_t block = 0;
            for (const auto& [c, v] : item.tags) {
                if (c == 330) {
                    block = parseHandle(v);
                    break;
                }
            }
            h.handle(kSoftPointer, block);
            d.bitLong(static_cast<std::int32_t>(pairs.size()));
            for (const auto& [entity, key] : pairs) {
                d.handle(0, key);
                h.handle(kSoftPointer, entity);
            }
            return true;
        }
        case 0x3D: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            const int mode = item.integer(71);
            d.bitDouble(item.real(40, 1.0));
            d.bitDouble(item.real(41, 1.0));
            d.point2Raw(item.point(10));
            d.point3Bit(item.point(12));
            d.point3Bit(item.point(11, {0, 0, 1}));
            d.bitDouble(item.real(50) * kRadians);
            d.bitDouble(item.real(42, 50.0));
            d.bitDouble(item.real(43));
            d.bitDouble(item.real(44));
            d.bit(mode & 1);
            d.bit(mode & 2);
            d.bit(mode & 4);
            d.bit(!(mode & 16));
            if (r2000_) d.rawChar(static_cast<std::uint8_t>(item.integer(281)));
            d.bit(flags & 1);
            if (!r2000_) {
                h.handle(kHardPointer, 0);
                return true;
            }
            const bool ucs = item.integer(72) != 0;
            d.bit(ucs);
            h.handle(kHardPointer, 0);
            if (ucs) {
                d.point3Bit(item.point(110));
                d.point3Bit(item.point(111, {1, 0, 0}));
                d.point3Bit(item.point(112, {0, 1, 0}));
                d.bitDouble(item.real(146));
                d.bitShort(static_cast<std::int16_t>(item.integer(79)));
                h.handle(kHardPointer, item.handleOf(346));
                h.handle(kHardPointer, item.handleOf(345));
            }
            return true;
        }
        case 0x3F:
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.point3Bit(item.point(12, {0, 1, 0}));
            h.handle(kHardPointer, 0);
            if (r2000_) {
                d.bitDouble(item.real(146));
                d.bitShort(static_cast<std::int16_t>(item.integer(79)));
                d.bitShort(0);
                h.handle(kHardPointer, item.handleOf(346));
                h.handle(kHardPointer, 0);
            }
            return true;
        case 0x43:
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.rawChar(0);
            h.handle(kHardPointer, 0);
            return true;
        default:
            return false;
    }
}

std::string Encoder::finish(Record& r) {
    // The data stream ends where the handle stream starts; the record's size counts both.
    const std::size_t dataBits = r.data.bitPosition();
    r.data.patchRawLong(r.sizeAt, static_cast<std::int32_t>(dataBits));
    BitWriter whole = std::move(r.data);
    const std::string& handleBytes = r.handles.bytes();
    for (std::size_t i = 0; i < r.handles.bitPosition(); ++i) {
        whole.bit((static_cast<std::uint8_t>(handleBytes[i / 8]) >> (7 - i % 8)) & 1);
    }
    whole.alignToByte();
    BitWriter size;
    size.modularShort(whole.bytes().size());
    std::string out = size.bytes() + whole.bytes();
    const std::uint16_t crc = dwgCrc16(out, 0xC0C1);
    out += static_cast<char>(crc & 0xFF);
    out += static_cast<char>(crc >> 8);
    return out;
}

std::string Encoder::headerSection() {
    BitWriter w;
    w.bitDouble(412148564080.0);
    w.bitDouble(1.0);
    w.bitDouble(1.0);
    w.bitDouble(1.0);
    w.text("m");
    w.text({});
    w.text({});
    w.text({});
    w.bitLong(24);
    w.bitLong(0);
    if (!r2000_) w.bitShort(0);
    w.handle(kHardPointer, 0);
    const auto flag = [&](std::string_view name, int fallback) { w.bit(headerInt(name, fallback) != 0); };
    const auto small = [&](std::string_view name, int fallback) {
        w.bitShort(static_cast<std::int16_t>(headerInt(name, fallback)));
    };
    const auto number = [&](std::string_view name, double fallback) {
        w.bitDouble(headerReal(name, fallback));
    };
    flag("$DIMASO", 1);
    flag("$DIMSHO", 1);
    if (!r2000_) w.bit(false);  // DIMSAV
    flag("$PLINEGEN", 0);
    flag("$ORTHOMODE", 0);
    flag("$REGENMODE", 1);
    flag("$FILLMODE", 1);
    flag("$QTEXTMODE", 0);
    flag("$PSLTSCALE", 1);
    flag("$LIMCHECK", 0);
    if (!r2000_) w.bit(false);  // BLIPMODE
    flag("$USRTIMER", 1);
    flag("$SKPOLY", 0);
    flag("$ANGDIR", 0);
    flag("$SPLFRAME", 0);
    if (!r2000_) {
        w.bit(true);   // ATTREQ
        w.bit(false);  // ATTDIA
    }
    flag("$MIRRTEXT", 1);
    flag("$WORLDVIEW", 1);
    if (!r2000_) w.bit(false);  // WIREFRAME
    flag("$TILEMODE", 1);
    flag("$PLIMCHECK", 0);
    flag("$VISRETAIN", 1);
    if (!r2000_) w.bit(true);  // DELOBJ
    flag("$DISPSILH", 0);
    w.bit(false);  // PELLIPSE
    small("$PROXYGRAPHICS", 1);
    if (!r2000_) w.bitShort(2);  // DRAGMODE
    small("$TREEDEPTH", 3020);
    small("$LUNITS", 2);
    small("$LUPREC", 4);
    small("$AUNITS", 0);
    small("$AUPREC", 0);
    if (!r2000_) w.bitShort(0);  // OSMODE
    small("$ATTMODE", 1);
    if (!r2000_) w.bitShort(1);  // COORDS
    small("$PDMODE", 0);
    if (!r2000_) w.bitShort(0);  // PICKSTYLE
    for (const char* name : {"$USERI1", "$USERI2", "$USERI3", "$USERI4", "$USERI5"}) small(name, 0);
    small("$SPLINESEGS", 8);
    small("$SURFU", 6);
    small("$SURFV", 6);
    small("$SURFTYPE", 6);
    small("$SURFTAB1", 6);
    small("$SURFTAB2", 6);
    small("$SPLINETYPE", 6);
    small("$SHADEDGE", 3);
    small("$SHADEDIF", 70);
    small("$UNITMODE", 0);
    small("$MAXACTVP", 64);
    small("$ISOLINES", 4);
    small("$CMLJUST", 0);
    small("$TEXTQLTY", 50);
    number("$LTSCALE", 1.0);
    number("$TEXTSIZE", 2.5);
    number("$TRACEWID", 1.0);
    number("$SKETCHINC", 1.0);
    number("$FILLETRAD", 0.0);
    number("$THICKNESS", 0.0);
    w.bitDouble(0.0);  // ANGBASE
    number("$PDSIZE", 0.0);
    number("$PLINEWID", 0.0);
    for (const char* name : {"$USERR1", "$USERR2", "$USERR3", "$USERR4", "$USERR5"}) number(name, 0.0);
    number("$CHAMFERA", 0.0);
    number("$CHAMFERB", 0.0);
    number("$CHAMFERC", 0.0);
    number("$CHAMFERD", 0.0);
    number("$FACETRES", 0.5);
    number("$CMLSCALE", 1.0);
    number("$CELTSCALE", 1.0);
    w.text("acad");
    for (int i = 0; i < 8; ++i) w.bitLong(0);
    w.bitShort(static_cast<std::int16_t>(headerInt("$CECOLOR", 256, 62)));
    w.handle(0, handseed_ + 1);
    w.handle(kHardPointer, nameToHandle("LAYER", headerText("$CLAYER", 8, "0")));
    w.handle(kHardPointer, nameToHandle("STYLE", headerText("$TEXTSTYLE", 7, "Standard")));
    w.handle(kHardPointer, nameToHandle("LTYPE", headerText("$CELTYPE", 6, "ByLayer")));
    w.handle(kHardPointer, nameToHandle("DIMSTYLE", headerText("$DIMSTYLE", 2, "Standard")));
    w.handle(kHardPointer, 0);  // CMLSTYLE
    if (r2000_) w.bitDouble(0.0);  // PSVPSCALE
    const ge::Point3d zero{};
    w.point3Bit(zero);
    w.point3Bit({1e20, 1e20, 1e20});
    w.point3Bit({-1e20, -1e20, -1e20});
    w.point2Raw(zero);
    w.point2Raw({12, 9, 0});
    w.bitDouble(0.0);
    w.point3Bit(zero);
    w.point3Bit({1, 0, 0});
    w.point3Bit({0, 1, 0});
    w.handle(kHardPointer, 0);
    if (r2000_) {
        w.handle(kHardPointer, 0);
        w.bitShort(0);
        w.handle(kHardPointer, 0);
        for (int i = 0; i < 6; ++i) w.point3Bit(zero);
    }
    w.point3Bit(headerPoint("$INSBASE", zero));
    w.point3Bit(headerPoint("$EXTMIN", {1e20, 1e20, 1e20}));
    w.point3Bit(headerPoint("$EXTMAX", {-1e20, -1e20, -1e20}));
    w.point2Raw(headerPoint("$LIMMIN", zero));
    w.point2Raw(headerPoint("$LIMMAX", {420, 297, 0}));
    number("$ELEVATION", 0.0);
    w.point3Bit(headerPoint("$UCSORG", zero));
    w.point3Bit(headerPoint("$UCSXDIR", {1, 0, 0}));
    w.point3Bit(headerPoint("$UCSYDIR", {0, 1, 0}));
    w.handle(kHardPointer, 0);
    if (r2000_) {
        w.handle(kHardPointer, 0);
        w.bitShort(0);
        w.handle(kHardPointer, 0);
        for (int i = 0; i < 6; ++i) w.point3Bit(zero);
        w.text({});  // DIMPOST
        w.text({});  // DIMAPOST
    } else {
        // The dimension variables R14 keeps in its own order and forms.
        for (int i = 0; i < 11; ++i) w.bit(i == 2 || i == 3);
        w.rawChar(2);  // DIMALTD
        w.rawChar(0);  // DIMZIN
        w.bit(false);
        w.bit(false);
        w.rawChar(1);  // DIMTOLJ
        w.rawChar(0);  // DIMJUST
        w.rawChar(3);  // DIMFIT
        w.bit(false);
        for (int i = 0; i < 4; ++i) w.rawChar(0);
        for (const int v : {2, 0, 4, 4, 2, 2}) w.bitShort(static_cast<std::int16_t>(v));
        w.handle(kHardPointer, nameToHandle("STYLE", "Standard"));
    }
    number("$DIMSCALE", 1.0);
    number("$DIMASZ", 2.5);
    number("$DIMEXO", 0.625);
    number("$DIMDLI", 3.75);
    number("$DIMEXE", 1.25);
    for (int i = 0; i < 4; ++i) w.bitDouble(0.0);
    if (r2000_) {
        for (int i = 0; i < 6; ++i) w.bit(i == 2 || i == 3);
        w.bitShort(0);
        w.bitShort(0);
        w.bitShort(0);
    }
    number("$DIMTXT", 2.5);
    number("$DIMCEN", 2.5);
    w.bitDouble(0.0);   // DIMTSZ
    w.bitDouble(25.4);  // DIMALTF
    w.bitDouble(1.0);   // DIMLFAC
    w.bitDouble(0.0);   // DIMTVP
    w.bitDouble(1.0);   // DIMTFAC
    w.bitDouble(0.625); // DIMGAP
    if (!r2000_) {
        for (int i = 0; i < 5; ++i) w.text({});  // DIMPOST to DIMBLK2
    } else {
        w.bitDouble(0.0);  // DIMALTRND
        w.bit(false);
        w.bitShort(2);
        w.bit(false);
        w.bit(false);
        w.bit(false);
        w.bit(false);
    }
    w.bitShort(0);
    w.bitShort(0);
    w.bitShort(0);
    if (r2000_) {
        for (const int v : {0, 4, 4, 2, 2, 0, 0, 2, 46, 0, 0}) w.bitShort(static_cast<std::int16_t>(v));
        w.bit(false);
        w.bit(false);
        for (int i = 0; i < 4; ++i) w.bitShort(0);
        w.bit(false);
        w.bitShort(3);
        for (int i = 0; i < 5; ++i) w.handle(kHardPointer, 0);
        w.bitShort(-2);
        w.bitShort(-2);
    }
    for (const char* table : {"BLOCK_RECORD", "LAYER", "STYLE", "LTYPE", "VIEW", "UCS", "VPORT",
                              "APPID", "DIMSTYLE"}) {
        w.handle(kHardOwner, tables_[table].control);
    }
    w.handle(kHardOwner, 0);  // viewport entity headers
    std::uint64_t root = 0, groups = 0, layouts = 0, mlineStyles = 0, plotSettings = 0, plotStyles = 0;
    for (const Item& item : items_) {
        if (item.type != "DICTIONARY" || item.owner != 0) continue;
        root = item.handle;
        for (std::size_t i = 0; i + 1 < item.tags.size(); ++i) {
            if (item.tags[i].first != 3) continue;
            const std::string& key = item.tags[i].second;
            const std::uint64_t target = parseHandle(item.tags[i + 1].second);
            if (key == "ACAD_GROUP") groups = target;
            if (key == "ACAD_LAYOUT") layouts = target;
            if (key == "ACAD_MLINESTYLE") mlineStyles = target;
            if (key == "ACAD_PLOTSETTINGS") plotSettings = target;
            if (key == "ACAD_PLOTSTYLENAME") plotStyles = target;
        }
        break;
    }
    w.handle(kHardPointer, groups);
    w.handle(kHardPointer, mlineStyles);
    w.handle(kHardOwner, root);
    if (r2000_) {
        w.bitShort(1);
        w.bitShort(70);
        w.text({});
        w.text({});
        w.handle(kHardPointer, layouts);
        w.handle(kHardPointer, plotSettings);
        w.handle(kHardPointer, plotStyles);
        w.bitLong(lineweightIndex(-1) | (headerInt("$LWDISPLAY", 0, 290) ? 0x200 : 0));
        small("$INSUNITS", 0);
        w.bitShort(0);  // plot style by layer
        w.text({});
        w.text({});
    }
    w.handle(kHardPointer, paperSpace_);
    w.handle(kHardPointer, modelSpace_);
    w.handle(kHardPointer, nameToHandle("LTYPE", "ByLayer"));
    w.handle(kHardPointer, nameToHandle("LTYPE", "ByBlock"));
    w.handle(kHardPointer, nameToHandle("LTYPE", "Continuous"));
    w.alignToByte();

    std::string out(reinterpret_cast<const char*>(kHeaderStart), 16);
    std::string sized;
    const auto size = static_cast<std::uint32_t>(w.bytes().size());
    for (int i = 0; i < 4; ++i) sized += static_cast<char>(size >> (8 * i));
    sized += w.bytes();
    const std::uint16_t crc = dwgCrc16(sized, 0xC0C1);
    out += sized;
    out += static_cast<char>(crc & 0xFF);
    out += static_cast<char>(crc >> 8);
    out.append(reinterpret_cast<const char*>(kHeaderEnd), 16);
    return out;
}

std::string Encoder::classesSection() {
    BitWriter w;
    for (const auto& [name, number] : classes_) {
        w.bitShort(static_cast<std::int16_t>(number));
        w.bitShort(0);
        w.text("ObjectDBX Classes");
        w.text(name == "DICTIONARYVAR"         ? "AcDbDictionaryVar"
               : name == "ACDBDICTIONARYWDFLT" ? "AcDbDictionaryWithDefault"
               : name == "SCALE"               ? "AcDbScale"
               : name == "SORTENTSTABLE"       ? "AcDbSortentsTable"
               : name == "LWPOLYLINE"          ? "AcDbPolyline"
               : name == "HATCH"               ? "AcDbHatch"
               : name == "XRECORD"             ? "AcDbXrecord"
               : name == "ACDBPLACEHOLDER"     ? "AcDbPlaceHolder"
                                               : "AcDbObject");
        w.text(name);
        w.bit(false);
        w.bitShort(name == "LWPOLYLINE" || name == "HATCH" ? 0x1F2 : 0x1F3);
    }
    w.alignToByte();
    std::string out(reinterpret_cast<const char*>(kClassesStart), 16);
    std::string sized;
    const auto size = static_cast<std::uint32_t>(w.bytes().size());
    for (int i = 0; i < 4; ++i) sized += static_cast<char>(size >> (8 * i));
    sized += w.bytes();
    const std::uint16_t crc = dwgCrc16(sized, 0xC0C1);
    out += sized;
    out += static_cast<char>(crc & 0xFF);
    out += static_cast<char>(crc >> 8);
    out.append(reinterpret_cast<const char*>(kClassesEnd), 16);
    return out;
}

std::string Encoder::file() {
    classes_ = {{"DICTIONARYVAR", 500}, {"ACDBDICTIONARYWDFLT", 501}, {"SCALE", 502},
                {"SORTENTSTABLE", 503}};
    if (!r2000_) {
        classes_.insert(classes_.end(), {{"LWPOLYLINE", 504}, {"HATCH", 505}, {"XRECORD", 506},
                                         {"ACDBPLACEHOLDER", 507}});
    }
    index();

    // The records, each with its handle; symbol tables become their control objects.
    std::vector<std::pair<std::uint64_t, std::string>> records;
    for (const Item& item : items_) {
        if (item.type == "TABLE") {
            const std::string name = item.text(2);
            static const std::map<std::string, int, std::less<>> kControls{
                {"BLOCK_RECORD", 0x30}, {"LAYER", 0x32}, {"STYLE", 0x34}, {"LTYPE", 0x38},
                {"VIEW", 0x3C},         {"UCS", 0x3E},   {"VPORT", 0x40}, {"APPID", 0x42},
                {"DIMSTYLE", 0x44}};
            const auto control = kControls.find(name);
            if (control == kControls.end()) continue;
            Record r;
            r.data.setCompact(r2000_);
            number_ = 0;
            Item copy = item;
            copy.owner = 0;
            commonObject(r, copy, control->second);
            std::vector<std::uint64_t> entries;
            std::uint64_t first = 0, second = 0;
            for (const std::uint64_t e : tables_[name].entries) {
                const Item* entry = byHandle_[e];
                const std::string upper = entry ? sys::asciiUpper(entry->text(2)) : "";
                // Model and paper space, and ByLayer and ByBlock, follow the counted entries.
                if (name == "BLOCK_RECORD" && upper == "*MODEL_SPACE") {
                    first = e;
                } else if (name == "BLOCK_RECORD" && upper == "*PAPER_SPACE") {
                    second = e;
                } else if (name == "LTYPE" && upper == "BYLAYER") {
                    first = e;
                } else if (name == "LTYPE" && upper == "BYBLOCK") {
                    second = e;
                } else if (entry) {
                    entries.push_back(e);
                }
            }
            r.data.bitLong(static_cast<std::int32_t>(entries.size()));
            for (const std::uint64_t e : entries) r.handles.handle(kSoftOwner, e);
            if (name == "LTYPE") linetypeOrder_ = entries;
            if (name == "BLOCK_RECORD" || name == "LTYPE") {
                r.handles.handle(kSoftOwner, first);
                r.handles.handle(kSoftOwner, second);
            }
            records.emplace_back(item.handle, finish(r));
            continue;
        }
        const auto type = typeOf(item);
        if (!type) {
            ++leftOut_[item.type];
            continue;
        }
        Record r;
        r.data.setCompact(r2000_);
        number_ = 0;
        if (!r2000_) {
            // Types R14 knows only as classes.
            static constexpr std::pair<int, int> kAsClasses[] = {
                {0x4D, 504}, {0x4E, 505}, {0x4F, 506}, {0x50, 507}};
            for (const auto& [kind, number] : kAsClasses) {
                if (*type == kind) number_ = number;
            }
        }
        if (!encode(r, item, *type)) {
            ++leftOut_[item.type];
            continue;
        }
        records.emplace_back(item.handle, finish(r));
    }
    for (const auto& [type, count] : leftOut_) {
        messages_.push_back(std::to_string(count) + " " + type + (count == 1 ? " object" : " objects") +
                            " not written to DWG: the writer does not encode that type yet");
    }

    // File header with three section locators, then the sections in order.
    const std::string header = headerSection();
    const std::string classes = classesSection();
    constexpr std::size_t kLocators = 3;
    const std::size_t fileHeaderSize = 0x19 + 9 * kLocators + 2 + 16;
    const std::size_t headerAt = fileHeaderSize;
    const std::size_t classesAt = headerAt + header.size();
    std::size_t objectsAt = classesAt + classes.size();
    std::string objects;
    std::vector<std::pair<std::uint64_t, std::int64_t>> map;
    std::sort(records.begin(), records.end());
    for (const auto& [handle, bytes] : records) {
        map.emplace_back(handle, static_cast<std::int64_t>(objectsAt + objects.size()));
        objects += bytes;
    }
    const std::size_t mapAt = objectsAt + objects.size();
    std::string mapBytes;
    std::size_t i = 0;
    while (i < map.size()) {
        BitWriter page;
        std::uint64_t lastHandle = 0;
        std::int64_t lastOffset = 0;
        while (i < map.size() && page.bytes().size() < 2020) {
            page.modularChar(map[i].first - lastHandle);
            page.signedModularChar(map[i].second - lastOffset);
            lastHandle = map[i].first;
            lastOffset = map[i].second;
            ++i;
        }
        std::string sized;
        const std::size_t size = page.bytes().size() + 2;
        sized += static_cast<char>(size >> 8);
        sized += static_cast<char>(size & 0xFF);
        sized += page.bytes();
        const std::uint16_t crc = dwgCrc16(sized, 0xC0C1);
        mapBytes += sized;
        mapBytes += static_cast<char>(crc >> 8);
        mapBytes += static_cast<char>(crc & 0xFF);
    }
    {
        std::string last("\x00\x02", 2);
        const std::uint16_t crc = dwgCrc16(last, 0xC0C1);
        mapBytes += last;
        mapBytes += static_cast<char>(crc >> 8);
        mapBytes += static_cast<char>(crc & 0xFF);
    }

    std::string file = r2000_ ? "AC1015" : "AC1014";
    file += std::string(5, '\0');
    file += '\0';  // maintenance version
    file += '\x01';
    file += std::string(4, '\0');  // no preview image
    file += std::string("\x00\x00", 2);
    file += static_cast<char>(codePage_ & 0xFF);
    file += static_cast<char>(codePage_ >> 8);
    const auto putLong = [&file](std::uint32_t v) {
        for (int b = 0; b < 4; ++b) file += static_cast<char>(v >> (8 * b));
    };
    putLong(kLocators);
    const std::pair<std::size_t, std::size_t> locators[kLocators] = {
        {headerAt, header.size()}, {classesAt, classes.size()}, {mapAt, mapBytes.size()}};
    for (std::size_t n = 0; n < kLocators; ++n) {
        file += static_cast<char>(n);
        putLong(static_cast<std::uint32_t>(locators[n].first));
        putLong(static_cast<std::uint32_t>(locators[n].second));
    }
    const std::uint16_t crc = dwgCrc16(file, 0) ^ 0xA598;
    file += static_cast<char>(crc & 0xFF);
    file += static_cast<char>(crc >> 8);
    file.append(reinterpret_cast<const char*>(kFileSentinel), 16);
    file += header;
    file += classes;
    file += objects;
    file += mapBytes;
    return file;
}

}  // namespace

ErrorStatus DwgWriter::write(Database& database, std::string& bytes,
                             std::vector<std::string>& messages, DwgVersion version) {
    if (version == DwgVersion::R13) return ErrorStatus::eVersionNotSupported;
    std::string text;
    if (ErrorStatus es = dxf::DxfDatabaseWriter::write(database, DxfVersion::R2000, text, messages);
        es != ErrorStatus::eOk) {
        return es;
    }
    dxf::DxfFile file = dxf::DxfFile::fromBytes(std::move(text));
    dxf::DxfStructure structure;
    if (!file.ok() || dxf::StructureLoader::load(file, structure)) return ErrorStatus::eInvalidInput;
    std::vector<Item> items;
    for (const dxf::Section& section : structure.sections) {
        if (section.name == "HEADER" || section.name == "CLASSES") continue;
        for (const dxf::TagRun& run : section.items) {
            const auto tags = file.tagsOf(run);
            if (!tags || tags->empty()) continue;
            const std::string_view type = dxf::trimBlanks((*tags)[0].value);
            if (type == "ENDTAB" || type == "ENDSEC" || type == "EOF") continue;
            items.push_back(itemFrom(*tags));
            items.back().type = std::string(type);
        }
    }
    Encoder encoder(items, messages, structure, version == DwgVersion::R2000);
    bytes = encoder.file();
    return ErrorStatus::eOk;
}

}  // namespace cad::db::dwg
