// The common part of the DWG records the writer makes (type, handle, extended data, owner,
// reactors, layer and linetype links), the index it is made from, and the records' frames.
#include "cad/db/dwg/DwgEncoder.h"

#include <algorithm>

#include "cad/db/dwg/DwgCrc.h"
#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/db/dwg/DwgValues.h"

namespace cad::db::dwg {
namespace {

int codePageIndex(std::string_view name) {
    for (int i = 0; i < 45; ++i) {
        if (!dwgCodePageName(i).empty() && sys::equalNoCase(dwgCodePageName(i), name)) {
            return i;
        }
    }
    return 30;  // ANSI_1252
}

}  // namespace

void DwgEncoder::index() {
    std::uint64_t currentTable = 0;
    std::string currentTableName;
    std::uint64_t currentBlock = 0;
    std::uint64_t lastParent = 0;
    for (DwgItem& item : items_) {
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

std::optional<int> DwgEncoder::typeOf(const DwgItem& item) const {
    static const std::map<std::string, int, std::less<>> kTypes{
        {"TEXT", 0x01},        {"ATTRIB", 0x02},     {"ATTDEF", 0x03},    {"BLOCK", 0x04},
        {"ENDBLK", 0x05},      {"SEQEND", 0x06},     {"INSERT", 0x07},    {"ARC", 0x11},
        {"CIRCLE", 0x12},      {"LINE", 0x13},       {"POINT", 0x1B},     {"SOLID", 0x1F},
        {"TRACE", 0x20},       {"VIEWPORT", 0x22},   {"ELLIPSE", 0x23},  {"3DFACE", 0x1C},
        {"SPLINE", 0x24},      {"RAY", 0x28},        {"XLINE", 0x29},     {"HATCH", 0x4E},
        {"LEADER", 0x2D},      {"TOLERANCE", 0x2E},    {"DICTIONARY", 0x2A}, {"MTEXT", 0x2C},
        {"BLOCK_RECORD", 0x31}, {"LAYER", 0x33},     {"STYLE", 0x35},     {"LTYPE", 0x39},
        {"VIEW", 0x3D},        {"UCS", 0x3F},        {"VPORT", 0x41},     {"APPID", 0x43},
        {"DIMSTYLE", 0x45},    {"GROUP", 0x48},      {"MLINE", 0x2F},      {"MLINESTYLE", 0x49},      {"LWPOLYLINE", 0x4D}, {"XRECORD", 0x4F},
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

void DwgEncoder::extendedData(BitWriter& w, const DwgItem& item) {
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
                    const std::string bytes = bytesFromHex(value);
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

void DwgEncoder::recordStart(EncodedRecord& r, const DwgItem& item, int type, bool entity) {
    r.data.bitShort(static_cast<std::int16_t>(number_ ? number_ : type));
    // The size in bits, patched once the data is complete, stands before the handle from
    // 2000 on, after the extended data (and an entity's preview) before.
    if (r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
    r.data.handle(0, item.handle);
    extendedData(r.data, item);
    if (entity) r.data.bit(false);  // no preview graphics
    if (!r2000_) {
        r.sizeAt = r.data.bitPosition();
        r.data.rawLong(0);
    }
}

void DwgEncoder::commonObject(EncodedRecord& r, const DwgItem& item, int type) {
    recordStart(r, item, type, false);
    r.data.bitLong(static_cast<std::int32_t>(item.reactors.size()));
    r.handles.handle(kSoftPointer, item.owner);
    for (const std::uint64_t reactor : item.reactors) r.handles.handle(kSoftPointer, reactor);
    r.handles.handle(kHardOwner, item.xdictionary);
}

void DwgEncoder::commonEntity(EncodedRecord& r, const DwgItem& item, int type) {
    recordStart(r, item, type, true);
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

void DwgEncoder::ucsData(BitWriter& d, const DwgItem& item) {
    d.point3Bit(item.point(110));
    d.point3Bit(item.point(111, {1, 0, 0}));
    d.point3Bit(item.point(112, {0, 1, 0}));
    d.bitDouble(item.real(146));
    d.bitShort(static_cast<std::int16_t>(item.integer(79)));
}

void DwgEncoder::tableEntryStart(EncodedRecord& r, const DwgItem& item, int flags) {
    r.data.text(item.text(2));
    r.data.bit(flags & 64);
    r.data.bitShort(0);
    r.data.bit(flags & 16);
}

std::pair<std::vector<std::uint64_t>, std::uint64_t> DwgEncoder::childrenOf(const DwgItem& item,
                                                                          std::string_view type) {
    std::vector<std::uint64_t> children;
    std::uint64_t seqend = 0;
    for (const std::uint64_t child : owned_[item.handle]) {
        const DwgItem* c = byHandle_[child];
        if (c && c->type == type) children.push_back(child);
        if (c && c->type == "SEQEND") seqend = child;
    }
    return {std::move(children), seqend};
}

bool DwgEncoder::encode(EncodedRecord& r, const DwgItem& item, int type) {
    // Classes numbered by the drawing, after the ones every file has.
    if (type >= 504 && number_ == 0) {
        const std::string_view name = classNameOf(type);
        if (name == "IMAGE" || name == "WIPEOUT") {
            raster(r, item, type);
            return true;
        }
        if (name == "IMAGEDEF" || name == "IMAGEDEF_REACTOR") {
            imageDefinition(r, item, type);
            return true;
        }
        return false;
    }
    switch (type) {
        case 0x14: case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A:
        case 0x22: case 0x2C: case 0x2D: case 0x2E: case 0x4E:
            return encodeAnnotation(r, item, type);
        case 0x31: case 0x33: case 0x35: case 0x39: case 0x3D: case 0x3F: case 0x41: case 0x43:
        case 0x45:
            return encodeTableRecord(r, item, type);
        case 0x2A: case 0x48: case 0x49: case 0x4F: case 0x50: case 0x52: case 500: case 501:
        case 502: case 503:
            return encodeObject(r, item, type);
        default:
            return encodeEntity(r, item, type);
    }
}

std::string DwgEncoder::finish(EncodedRecord& r) {
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

}  // namespace cad::db::dwg
