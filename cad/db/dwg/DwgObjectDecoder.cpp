// The object records of R13 to R2000 DWG files. Each record is a data stream (fields, texts)
// followed by a handle stream that starts at the bit the record's size-in-bits names; both are
// read side by side, in the order the format lays them down.
#include "cad/db/dwg/DwgObjectDecoder.h"

#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <vector>

#include "cad/db/dwg/DwgCrc.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {
namespace {

struct FixedType {
    int number;
    const char* census;  // the name a type census gives it
    const char* dxf;     // the DXF record type; empty for tables' controls (named by census)
    bool entity;
};

constexpr FixedType kFixedTypes[] = {
    {0x01, "TEXT", "TEXT", true},
    {0x02, "ATTRIB", "ATTRIB", true},
    {0x03, "ATTDEF", "ATTDEF", true},
    {0x04, "BLOCK", "BLOCK", true},
    {0x05, "ENDBLK", "ENDBLK", true},
    {0x06, "SEQEND", "SEQEND", true},
    {0x07, "INSERT", "INSERT", true},
    {0x08, "MINSERT", "INSERT", true},
    {0x0A, "VERTEX_2D", "VERTEX", true},
    {0x0B, "VERTEX_3D", "VERTEX", true},
    {0x0C, "VERTEX_MESH", "VERTEX", true},
    {0x0D, "VERTEX_PFACE", "VERTEX", true},
    {0x0E, "VERTEX_PFACE_FACE", "VERTEX", true},
    {0x0F, "POLYLINE_2D", "POLYLINE", true},
    {0x10, "POLYLINE_3D", "POLYLINE", true},
    {0x11, "ARC", "ARC", true},
    {0x12, "CIRCLE", "CIRCLE", true},
    {0x13, "LINE", "LINE", true},
    {0x14, "DIMENSION_ORDINATE", "DIMENSION", true},
    {0x15, "DIMENSION_LINEAR", "DIMENSION", true},
    {0x16, "DIMENSION_ALIGNED", "DIMENSION", true},
    {0x17, "DIMENSION_ANG3PT", "DIMENSION", true},
    {0x18, "DIMENSION_ANG2LN", "DIMENSION", true},
    {0x19, "DIMENSION_RADIUS", "DIMENSION", true},
    {0x1A, "DIMENSION_DIAMETER", "DIMENSION", true},
    {0x1B, "POINT", "POINT", true},
    {0x1C, "3DFACE", "3DFACE", true},
    {0x1D, "POLYLINE_PFACE", "POLYLINE", true},
    {0x1E, "POLYLINE_MESH", "POLYLINE", true},
    {0x1F, "SOLID", "SOLID", true},
    {0x20, "TRACE", "TRACE", true},
    {0x21, "SHAPE", "SHAPE", true},
    {0x22, "VIEWPORT", "VIEWPORT", true},
    {0x23, "ELLIPSE", "ELLIPSE", true},
    {0x24, "SPLINE", "SPLINE", true},
    {0x25, "REGION", "REGION", true},
    {0x26, "3DSOLID", "3DSOLID", true},
    {0x27, "BODY", "BODY", true},
    {0x28, "RAY", "RAY", true},
    {0x29, "XLINE", "XLINE", true},
    {0x2A, "DICTIONARY", "DICTIONARY", false},
    {0x2B, "OLEFRAME", "OLEFRAME", true},
    {0x2C, "MTEXT", "MTEXT", true},
    {0x2D, "LEADER", "LEADER", true},
    {0x2E, "TOLERANCE", "TOLERANCE", true},
    {0x2F, "MLINE", "MLINE", true},
    {0x30, "BLOCK_CONTROL", "BLOCK_RECORD", false},
    {0x31, "BLOCK_HEADER", "BLOCK_RECORD", false},
    {0x32, "LAYER_CONTROL", "LAYER", false},
    {0x33, "LAYER", "LAYER", false},
    {0x34, "STYLE_CONTROL", "STYLE", false},
    {0x35, "STYLE", "STYLE", false},
    {0x38, "LTYPE_CONTROL", "LTYPE", false},
    {0x39, "LTYPE", "LTYPE", false},
    {0x3C, "VIEW_CONTROL", "VIEW", false},
    {0x3D, "VIEW", "VIEW", false},
    {0x3E, "UCS_CONTROL", "UCS", false},
    {0x3F, "UCS", "UCS", false},
    {0x40, "VPORT_CONTROL", "VPORT", false},
    {0x41, "VPORT", "VPORT", false},
    {0x42, "APPID_CONTROL", "APPID", false},
    {0x43, "APPID", "APPID", false},
    {0x44, "DIMSTYLE_CONTROL", "DIMSTYLE", false},
    {0x45, "DIMSTYLE", "DIMSTYLE", false},
    {0x46, "VX_CONTROL", "VX", false},
    {0x47, "VX_TABLE_RECORD", "VX", false},
    {0x48, "GROUP", "GROUP", false},
    {0x49, "MLINESTYLE", "MLINESTYLE", false},
    {0x4A, "OLE2FRAME", "OLE2FRAME", true},
    {0x4C, "LONG_TRANSACTION", "LONG_TRANSACTION", false},
    {0x4D, "LWPOLYLINE", "LWPOLYLINE", true},
    {0x4E, "HATCH", "HATCH", true},
    {0x4F, "XRECORD", "XRECORD", false},
    {0x50, "ACDBPLACEHOLDER", "ACDBPLACEHOLDER", false},
    {0x51, "VBA_PROJECT", "VBA_PROJECT", false},
    {0x52, "LAYOUT", "LAYOUT", false},
};

const FixedType* fixedType(int number) {
    for (const FixedType& type : kFixedTypes) {
        if (type.number == number) return &type;
    }
    return nullptr;
}

bool isControl(int type) { return type >= 0x30 && type <= 0x46 && type % 2 == 0; }

std::string hexHandle(std::uint64_t handle) {
    char buffer[17];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
    std::string out(buffer, result.ptr);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

std::string hexBytes(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        out += kDigits[byte >> 4];
        out += kDigits[byte & 0xF];
    }
    return out;
}

// Line weights are stored as an index; DXF holds hundredths of a millimetre, or -1 by layer,
// -2 by block, -3 the default.
int lineweightOf(int index) {
    static constexpr std::array<int, 24> kWeights{0,  5,  9,  13, 15, 18,  20,  25,
                                                  30, 35, 40, 50, 53, 60,  70,  80,
                                                  90, 100, 106, 120, 140, 158, 200, 211};
    if (index >= 0 && index < 24) return kWeights[index];
    if (index == 30) return -2;
    if (index == 31) return -3;
    return -1;
}

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

// DWG stores angles in radians, DXF in degrees. Of the degree values that give exactly the
// stored radians, the one with the fewest decimals is taken, so an angle written as 30
// degrees reads back as 30, not 29.999999999999996.
double toDegrees(double radians) {
    const double degrees = radians / kRadiansPerDegree;
    for (const double scale : {1.0, 1e3, 1e6, 1e9, 1e12}) {
        const double candidate = std::round(degrees * scale) / scale;
        if (candidate * kRadiansPerDegree == radians) return candidate;
    }
    return degrees;
}

}  // namespace

DwgObjectDecoder::DwgObjectDecoder(std::string_view file, const DwgFileLayout& layout)
    : file_(file), layout_(layout) {
    for (const DwgClass& cls : layout.classes) classes_[cls.number] = &cls;
}

std::string DwgObjectDecoder::typeName(int type) const {
    if (const FixedType* fixed = fixedType(type)) return fixed->census;
    if (const auto it = classes_.find(type); it != classes_.end()) return it->second->dxfName;
    return {};
}

std::uint64_t DwgObjectDecoder::ref() { return handles_.handle().absolute(own_); }

void DwgObjectDecoder::marker(DwgRecord& r, const char* name) { r.tags.push_back({100, name, 0}); }

void DwgObjectDecoder::integer(DwgRecord& r, int code, std::int64_t value) {
    r.tags.push_back({code, std::to_string(value), 0});
}

void DwgObjectDecoder::real(DwgRecord& r, int code, double value) {
    r.tags.push_back({code, formatReal(value), 0});
}

void DwgObjectDecoder::angle(DwgRecord& r, int code, double radians) {
    real(r, code, toDegrees(radians));
}

void DwgObjectDecoder::point(DwgRecord& r, int code, const ge::Point3d& p, bool withZ) {
    real(r, code, p.x);
    real(r, code + 10, p.y);
    if (withZ) real(r, code + 20, p.z);
}

void DwgObjectDecoder::text(DwgRecord& r, int code, const std::string& value) {
    r.tags.push_back({code, sys::toCaretForm(value), 0});
}

void DwgObjectDecoder::handleTag(DwgRecord& r, int code, std::uint64_t handle) {
    r.tags.push_back({code, hexHandle(handle), 0});
}

void DwgObjectDecoder::nameTag(DwgRecord& r, int code, std::uint64_t handle) {
    if (handle != 0) r.tags.push_back({code, {}, handle});
}

void DwgObjectDecoder::binaryTags(DwgRecord& r, int code, const std::string& bytes) {
    // DXF holds binary data in chunks of at most 127 bytes.
    for (std::size_t at = 0; at < bytes.size(); at += 127) {
        r.tags.push_back({code, hexBytes(std::string_view(bytes).substr(at, 127)), 0});
    }
}

DwgObjectDecoder::Outcome DwgObjectDecoder::decode(const DwgMapEntry& entry, DwgRecord& record) {
    error_.clear();
    crcMatched_ = true;
    // The record's buffers are reused from one object to the next.
    std::vector<DwgTag> tags = std::move(record.tags);
    tags.clear();
    record = DwgRecord{};
    record.tags = std::move(tags);
    record.handle = entry.handle;
    own_ = entry.handle;
    if (entry.offset < 0 || static_cast<std::uint64_t>(entry.offset) >= file_.size()) {
        error_ = dwgError(static_cast<std::uint64_t>(entry.offset),
                          "expected the object with handle " + hexHandle(entry.handle) +
                              " inside the file")
                     .message;
        return Outcome::Damaged;
    }
    const auto start = static_cast<std::size_t>(entry.offset);
    BitReader sizeReader(file_.substr(start, 8));
    const std::uint64_t size = sizeReader.modularShort();
    const std::size_t dataStart = start + sizeReader.byteOffset();
    if (sizeReader.failed() || size == 0 || size > file_.size() - dataStart) {
        error_ = dwgError(start, "expected the size of the object with handle " +
                                     hexHandle(entry.handle) + " within the file")
                     .message;
        return Outcome::Damaged;
    }
    const std::string_view body = file_.substr(dataStart, static_cast<std::size_t>(size));
    if (file_.size() - dataStart - size >= 2) {
        const auto stored = static_cast<std::uint16_t>(
            static_cast<std::uint8_t>(file_[dataStart + size]) |
            (static_cast<std::uint8_t>(file_[dataStart + size + 1]) << 8));
        crcMatched_ = dwgCrc16(file_.substr(start, dataStart - start + size), 0xC0C1) == stored;
    }
    data_ = BitReader(body);
    handles_ = BitReader(body);

    record.type = static_cast<std::uint16_t>(data_.bitShort());
    const FixedType* fixed = fixedType(record.type);
    const auto cls = classes_.find(record.type);
    bool entity = false;
    if (fixed) {
        entity = fixed->entity;
        record.dxfName = fixed->dxf;
    } else if (cls != classes_.end()) {
        entity = cls->second->isEntity;
        record.dxfName = cls->second->dxfName;
    } else {
        record.dxfName = "type " + std::to_string(record.type);
        return Outcome::NotDecoded;
    }
    record.isEntity = entity;
    record.isControl = isControl(record.type);
    readCommon(record, entity);
    if (data_.failed() || handles_.failed()) {
        error_ = dwgError(dataStart + (data_.failed() ? data_.failedAt() : handles_.failedAt()) / 8,
                          "expected the common part of the object with handle " +
                              hexHandle(entry.handle))
                     .message;
        return Outcome::Unreadable;
    }
    if (!decodeFields(record)) return Outcome::NotDecoded;
    if (data_.failed() || handles_.failed()) {
        error_ = dwgError(dataStart + (data_.failed() ? data_.failedAt() : handles_.failedAt()) / 8,
                          "expected the fields of " + record.dxfName + " " +
                              hexHandle(entry.handle))
                     .message;
        return Outcome::Unreadable;
    }
    return Outcome::Decoded;
}

void DwgObjectDecoder::readCommon(DwgRecord& record, bool entity) {
    std::int64_t dataBits = -1;
    if (r2000()) dataBits = static_cast<std::uint32_t>(data_.rawLong());
    const std::uint64_t own = data_.handle().value;
    if (own != own_) {
        // The map and the record disagree; the record's own handle is the one other links use.
        own_ = own;
        record.handle = own;
    }
    readExtendedData(record);
    if (entity) {
        if (data_.bit()) {
            const auto imageSize = static_cast<std::uint32_t>(data_.rawLong());
            data_.setBitPosition(data_.bitPosition() + std::size_t{imageSize} * 8);
        }
    }
    if (!r2000()) dataBits = static_cast<std::uint32_t>(data_.rawLong());
    handles_.setBitPosition(static_cast<std::size_t>(dataBits));
    // The data stream ends where the handles start.
    data_.setBitLimit(static_cast<std::size_t>(dataBits));

    if (!entity) {
        const std::int32_t reactors = data_.bitLong();
        record.owner = ref();
        for (std::int32_t i = 0; i < reactors && !handles_.failed(); ++i) {
            record.reactors.push_back(ref());
        }
        record.xdictionary = ref();
        return;
    }
    record.entityMode = data_.twoBits();
    const std::int32_t reactors = data_.bitLong();
    bool byLayerLinetype = true;
    if (!r2000()) byLayerLinetype = data_.bit();
    const bool noLinks = data_.bit();
    record.color = data_.color();
    record.linetypeScale = data_.bitDouble();
    int linetypeFlags = 0;
    if (r2000()) {
        linetypeFlags = data_.twoBits();
        const int plotStyleFlags = data_.twoBits();
        record.invisible = data_.bitShort() & 1;
        record.lineweight = lineweightOf(data_.rawChar());
        if (record.entityMode == 0) record.owner = ref();
        for (std::int32_t i = 0; i < reactors && !handles_.failed(); ++i) {
            record.reactors.push_back(ref());
        }
        record.xdictionary = ref();
        if (!noLinks) {
            ref();
            ref();
        }
        record.layer = ref();
        if (linetypeFlags == 3) record.linetype = ref();
        if (linetypeFlags == 1) record.linetypeName = "ByBlock";
        if (linetypeFlags == 2) record.linetypeName = "Continuous";
        if (plotStyleFlags == 3) ref();
        return;
    }
    record.invisible = data_.bitShort() & 1;
    if (record.entityMode == 0) record.owner = ref();
    for (std::int32_t i = 0; i < reactors && !handles_.failed(); ++i) {
        record.reactors.push_back(ref());
    }
    record.xdictionary = ref();
    record.layer = ref();
    if (!byLayerLinetype) record.linetype = ref();
    if (!noLinks) {
        ref();
        ref();
    }
}

void DwgObjectDecoder::readExtendedData(DwgRecord& record) {
    for (;;) {
        const auto size = static_cast<std::uint16_t>(data_.bitShort());
        if (size == 0 || data_.failed()) return;
        const std::uint64_t app = data_.handle().value;
        const std::string bytes = data_.bytes(size);
        if (data_.failed()) return;
        record.xdata.push_back({1001, {}, app});
        BitReader items(bytes);
        while (items.bitPosition() < items.sizeInBits() && !items.failed()) {
            const int code = 1000 + items.rawChar();
            switch (code) {
                case 1000: {
                    const std::uint8_t length = items.rawChar();
                    items.rawShort();  // the text's code page, always the drawing's here
                    record.xdata.push_back({code, sys::toCaretForm(items.bytes(length)), 0});
                    break;
                }
                case 1002:
                    record.xdata.push_back({code, items.rawChar() ? "}" : "{", 0});
                    break;
                case 1003:
                case 1005: {
                    std::uint64_t handle = 0;
                    for (int i = 0; i < 8; ++i) handle = (handle << 8) | items.rawChar();
                    if (code == 1003) {
                        record.xdata.push_back({code, "0", handle});
                    } else {
                        record.xdata.push_back({code, hexHandle(handle), 0});
                    }
                    break;
                }
                case 1004: {
                    const std::uint8_t length = items.rawChar();
                    record.xdata.push_back({code, hexBytes(items.bytes(length)), 0});
                    break;
                }
                case 1010: case 1011: case 1012: case 1013: {
                    const ge::Point3d p = items.point3Raw();
                    record.xdata.push_back({code, formatReal(p.x), 0});
                    record.xdata.push_back({code + 10, formatReal(p.y), 0});
                    record.xdata.push_back({code + 20, formatReal(p.z), 0});
                    break;
                }
                case 1040: case 1041: case 1042:
                    record.xdata.push_back({code, formatReal(items.rawDouble()), 0});
                    break;
                case 1070:
                    record.xdata.push_back({code, std::to_string(items.rawShort()), 0});
                    break;
                case 1071:
                    record.xdata.push_back({code, std::to_string(items.rawLong()), 0});
                    break;
                default:
                    // An item this reader does not know ends what can be read of the group.
                    items.fail();
                    break;
            }
        }
        if (items.failed()) {
            // A group that does not read whole is dropped: its items cannot be trusted.
            while (!record.xdata.empty() && record.xdata.back().code != 1001) {
                record.xdata.pop_back();
            }
            if (!record.xdata.empty()) record.xdata.pop_back();
        }
    }
}

void DwgObjectDecoder::textFields(DwgRecord& r, int kind) {
    double elevation = 0.0;
    ge::Point3d insertion, alignment;
    ge::Vector3d extrusion{0, 0, 1};
    double thickness = 0.0, oblique = 0.0, rotation = 0.0, height = 0.0, width = 1.0;
    int generation = 0, horizontal = 0, vertical = 0;
    bool hasAlignment = true;
    std::string value;
    if (!r2000()) {
        elevation = data_.bitDouble();
        insertion = data_.point2Raw();
        alignment = data_.point2Raw();
        extrusion = data_.vector3Bit();
        thickness = data_.bitDouble();
        oblique = data_.bitDouble();
        rotation = data_.bitDouble();
        height = data_.bitDouble();
        width = data_.bitDouble();
        value = data_.text();
        generation = data_.bitShort();
        horizontal = data_.bitShort();
        vertical = data_.bitShort();
    } else {
        const std::uint8_t flags = data_.rawChar();
        if (!(flags & 0x01)) elevation = data_.rawDouble();
        insertion = data_.point2Raw();
        if (!(flags & 0x02)) {
            alignment = data_.point2Default(insertion);
        } else {
            hasAlignment = false;
        }
        extrusion = data_.extrusion(true);
        thickness = data_.thickness(true);
        if (!(flags & 0x04)) oblique = data_.rawDouble();
        if (!(flags & 0x08)) rotation = data_.rawDouble();
        height = data_.rawDouble();
        if (!(flags & 0x10)) width = data_.rawDouble();
        value = data_.text();
        if (!(flags & 0x20)) generation = data_.bitShort();
        if (!(flags & 0x40)) horizontal = data_.bitShort();
        if (!(flags & 0x80)) vertical = data_.bitShort();
    }
    insertion.z = elevation;
    alignment.z = elevation;
    std::string tag, prompt;
    int attributeFlags = 0, fieldLength = 0;
    if (kind != 0) {
        tag = data_.text();
        fieldLength = data_.bitShort();
        attributeFlags = data_.rawChar();
        if (kind == 2) prompt = data_.text();
    }
    const std::uint64_t style = ref();

    marker(r, "AcDbText");
    if (thickness != 0.0) real(r, 39, thickness);
    point(r, 10, insertion);
    real(r, 40, height);
    text(r, 1, value);
    if (rotation != 0.0) angle(r, 50, rotation);
    if (width != 1.0) real(r, 41, width);
    if (oblique != 0.0) angle(r, 51, oblique);
    nameTag(r, 7, style);
    if (generation != 0) integer(r, 71, generation);
    if (horizontal != 0) integer(r, 72, horizontal);
    if (hasAlignment && (horizontal != 0 || vertical != 0)) point(r, 11, alignment);
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    if (kind == 0) {
        marker(r, "AcDbText");
        if (vertical != 0) integer(r, 73, vertical);
        return;
    }
    // Attributes keep their vertical alignment in their own subclass, as 74.
    if (kind == 1) {
        marker(r, "AcDbAttribute");
    } else {
        marker(r, "AcDbAttributeDefinition");
        text(r, 3, prompt);
    }
    text(r, 2, tag);
    integer(r, 70, attributeFlags);
    if (fieldLength != 0) integer(r, 73, fieldLength);
    if (vertical != 0) integer(r, 74, vertical);
}

void DwgObjectDecoder::insertFields(DwgRecord& r, bool multiple) {
    const ge::Point3d insertion = data_.point3Bit();
    ge::Point3d scale{1, 1, 1};
    if (!r2000()) {
        scale = data_.point3Bit();
    } else {
        switch (data_.twoBits()) {
            case 0:
                scale.x = data_.rawDouble();
                scale.y = data_.defaultDouble(scale.x);
                scale.z = data_.defaultDouble(scale.x);
                break;
            case 1:
                scale.y = data_.defaultDouble(1.0);
                scale.z = data_.defaultDouble(1.0);
                break;
            case 2: scale.x = scale.y = scale.z = data_.rawDouble(); break;
            default: break;
        }
    }
    const double rotation = data_.bitDouble();
    const ge::Vector3d extrusion = data_.vector3Bit();
    const bool hasAttributes = data_.bit();
    int columns = 1, rows = 1;
    double columnSpacing = 0.0, rowSpacing = 0.0;
    if (multiple) {
        columns = data_.bitShort();
        rows = data_.bitShort();
        columnSpacing = data_.bitDouble();
        rowSpacing = data_.bitDouble();
    }
    const std::uint64_t block = ref();
    if (hasAttributes) {
        ref();  // first and last ATTRIB: their owner links tell the same
        ref();
        r.seqend = ref();
    }
    marker(r, multiple ? "AcDbMInsertBlock" : "AcDbBlockReference");
    if (hasAttributes) integer(r, 66, 1);
    nameTag(r, 2, block);
    point(r, 10, insertion);
    if (scale.x != 1.0) real(r, 41, scale.x);
    if (scale.y != 1.0) real(r, 42, scale.y);
    if (scale.z != 1.0) real(r, 43, scale.z);
    if (rotation != 0.0) angle(r, 50, rotation);
    if (multiple) {
        integer(r, 70, columns);
        integer(r, 71, rows);
        real(r, 44, columnSpacing);
        real(r, 45, rowSpacing);
    }
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
}

void DwgObjectDecoder::tableEntryStart(DwgRecord& r, const char* subclass, int& flags) {
    r.name = data_.text();
    const bool referenced = data_.bit();
    data_.bitShort();  // xref index + 1
    const bool dependent = data_.bit();
    flags = (referenced ? 64 : 0) | (dependent ? 16 : 0);
    marker(r, "AcDbSymbolTableRecord");
    marker(r, subclass);
}

void DwgObjectDecoder::xrecordData(DwgRecord& r, std::size_t byteCount) {
    const std::string bytes = data_.bytes(byteCount);
    BitReader items(bytes);
    while (items.bitPosition() < items.sizeInBits() && !items.failed()) {
        const int code = static_cast<std::uint16_t>(items.rawShort());
        const auto in = [code](int low, int high) { return code >= low && code <= high; };
        if (in(0, 9) || in(100, 109) || in(300, 309) || in(410, 419) || in(430, 439) ||
            in(470, 479) || in(999, 1003)) {
            const auto length = static_cast<std::uint16_t>(items.rawShort());
            items.rawChar();  // code page
            text(r, code, items.bytes(length));
        } else if (in(10, 39) || in(110, 139) || in(210, 239) || in(1010, 1039)) {
            point(r, code, items.point3Raw());
        } else if (in(40, 59) || in(140, 149) || in(460, 469) || in(1040, 1059)) {
            real(r, code, items.rawDouble());
        } else if (in(60, 79) || in(170, 179) || in(270, 279) || in(370, 389) ||
                   in(400, 409) || in(1060, 1070)) {
            integer(r, code, items.rawShort());
        } else if (in(90, 99) || in(420, 429) || in(440, 449) || in(1071, 1071)) {
            integer(r, code, items.rawLong());
        } else if (in(280, 299)) {
            integer(r, code, items.rawChar());
        } else if (in(160, 169) || in(450, 459)) {
            std::uint64_t value = 0;
            for (int i = 0; i < 8; ++i) value |= std::uint64_t{items.rawChar()} << (8 * i);
            integer(r, code, static_cast<std::int64_t>(value));
        } else if (in(310, 319) || in(1004, 1004)) {
            const std::uint8_t length = items.rawChar();
            r.tags.push_back({code, hexBytes(items.bytes(length)), 0});
        } else if (in(320, 369) || in(390, 399) || in(480, 481) || code == 1005) {
            std::uint64_t value = 0;
            for (int i = 0; i < 8; ++i) value |= std::uint64_t{items.rawChar()} << (8 * i);
            handleTag(r, code, value);
        } else {
            items.fail();
        }
    }
    if (items.failed()) data_.fail();
}

bool DwgObjectDecoder::decodeFields(DwgRecord& r) {
    const bool r2k = r2000();
    const std::string& name = r.dxfName;
    const auto extrusionTags = [&](const ge::Vector3d& e) { point(r, 210, {e.x, e.y, e.z}); };
    switch (r.type) {
        case 0x01: textFields(r, 0); return true;
        case 0x02: textFields(r, 1); return true;
        case 0x03: textFields(r, 2); return true;
        case 0x04:
            r.name = data_.text();
            return true;
        case 0x05:
        case 0x06: return true;
        case 0x07: insertFields(r, false); return true;
        case 0x08: insertFields(r, true); return true;
        case 0x0A: {
            const int flags = data_.rawChar();
            const ge::Point3d p = data_.point3Bit();
            double start = data_.bitDouble(), end = start;
            if (start < 0.0) {
                start = end = -start;
            } else {
                end = data_.bitDouble();
            }
            const double bulge = data_.bitDouble();
            const double tangent = data_.bitDouble();
            marker(r, "AcDbVertex");
            marker(r, "AcDb2dVertex");
            point(r, 10, p);
            if (start != 0.0) real(r, 40, start);
            if (end != 0.0) real(r, 41, end);
            if (bulge != 0.0) real(r, 42, bulge);
            integer(r, 70, flags);
            if (flags & 2) angle(r, 50, tangent);
            return true;
        }
        case 0x0B:
        case 0x0C:
        case 0x0D: {
            const int flags = data_.rawChar();
            const ge::Point3d p = data_.point3Bit();
            marker(r, "AcDbVertex");
            marker(r, r.type == 0x0B   ? "AcDb3dPolylineVertex"
                      : r.type == 0x0C ? "AcDbPolygonMeshVertex"
                                       : "AcDbPolyFaceMeshVertex");
            point(r, 10, p);
            integer(r, 70, flags | (r.type == 0x0B ? 32 : r.type == 0x0C ? 64 : 192));
            return true;
        }
        case 0x0E: {
            marker(r, "AcDbFaceRecord");
            point(r, 10, {});
            integer(r, 70, 128);
            for (int code = 71; code <= 74; ++code) integer(r, code, data_.bitShort());
            return true;
        }
        case 0x0F: {
            const int flags = data_.bitShort();
            const int curve = data_.bitShort();
            const double start = data_.bitDouble();
            const double end = data_.bitDouble();
            const double thickness = data_.thickness(r2k);
            const double elevation = data_.bitDouble();
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDb2dPolyline");
            integer(r, 66, 1);
            point(r, 10, {0, 0, elevation});
            if (thickness != 0.0) real(r, 39, thickness);
            integer(r, 70, flags);
            if (start != 0.0) real(r, 40, start);
            if (end != 0.0) real(r, 41, end);
            if (curve != 0) integer(r, 75, curve);
            extrusionTags(extrusion);
            return true;
        }
        case 0x10: {
            const int spline = data_.rawChar();
            const int closed = data_.rawChar();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDb3dPolyline");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, 8 | (closed & 1) | ((spline & 3) ? 4 : 0));
            if (spline & 3) integer(r, 75, (spline & 1) ? 5 : 6);
            return true;
        }
        case 0x1D: {
            const int vertices = data_.bitShort();
            const int faces = data_.bitShort();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDbPolyFaceMesh");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, 64);
            integer(r, 71, vertices);
            integer(r, 72, faces);
            return true;
        }
        case 0x1E: {
            const int flags = data_.bitShort();
            const int curve = data_.bitShort();
            const int m = data_.bitShort(), n = data_.bitShort();
            const int mDensity = data_.bitShort(), nDensity = data_.bitShort();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDbPolygonMesh");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, flags | 16);
            integer(r, 71, m);
            integer(r, 72, n);
            integer(r, 73, mDensity);
            integer(r, 74, nDensity);
            integer(r, 75, curve);
            return true;
        }
        case 0x11:
        case 0x12: {
            const ge::Point3d center = data_.point3Bit();
            const double radius = data_.bitDouble();
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbCircle");
            if (thickness != 0.0) real(r, 39, thickness);
            point(r, 10, center);
            real(r, 40, radius);
            extrusionTags(extrusion);
            if (r.type == 0x11) {
                const double start = data_.bitDouble();
                const double end = data_.bitDouble();
                marker(r, "AcDbArc");
                angle(r, 50, start);
                angle(r, 51, end);
            }
            return true;
        }
        case 0x13: {
            ge::Point3d start, end;
            if (!r2k) {
                start = data_.point3Bit();
                end = data_.point3Bit();
            } else {
                const bool zeroZ = data_.bit();
                start.x = data_.rawDouble();
                end.x = data_.defaultDouble(start.x);
                start.y = data_.rawDouble();
                end.y = data_.defaultDouble(start.y);
                if (!zeroZ) {
                    start.z = data_.rawDouble();
                    end.z = data_.defaultDouble(start.z);
                }
            }
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbLine");
            if (thickness != 0.0) real(r, 39, thickness);
            point(r, 10, start);
            point(r, 11, end);
            extrusionTags(extrusion);
            return true;
        }
        case 0x1B: {
            const ge::Point3d p = data_.point3Bit();
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            const double xAngle = data_.bitDouble();
            marker(r, "AcDbPoint");
            point(r, 10, p);
            if (thickness != 0.0) real(r, 39, thickness);
            extrusionTags(extrusion);
            if (xAngle != 0.0) angle(r, 50, xAngle);
            return true;
        }
        case 0x1C: {
            std::array<ge::Point3d, 4> corners;
            int flags = 0;
            if (!r2k) {
                for (auto& c : corners) c = data_.point3Bit();
                flags = data_.bitShort();
            } else {
                const bool noFlags = data_.bit();
                const bool zeroZ = data_.bit();
                corners[0].x = data_.rawDouble();
                corners[0].y = data_.rawDouble();
                if (!zeroZ) corners[0].z = data_.rawDouble();
                for (int i = 1; i < 4; ++i) {
                    corners[i].x = data_.defaultDouble(corners[i - 1].x);
                    corners[i].y = data_.defaultDouble(corners[i - 1].y);
                    corners[i].z = data_.defaultDouble(corners[i - 1].z);
                }
                if (!noFlags) flags = data_.bitShort();
            }
            marker(r, "AcDbFace");
            for (int i = 0; i < 4; ++i) point(r, 10 + i, corners[i]);
            if (flags != 0) integer(r, 70, flags);
            return true;
        }
        case 0x1F:
        case 0x20: {
            const double thickness = data_.thickness(r2k);
            const double elevation = data_.bitDouble();
            std::array<ge::Point3d, 4> corners;
            for (auto& c : corners) {
                c = data_.point2Raw();
                c.z = elevation;
            }
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbTrace");
            for (int i = 0; i < 4; ++i) point(r, 10 + i, corners[i]);
            if (thickness != 0.0) real(r, 39, thickness);
            extrusionTags(extrusion);
            return true;
        }
        case 0x23: {
            const ge::Point3d center = data_.point3Bit();
            const ge::Point3d major = data_.point3Bit();
            const ge::Vector3d extrusion = data_.vector3Bit();
            const double ratio = data_.bitDouble();
            const double start = data_.bitDouble();
            const double end = data_.bitDouble();
            marker(r, "AcDbEllipse");
            point(r, 10, center);
            point(r, 11, major);
            extrusionTags(extrusion);
            real(r, 40, ratio);
            real(r, 41, start);
            real(r, 42, end);
            return true;
        }
        case 0x14: case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A:
            dimensionFields(r);
            return true;
        case 0x24: {
            const std::int32_t scenario = data_.bitLong();
            const std::int32_t degree = data_.bitLong();
            int flags = 8;  // planar, as DXF writers mark every spline drawn in a plane
            double knotTolerance = 0.0, controlTolerance = 0.0, fitTolerance = 0.0;
            ge::Point3d startTangent, endTangent;
            std::int32_t knots = 0, controls = 0, fits = 0;
            bool weighted = false;
            if (scenario == 2) {
                fitTolerance = data_.bitDouble();
                startTangent = data_.point3Bit();
                endTangent = data_.point3Bit();
                fits = data_.bitLong();
            } else if (scenario == 1) {
                if (data_.bit()) flags |= 4;
                if (data_.bit()) flags |= 1;
                if (data_.bit()) flags |= 2;
                knotTolerance = data_.bitDouble();
                controlTolerance = data_.bitDouble();
                knots = data_.bitLong();
                controls = data_.bitLong();
                weighted = data_.bit();
            } else {
                data_.fail();
                return true;
            }
            if (!fitsIn(knots) || !fitsIn(controls) || !fitsIn(fits)) return true;
            std::vector<double> knotList, weights;
            std::vector<ge::Point3d> controlPoints, fitPoints;
            for (std::int32_t i = 0; i < knots && !data_.failed(); ++i) {
                knotList.push_back(data_.bitDouble());
            }
            for (std::int32_t i = 0; i < controls && !data_.failed(); ++i) {
                controlPoints.push_back(data_.point3Bit());
                if (weighted) weights.push_back(data_.bitDouble());
            }
            for (std::int32_t i = 0; i < fits && !data_.failed(); ++i) {
                fitPoints.push_back(data_.point3Bit());
            }
            marker(r, "AcDbSpline");
            integer(r, 70, flags);
            integer(r, 71, degree);
            integer(r, 72, knots);
            integer(r, 73, controls);
            integer(r, 74, fits);
            // Splines by fit points store no knot or control tolerance; the usual ones stand.
            real(r, 42, scenario == 2 ? 1e-10 : knotTolerance);
            real(r, 43, scenario == 2 ? 1e-10 : controlTolerance);
            if (scenario == 2) {
                real(r, 44, fitTolerance);
                point(r, 12, startTangent);
                point(r, 13, endTangent);
            }
            for (const double k : knotList) real(r, 40, k);
            for (const double w : weights) real(r, 41, w);
            for (const ge::Point3d& p : controlPoints) point(r, 10, p);
            for (const ge::Point3d& p : fitPoints) point(r, 11, p);
            return true;
        }
        case 0x45:
            dimensionStyleFields(r);
            return true;
        case 0x22: {
            const ge::Point3d center = data_.point3Bit();
            const double width = data_.bitDouble();
            const double height = data_.bitDouble();
            marker(r, "AcDbViewport");
            point(r, 10, center);
            real(r, 40, width);
            real(r, 41, height);
            integer(r, 68, 1);
            integer(r, 69, ++viewports_);
            if (!r2k) {
                ref();  // the viewport's entity header; the view itself is in its extended data
                return true;
            }
            const ge::Point3d target = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            const double twist = data_.bitDouble();
            const double viewHeight = data_.bitDouble();
            const double lens = data_.bitDouble();
            const double front = data_.bitDouble();
            const double back = data_.bitDouble();
            const double snapAngle = data_.bitDouble();
            const ge::Point3d viewCenter = data_.point2Raw();
            const ge::Point3d snapBase = data_.point2Raw();
            const ge::Point3d snapSpacing = data_.point2Raw();
            const ge::Point3d gridSpacing = data_.point2Raw();
            const int circleZoom = data_.bitShort();
            const std::int32_t frozen = data_.bitLong();
            if (!fitsIn(frozen)) return true;
            const std::int32_t status = data_.bitLong();
            const std::string styleSheet = data_.text();
            const int renderMode = data_.rawChar();
            const bool ucsIcon = data_.bit();
            const bool ucsPerViewport = data_.bit();
            const ge::Point3d ucsOrigin = data_.point3Bit();
            const ge::Point3d ucsX = data_.point3Bit();
            const ge::Point3d ucsY = data_.point3Bit();
            const double elevation = data_.bitDouble();
            const int orthographic = data_.bitShort();
            point(r, 12, viewCenter, false);
            point(r, 13, snapBase, false);
            point(r, 14, snapSpacing, false);
            point(r, 15, gridSpacing, false);
            point(r, 16, direction);
            point(r, 17, target);
            real(r, 42, lens);
            real(r, 43, front);
            real(r, 44, back);
            real(r, 45, viewHeight);
            angle(r, 50, snapAngle);
            angle(r, 51, twist);
            integer(r, 72, circleZoom);
            for (std::int32_t i = 0; i < frozen && !handles_.failed(); ++i) {
                handleTag(r, 331, ref());
            }
            integer(r, 90, status);
            const std::uint64_t clip = ref();
            if (clip != 0) handleTag(r, 340, clip);
            text(r, 1, styleSheet);
            integer(r, 281, renderMode);
            integer(r, 71, ucsPerViewport ? 1 : 0);
            integer(r, 74, ucsIcon ? 1 : 0);
            point(r, 110, ucsOrigin);
            point(r, 111, ucsX);
            point(r, 112, ucsY);
            ref();  // the viewport's entity header
            const std::uint64_t namedUcs = ref();
            const std::uint64_t baseUcs = ref();
            if (namedUcs != 0) handleTag(r, 345, namedUcs);
            if (baseUcs != 0) handleTag(r, 346, baseUcs);
            integer(r, 79, orthographic);
            real(r, 146, elevation);
            return true;
        }
        case 0x2D: {
            data_.bit();
            const int creation = data_.bitShort();
            const int pathType = data_.bitShort();
            const std::int32_t count = data_.bitLong();
            if (!fitsIn(count)) return true;
            std::vector<ge::Point3d> vertices;
            for (std::int32_t i = 0; i < count && !data_.failed(); ++i) {
                vertices.push_back(data_.point3Bit());
            }
            data_.point3Bit();  // the plane's origin, the first vertex again
            const ge::Point3d extrusion = data_.point3Bit();
            const ge::Point3d xDirection = data_.point3Bit();
            const ge::Point3d blockOffset = data_.point3Bit();
            ge::Point3d annotationOffset;
            if (layout_.version != DwgVersion::R13) annotationOffset = data_.point3Bit();
            if (!r2k) data_.bitDouble();
            const double boxHeight = data_.bitDouble();
            const double boxWidth = data_.bitDouble();
            const bool hookOnX = data_.bit();
            const bool arrowhead = data_.bit();
            const std::uint64_t annotation = ref();
            const std::uint64_t style = ref();
            marker(r, "AcDbLeader");
            nameTag(r, 3, style);
            integer(r, 71, arrowhead ? 1 : 0);
            integer(r, 72, pathType);
            integer(r, 73, creation);
            integer(r, 74, hookOnX ? 1 : 0);
            integer(r, 75, 0);
            real(r, 40, boxHeight);
            real(r, 41, boxWidth);
            integer(r, 76, count);
            for (const ge::Point3d& p : vertices) point(r, 10, p);
            if (annotation != 0) handleTag(r, 340, annotation);
            point(r, 210, extrusion);
            point(r, 211, xDirection);
            point(r, 212, blockOffset);
            point(r, 213, annotationOffset);
            return true;
        }
        case 0x2E: {
            if (!r2k) {
                data_.bitShort();
                data_.bitDouble();
                data_.bitDouble();
            }
            const ge::Point3d insertion = data_.point3Bit();
            const ge::Point3d xDirection = data_.point3Bit();
            const ge::Point3d extrusion = data_.point3Bit();
            const std::string value = data_.text();
            const std::uint64_t style = ref();
            marker(r, "AcDbFcf");
            nameTag(r, 3, style);
            point(r, 10, insertion);
            text(r, 1, value);
            point(r, 210, extrusion);
            point(r, 11, xDirection);
            return true;
        }
        case 0x28:
        case 0x29: {
            const ge::Point3d base = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            marker(r, r.type == 0x28 ? "AcDbRay" : "AcDbXline");
            point(r, 10, base);
            point(r, 11, direction);
            return true;
        }
        case 0x2C: {
            const ge::Point3d insertion = data_.point3Bit();
            const ge::Vector3d extrusion = data_.vector3Bit();
            const ge::Point3d xAxis = data_.point3Bit();
            const double width = data_.bitDouble();
            const double height = data_.bitDouble();
            const int attachment = data_.bitShort();
            const int direction = data_.bitShort();
            data_.bitDouble();  // extents of the text as last drawn
            data_.bitDouble();
            const std::string value = data_.text();
            int spacingStyle = 1;
            double spacingFactor = 1.0;
            if (r2k) {
                spacingStyle = data_.bitShort();
                spacingFactor = data_.bitDouble();
                data_.bit();
            }
            const std::uint64_t style = ref();
            marker(r, "AcDbMText");
            point(r, 10, insertion);
            real(r, 40, height);
            real(r, 41, width);
            integer(r, 71, attachment);
            integer(r, 72, direction);
            // Long texts are split: 3 for each leading piece of 250 bytes, 1 for the rest.
            const std::string caret = sys::toCaretForm(value);
            std::size_t at = 0;
            while (caret.size() - at > 250) {
                r.tags.push_back({3, caret.substr(at, 250), 0});
                at += 250;
            }
            r.tags.push_back({1, caret.substr(at), 0});
            nameTag(r, 7, style);
            extrusionTags(extrusion);
            point(r, 11, xAxis);
            // Line spacing as most texts have it (at least, single) is left to the default.
            if (r2k && (spacingStyle != 1 || spacingFactor != 1.0)) {
                integer(r, 73, spacingStyle);
                real(r, 44, spacingFactor);
            }
            return true;
        }
        case 0x2A: {
            const std::int32_t count = data_.bitLong();
            int hardOwner = 0, cloning = 1;
            if (layout_.version == DwgVersion::R14) data_.rawChar();
            if (r2k) {
                cloning = data_.bitShort();
                hardOwner = data_.rawChar();
            }
            marker(r, "AcDbDictionary");
            // The flags came with 2000; R13 and R14 dictionaries have none to give.
            if (hardOwner != 0) integer(r, 280, hardOwner);
            if (r2k) integer(r, 281, cloning);
            std::vector<std::string> keys;
            for (std::int32_t i = 0; i < count && !data_.failed(); ++i) keys.push_back(data_.text());
            for (const std::string& key : keys) {
                const std::uint64_t item = ref();
                text(r, 3, key);
                handleTag(r, hardOwner ? 360 : 350, item);
            }
            return true;
        }
        case 0x30: case 0x32: case 0x34: case 0x38: case 0x3C: case 0x3E: case 0x40:
        case 0x42: case 0x44: {
            const std::int32_t count = data_.bitLong();
            for (std::int32_t i = 0; i < count && !handles_.failed(); ++i) {
                r.entries.push_back(ref());
            }
            if (r.type == 0x30 || r.type == 0x38) {
                // *MODEL_SPACE and *PAPER_SPACE, or BYLAYER and BYBLOCK, follow the counted
                // records.
                r.entries.push_back(ref());
                r.entries.push_back(ref());
            }
            return true;
        }
        case 0x31: {
            int flags = 0;
            tableEntryStart(r, "AcDbBlockTableRecord", flags);
            const bool anonymous = data_.bit();
            const bool hasAttributes = data_.bit();
            const bool isXref = data_.bit();
            const bool overlaid = data_.bit();
            if (r2k) data_.bit();  // loaded
            r.basePoint = data_.point3Bit();
            r.xrefPath = data_.text();
            std::string preview;
            std::uint64_t inserts = 0;
            if (r2k) {
                while (data_.rawChar() != 0 && !data_.failed()) ++inserts;
                data_.text();  // description
                const auto previewSize = static_cast<std::uint32_t>(data_.bitLong());
                preview = data_.bytes(previewSize);
            }
            r.blockFlags = flags | (anonymous ? 1 : 0) | (hasAttributes ? 2 : 0) |
                           (isXref ? 4 : 0) | (overlaid ? 8 : 0);
            ref();  // the null link every table record has before its own
            r.blockEntity = ref();
            if (!isXref && !overlaid) {
                ref();
                ref();
            }
            r.endblkEntity = ref();
            std::uint64_t layout = 0;
            if (r2k) {
                for (std::uint64_t i = 0; i < inserts && !handles_.failed(); ++i) ref();
                layout = ref();
            }
            // The DXF names of the two space blocks are spelt so, in every writer.
            std::string blockName = r.name;
            if (blockName == "*MODEL_SPACE") blockName = "*Model_Space";
            if (blockName.rfind("*PAPER_SPACE", 0) == 0) {
                blockName = "*Paper_Space" + blockName.substr(12);
            }
            r.name = blockName;
            text(r, 2, blockName);
            if (layout != 0) handleTag(r, 340, layout);
            binaryTags(r, 310, preview);
            return true;
        }
        case 0x33: {
            int flags = 0;
            tableEntryStart(r, "AcDbLayerTableRecord", flags);
            bool off = false, plot = true;
            int lineweight = -3;
            if (!r2k) {
                if (data_.bit()) flags |= 1;
                off = !data_.bit();
                if (data_.bit()) flags |= 2;
                if (data_.bit()) flags |= 4;
            } else {
                const int values = data_.bitShort();
                if (values & 1) flags |= 1;
                off = values & 2;
                if (values & 4) flags |= 2;
                if (values & 8) flags |= 4;
                plot = values & 16;
                lineweight = lineweightOf((values & 0x3E0) >> 5);
            }
            int color = data_.color();
            ref();  // external reference block
            std::uint64_t plotStyle = 0;
            if (r2k) plotStyle = ref();
            const std::uint64_t linetype = ref();
            if (color < 0) {
                off = true;
                color = -color;
            }
            text(r, 2, r.name);
            integer(r, 70, flags);
            integer(r, 62, off ? -color : color);
            nameTag(r, 6, linetype);
            if (r2k) {
                if (!plot) integer(r, 290, 0);
                integer(r, 370, lineweight);
                if (plotStyle != 0) handleTag(r, 390, plotStyle);
            }
            return true;
        }
        case 0x35: {
            int flags = 0;
            tableEntryStart(r, "AcDbTextStyleTableRecord", flags);
            if (data_.bit()) flags |= 4;
            if (data_.bit()) flags |= 1;
            const double fixedHeight = data_.bitDouble();
            const double width = data_.bitDouble();
            const double oblique = data_.bitDouble();
            const int generation = data_.rawChar();
            const double lastHeight = data_.bitDouble();
            const std::string font = data_.text();
            const std::string bigFont = data_.text();
            text(r, 2, r.name);
            integer(r, 70, flags);
            real(r, 40, fixedHeight);
            real(r, 41, width);
            angle(r, 50, oblique);
            integer(r, 71, generation);
            real(r, 42, lastHeight);
            text(r, 3, font);
            if (!bigFont.empty()) text(r, 4, bigFont);
            return true;
        }
        case 0x39: {
            int flags = 0;
            tableEntryStart(r, "AcDbLinetypeTableRecord", flags);
            // The two linetypes every drawing has are stored in capitals; DXF spells them so.
            if (r.name == "BYLAYER") r.name = "ByLayer";
            if (r.name == "BYBLOCK") r.name = "ByBlock";
            const std::string description = data_.text();
            const double length = data_.bitDouble();
            const int alignment = data_.rawChar();
            const int dashes = data_.rawChar();
            text(r, 2, r.name);
            integer(r, 70, flags);
            text(r, 3, description);
            integer(r, 72, alignment);
            integer(r, 73, dashes);
            real(r, 40, length);
            struct Dash {
                double length, x, y, scale, rotation;
                int shape, flags;
            };
            std::vector<Dash> list;
            for (int i = 0; i < dashes && !data_.failed(); ++i) {
                Dash d{};
                d.length = data_.bitDouble();
                d.shape = data_.bitShort();
                d.x = data_.rawDouble();
                d.y = data_.rawDouble();
                d.scale = data_.bitDouble();
                d.rotation = data_.bitDouble();
                d.flags = data_.bitShort();
                list.push_back(d);
            }
            ref();  // external reference block
            for (const Dash& d : list) {
                const std::uint64_t shapeFile = ref();
                real(r, 49, d.length);
                integer(r, 74, d.flags);
                if (d.flags & 6) {
                    integer(r, 75, d.shape);
                    if (shapeFile != 0) handleTag(r, 340, shapeFile);
                    real(r, 46, d.scale);
                    angle(r, 50, d.rotation);
                    real(r, 44, d.x);
                    real(r, 45, d.y);
                }
            }
            return true;
        }
        case 0x3D:
        case 0x41: {
            const bool vport = r.type == 0x41;
            int flags = 0;
            tableEntryStart(r, vport ? "AcDbViewportTableRecord" : "AcDbViewTableRecord", flags);
            const double height = data_.bitDouble();
            const double second = data_.bitDouble();  // a view's width; a viewport's width
            const ge::Point3d center = data_.point2Raw();
            const ge::Point3d target = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            const double twist = data_.bitDouble();
            const double lens = data_.bitDouble();
            const double front = data_.bitDouble();
            const double back = data_.bitDouble();
            int mode = 0;
            if (data_.bit()) mode |= 1;
            if (data_.bit()) mode |= 2;
            if (data_.bit()) mode |= 4;
            if (!data_.bit()) mode |= 16;
            int renderMode = 0;
            if (r2k) renderMode = data_.rawChar();
            text(r, 2, r.name);
            if (!vport) {
                if (data_.bit()) flags |= 1;
                integer(r, 70, flags);
                real(r, 40, height);
                point(r, 10, center, false);
                real(r, 41, second);
                point(r, 11, direction);
                point(r, 12, target);
                real(r, 42, lens);
                real(r, 43, front);
                real(r, 44, back);
                angle(r, 50, twist);
                integer(r, 71, mode);
                if (r2k) {
                    integer(r, 281, renderMode);
                    const bool ucs = data_.bit();
                    integer(r, 72, ucs ? 1 : 0);
                    if (ucs) {
                        point(r, 110, data_.point3Bit());
                        point(r, 111, data_.point3Bit());
                        point(r, 112, data_.point3Bit());
                        real(r, 146, data_.bitDouble());
                        integer(r, 79, data_.bitShort());
                        ref();  // external reference block
                        const std::uint64_t baseUcs = ref();
                        const std::uint64_t namedUcs = ref();
                        if (namedUcs != 0) handleTag(r, 345, namedUcs);
                        if (baseUcs != 0) handleTag(r, 346, baseUcs);
                    }
                }
                return true;
            }
            // A viewport stores its width where DXF keeps the ratio of width to height.
            const double aspect = height != 0.0 ? second / height : 1.0;
            const ge::Point3d lowerLeft = data_.point2Raw();
            const ge::Point3d upperRight = data_.point2Raw();
            if (data_.bit()) mode |= 8;
            const int circleZoom = data_.bitShort();
            const int fastZoom = data_.bit() ? 1 : 0;
            int ucsIcon = data_.bit() ? 1 : 0;
            if (data_.bit()) ucsIcon |= 2;
            const int gridOn = data_.bit() ? 1 : 0;
            const ge::Point3d gridSpacing = data_.point2Raw();
            const int snapOn = data_.bit() ? 1 : 0;
            const int snapStyle = data_.bit() ? 1 : 0;
            const int isoPair = data_.bitShort();
            const double snapRotation = data_.bitDouble();
            const ge::Point3d snapBase = data_.point2Raw();
            const ge::Point3d snapSpacing = data_.point2Raw();
            integer(r, 70, flags);
            point(r, 10, lowerLeft, false);
            point(r, 11, upperRight, false);
            point(r, 12, center, false);
            point(r, 13, snapBase, false);
            point(r, 14, snapSpacing, false);
            point(r, 15, gridSpacing, false);
            point(r, 16, direction);
            point(r, 17, target);
            real(r, 40, height);
            real(r, 41, aspect);
            real(r, 42, lens);
            real(r, 43, front);
            real(r, 44, back);
            angle(r, 50, snapRotation);
            angle(r, 51, twist);
            integer(r, 71, mode);
            integer(r, 72, circleZoom);
            integer(r, 73, fastZoom);
            integer(r, 74, ucsIcon);
            integer(r, 75, snapOn);
            integer(r, 76, gridOn);
            integer(r, 77, snapStyle);
            integer(r, 78, isoPair);
            if (r2k) {
                integer(r, 281, renderMode);
                data_.bit();
                integer(r, 65, data_.bit() ? 1 : 0);
                point(r, 110, data_.point3Bit());
                point(r, 111, data_.point3Bit());
                point(r, 112, data_.point3Bit());
                real(r, 146, data_.bitDouble());
                integer(r, 79, data_.bitShort());
                ref();  // external reference block
                const std::uint64_t namedUcs = ref();
                const std::uint64_t baseUcs = ref();
                if (namedUcs != 0) handleTag(r, 345, namedUcs);
                if (baseUcs != 0) handleTag(r, 346, baseUcs);
            }
            return true;
        }
        case 0x3F: {
            int flags = 0;
            tableEntryStart(r, "AcDbUCSTableRecord", flags);
            const ge::Point3d origin = data_.point3Bit();
            const ge::Point3d xAxis = data_.point3Bit();
            const ge::Point3d yAxis = data_.point3Bit();
            text(r, 2, r.name);
            integer(r, 70, flags);
            point(r, 10, origin);
            point(r, 11, xAxis);
            point(r, 12, yAxis);
            if (r2k) {
                real(r, 146, data_.bitDouble());
                integer(r, 79, data_.bitShort());
                data_.bitShort();
            }
            return true;
        }
        case 0x43: {
            int flags = 0;
            tableEntryStart(r, "AcDbRegAppTableRecord", flags);
            text(r, 2, r.name);
            integer(r, 70, flags);
            return true;
        }
        case 0x49: {
            const std::string styleName = data_.text();
            const std::string description = data_.text();
            const int stored = data_.bitShort();
            // The flags are stored with some bits swapped against their DXF places.
            static constexpr std::pair<int, int> kFlagBits[] = {
                {1, 2}, {2, 1}, {16, 16}, {32, 64}, {64, 32}, {256, 256}, {512, 1024}, {1024, 512}};
            int flags = 0;
            for (const auto& [dwgBit, dxfBit] : kFlagBits) {
                if (stored & dwgBit) flags |= dxfBit;
            }
            const int fill = data_.color();
            const double startAngle = data_.bitDouble();
            const double endAngle = data_.bitDouble();
            const int lines = data_.rawChar();
            marker(r, "AcDbMlineStyle");
            text(r, 2, styleName);
            integer(r, 70, flags);
            text(r, 3, description);
            integer(r, 62, fill);
            angle(r, 51, startAngle);
            angle(r, 52, endAngle);
            integer(r, 71, lines);
            for (int i = 0; i < lines && !data_.failed(); ++i) {
                real(r, 49, data_.bitDouble());
                integer(r, 62, data_.color());
                const int index = static_cast<std::uint16_t>(data_.bitShort());
                // A linetype is named by its place in the linetype table; 32767 and 32766
                // stand for by layer and by block.
                if (index == 32767 || index == 32766) {
                    r.tags.push_back({6, index == 32767 ? "BYLAYER" : "BYBLOCK", 0});
                } else {
                    r.tags.push_back({6, {}, kLinetypeIndex | static_cast<std::uint64_t>(index)});
                }
            }
            return true;
        }
        case 0x48: {
            const std::string description = data_.text();
            const int unnamed = data_.bitShort();
            const int selectable = data_.bitShort();
            const std::int32_t count = data_.bitLong();
            marker(r, "AcDbGroup");
            text(r, 300, description);
            integer(r, 70, unnamed);
            integer(r, 71, selectable);
            for (std::int32_t i = 0; i < count && !handles_.failed(); ++i) {
                handleTag(r, 340, ref());
            }
            return true;
        }
        case 0x4D:
            break;  // LWPOLYLINE: decoded below with the classes of that name
        case 0x4E:
        case 0x4F:
        case 0x52:
            break;
        case 0x50:
            return true;
        default:
            if (r.type < 500) return false;
            break;
    }
    if (name == "LWPOLYLINE") {
        const int flags = data_.bitShort();
        double constantWidth = 0.0, elevation = 0.0, thickness = 0.0;
        ge::Vector3d extrusion{0, 0, 1};
        if (flags & 4) constantWidth = data_.bitDouble();
        if (flags & 8) elevation = data_.bitDouble();
        if (flags & 2) thickness = data_.bitDouble();
        if (flags & 1) extrusion = data_.vector3Bit();
        const std::int32_t points = data_.bitLong();
        const std::int32_t bulges = (flags & 16) ? data_.bitLong() : 0;
        const std::int32_t widths = (flags & 32) ? data_.bitLong() : 0;
        // Counts beyond what the record could hold are damage, not drawings.
        const auto room = static_cast<std::int64_t>(data_.sizeInBits() / 2);
        if (points < 0 || bulges < 0 || widths < 0 || points > room || bulges > room ||
            widths > room) {
            data_.fail();
            return true;
        }
        std::vector<ge::Point3d> vertices;
        for (std::int32_t i = 0; i < points && !data_.failed(); ++i) {
            if (i == 0 || !r2k) {
                vertices.push_back(data_.point2Raw());
            } else {
                vertices.push_back(data_.point2Default(vertices.back()));
            }
        }
        std::vector<double> bulgeList, startWidths, endWidths;
        for (std::int32_t i = 0; i < bulges && !data_.failed(); ++i) {
            bulgeList.push_back(data_.bitDouble());
        }
        for (std::int32_t i = 0; i < widths && !data_.failed(); ++i) {
            startWidths.push_back(data_.bitDouble());
            endWidths.push_back(data_.bitDouble());
        }
        marker(r, "AcDbPolyline");
        integer(r, 90, points);
        integer(r, 70, ((flags & 512) ? 1 : 0) | ((flags & 256) ? 128 : 0));
        if (flags & 4) real(r, 43, constantWidth);
        if (elevation != 0.0) real(r, 38, elevation);
        if (thickness != 0.0) real(r, 39, thickness);
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            point(r, 10, vertices[i], false);
            if (i < startWidths.size()) {
                if (startWidths[i] != 0.0) real(r, 40, startWidths[i]);
                if (endWidths[i] != 0.0) real(r, 41, endWidths[i]);
            }
            if (i < bulgeList.size() && bulgeList[i] != 0.0) real(r, 42, bulgeList[i]);
        }
        extrusionTags(extrusion);
        return true;
    }
    if (name == "XRECORD") {
        const auto byteCount = static_cast<std::uint32_t>(data_.bitLong());
        if (byteCount > data_.sizeInBits() / 8) {
            data_.fail();
            return true;
        }
        int cloning = 1;
        marker(r, "AcDbXrecord");
        const std::size_t at = r.tags.size();
        xrecordData(r, byteCount);
        if (r2k) cloning = data_.bitShort();
        r.tags.insert(r.tags.begin() + static_cast<std::ptrdiff_t>(at),
                      DwgTag{280, std::to_string(cloning), 0});
        // Links of the data are kept in the data itself; what follows in the handle stream
        // are the objects the record owns, already named there.
        return true;
    }
    if (name == "HATCH") {
        hatchFields(r);
        return true;
    }
    if (name == "ACDBPLACEHOLDER") return true;
    if (name == "LAYOUT") {
        layoutFields(r);
        return true;
    }
    if (name == "SCALE") {
        data_.bitShort();
        const std::string scaleName = data_.text();
        const double paper = data_.bitDouble();
        const double drawing = data_.bitDouble();
        const bool unit = data_.bit();
        marker(r, "AcDbScale");
        integer(r, 70, 0);
        text(r, 300, scaleName);
        real(r, 140, paper);
        real(r, 141, drawing);
        integer(r, 290, unit ? 1 : 0);
        return true;
    }
    if (name == "SORTENTSTABLE") {
        const std::uint64_t block = ref();
        const std::int32_t count = data_.bitLong();
        if (!fitsIn(count)) return true;
        marker(r, "AcDbSortentsTable");
        handleTag(r, 330, block);
        for (std::int32_t i = 0; i < count && !data_.failed() && !handles_.failed(); ++i) {
            // The sort key stands in the data stream, the entity in the handle stream.
            const std::uint64_t sortKey = data_.handle().value;
            handleTag(r, 331, ref());
            handleTag(r, 5, sortKey);
        }
        return true;
    }
    if (name == "DICTIONARYVAR") {
        const int schema = data_.rawChar();
        const std::string value = data_.text();
        marker(r, "DictionaryVariables");
        integer(r, 280, schema);
        text(r, 1, value);
        return true;
    }
    if (name == "ACDBDICTIONARYWDFLT") {
        const std::int32_t count = data_.bitLong();
        if (layout_.version == DwgVersion::R14) data_.rawChar();
        int hardOwner = 0, cloning = 1;
        if (r2k) {
            cloning = data_.bitShort();
            hardOwner = data_.rawChar();
        }
        std::vector<std::string> keys;
        for (std::int32_t i = 0; i < count && !data_.failed(); ++i) keys.push_back(data_.text());
        marker(r, "AcDbDictionary");
        if (hardOwner != 0) integer(r, 280, hardOwner);
        integer(r, 281, cloning);
        for (const std::string& key : keys) {
            const std::uint64_t item = ref();
            text(r, 3, key);
            handleTag(r, hardOwner ? 360 : 350, item);
        }
        marker(r, "AcDbDictionaryWithDefault");
        handleTag(r, 340, ref());
        return true;
    }
    return false;
}

bool DwgObjectDecoder::fitsIn(std::int64_t count) {
    // Each item takes at least two bits; a count the record cannot hold is damage.
    if (count < 0 || static_cast<std::uint64_t>(count) > data_.sizeInBits() / 2) {
        data_.fail();
        return false;
    }
    return true;
}

void DwgObjectDecoder::dimensionFields(DwgRecord& r) {
    const bool r2k = r2000();
    const ge::Vector3d extrusion = data_.vector3Bit();
    ge::Point3d textMiddle = data_.point2Raw();
    const double elevation = data_.bitDouble();
    textMiddle.z = elevation;
    const int flags1 = data_.rawChar();
    const std::string userText = data_.text();
    const double textRotation = data_.bitDouble();
    const double horizontal = data_.bitDouble();
    data_.bitDouble();  // the scale and rotation of the block's insertion, not in DXF
    data_.bitDouble();
    data_.bitDouble();
    data_.bitDouble();
    int attachment = 5, spacingStyle = 1;
    double spacingFactor = 1.0, measurement = 0.0;
    if (r2k) {
        attachment = data_.bitShort();
        spacingStyle = data_.bitShort();
        spacingFactor = data_.bitDouble();
        measurement = data_.bitDouble();
    }
    ge::Point3d clone = data_.point2Raw();
    clone.z = elevation;

    int type = 0;
    const char* subclass = nullptr;
    const char* second = nullptr;
    ge::Point3d definition, p13, p14, p15, p16;
    double leaderLength = 0.0, extensionRotation = 0.0, rotation = 0.0;
    bool has13 = false, has14 = false, has15 = false, has16 = false;
    switch (r.type) {
        case 0x14: {
            definition = data_.point3Bit();
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            if (data_.rawChar() & 1) type |= 64;
            type |= 6;
            subclass = "AcDbOrdinateDimension";
            has13 = has14 = true;
            break;
        }
        case 0x15:
        case 0x16:
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            definition = data_.point3Bit();
            extensionRotation = data_.bitDouble();
            if (r.type == 0x15) rotation = data_.bitDouble();
            type |= r.type == 0x15 ? 0 : 1;
            subclass = "AcDbAlignedDimension";
            if (r.type == 0x15) second = "AcDbRotatedDimension";
            has13 = has14 = true;
            break;
        case 0x17:
            definition = data_.point3Bit();
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            p15 = data_.point3Bit();
            type |= 5;
            subclass = "AcDb3PointAngularDimension";
            has13 = has14 = has15 = true;
            break;
        case 0x18: {
            const ge::Point3d arc = data_.point2Raw();
            p16 = {arc.x, arc.y, elevation};
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            p15 = data_.point3Bit();
            definition = data_.point3Bit();
            type |= 2;
            subclass = "AcDb2LineAngularDimension";
            has13 = has14 = has15 = has16 = true;
            break;
        }
        default:
            definition = data_.point3Bit();
            p15 = data_.point3Bit();
            leaderLength = data_.bitDouble();
            type |= r.type == 0x19 ? 4 : 3;
            subclass = r.type == 0x19 ? "AcDbRadialDimension" : "AcDbDiametricDimension";
            has15 = true;
            break;
    }
    // Bit 0 of the first flags is the opposite of "text where the user put it" (128); bit 1
    // is the 32 of the type, which every dimension with its own block carries.
    if (!(flags1 & 1)) type |= 128;
    if (flags1 & 2) type |= 32;
    const std::uint64_t style = ref();
    const std::uint64_t block = ref();

    marker(r, "AcDbDimension");
    nameTag(r, 2, block);
    point(r, 10, definition);
    point(r, 11, textMiddle);
    if (clone.x != 0.0 || clone.y != 0.0) point(r, 12, clone);
    integer(r, 70, type);
    if (!userText.empty()) text(r, 1, userText);
    if (r2k) {
        integer(r, 71, attachment);
        integer(r, 72, spacingStyle);
        real(r, 41, spacingFactor);
        real(r, 42, measurement);
    }
    if (textRotation != 0.0) angle(r, 53, textRotation);
    if (horizontal != 0.0) angle(r, 51, horizontal);
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    nameTag(r, 3, style);
    marker(r, subclass);
    if (has13) point(r, 13, p13);
    if (has14) point(r, 14, p14);
    if (has15) point(r, 15, p15);
    if (has16) point(r, 16, p16);
    if (r.type == 0x19 || r.type == 0x1A) real(r, 40, leaderLength);
    if (r.type == 0x15 || r.type == 0x16) {
        if (r.type == 0x15) angle(r, 50, rotation);
        if (extensionRotation != 0.0) angle(r, 52, extensionRotation);
    }
    if (second) marker(r, second);
}

void DwgObjectDecoder::dimensionStyleFields(DwgRecord& r) {
    int flags = 0;
    tableEntryStart(r, "AcDbDimStyleTableRecord", flags);
    std::vector<DwgTag> values;
    const auto flag = [&](int code) { values.push_back({code, data_.bit() ? "1" : "0", 0}); };
    const auto byte = [&](int code) { values.push_back({code, std::to_string(data_.rawChar()), 0}); };
    const auto small = [&](int code) {
        values.push_back({code, std::to_string(data_.bitShort()), 0});
    };
    const auto number = [&](int code) {
        values.push_back({code, formatReal(data_.bitDouble()), 0});
    };
    const auto words = [&](int code) {
        values.push_back({code, sys::toCaretForm(data_.text()), 0});
    };
    if (!r2000()) {
        for (const int code : {71, 72, 73, 74, 75, 76, 170, 172, 173, 174, 175}) flag(code);
        byte(171);
        byte(78);
        flag(281);
        flag(282);
        byte(283);
        byte(280);
        byte(287);
        flag(288);
        byte(284);
        byte(285);
        byte(286);
        byte(77);
        for (const int code : {270, 275, 271, 272, 273, 274}) small(code);
        for (const int code : {40, 41, 42, 43, 44, 45, 46, 47, 48, 140, 141, 142, 143, 144,
                               145, 146, 147}) {
            number(code);
        }
        for (const int code : {3, 4, 5, 6, 7}) words(code);
        for (const int code : {176, 177, 178}) small(code);
    } else {
        words(3);
        words(4);
        for (const int code : {40, 41, 42, 43, 44, 45, 46, 47, 48}) number(code);
        for (const int code : {71, 72, 73, 74, 75, 76}) flag(code);
        for (const int code : {77, 78, 79}) small(code);
        for (const int code : {140, 141, 142, 143, 144, 145, 146, 147, 148}) number(code);
        flag(170);
        small(171);
        for (const int code : {172, 173, 174, 175}) flag(code);
        for (const int code : {176, 177, 178, 179, 271, 272, 273, 274, 275, 276, 277, 278,
                               279, 280}) {
            small(code);
        }
        flag(281);
        flag(282);
        for (const int code : {283, 284, 285, 286}) small(code);
        flag(288);
        small(289);  // the fit of text and arrows; DIMFIT before R2000
        small(371);
        small(372);
    }
    data_.bit();
    ref();  // external reference block
    const std::uint64_t textStyle = ref();
    std::uint64_t blocks[4] = {};
    if (r2000()) {
        for (std::uint64_t& block : blocks) block = ref();
    }
    text(r, 2, r.name);
    integer(r, 70, flags);
    for (DwgTag& value : values) {
        r.tags.push_back(std::move(value));
    }
    if (textStyle != 0) handleTag(r, 340, textStyle);
    for (int i = 0; i < 4; ++i) {
        if (blocks[i] != 0) handleTag(r, 341 + i, blocks[i]);
    }
}

void DwgObjectDecoder::hatchFields(DwgRecord& r) {
    const double elevation = data_.bitDouble();
    const ge::Vector3d extrusion = data_.vector3Bit();
    const std::string pattern = data_.text();
    const bool solid = data_.bit();
    const bool associative = data_.bit();
    const std::int32_t paths = data_.bitLong();
    if (!fitsIn(paths)) return;
    marker(r, "AcDbHatch");
    point(r, 10, {0, 0, elevation});
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    text(r, 2, pattern);
    integer(r, 70, solid ? 1 : 0);
    integer(r, 71, associative ? 1 : 0);
    integer(r, 91, paths);
    bool derived = false;
    const auto flat = [&](int code, const ge::Point3d& p) { point(r, code, p, false); };
    for (std::int32_t i = 0; i < paths && !data_.failed(); ++i) {
        const std::int32_t pathFlags = data_.bitLong();
        if (pathFlags & 4) derived = true;
        integer(r, 92, pathFlags);
        if (!(pathFlags & 2)) {
            const std::int32_t edges = data_.bitLong();
            if (!fitsIn(edges)) return;
            integer(r, 93, edges);
            for (std::int32_t e = 0; e < edges && !data_.failed(); ++e) {
                const int kind = data_.rawChar();
                integer(r, 72, kind);
                switch (kind) {
                    case 1:
                        flat(10, data_.point2Raw());
                        flat(11, data_.point2Raw());
                        break;
                    case 2:
                        flat(10, data_.point2Raw());
                        real(r, 40, data_.bitDouble());
                        angle(r, 50, data_.bitDouble());
                        angle(r, 51, data_.bitDouble());
                        integer(r, 73, data_.bit() ? 1 : 0);
                        break;
                    case 3:
                        flat(10, data_.point2Raw());
                        flat(11, data_.point2Raw());
                        real(r, 40, data_.bitDouble());
                        angle(r, 50, data_.bitDouble());
                        angle(r, 51, data_.bitDouble());
                        integer(r, 73, data_.bit() ? 1 : 0);
                        break;
                    case 4: {
                        integer(r, 94, data_.bitLong());
                        const bool rational = data_.bit();
                        integer(r, 73, rational ? 1 : 0);
                        integer(r, 74, data_.bit() ? 1 : 0);
                        const std::int32_t knots = data_.bitLong();
                        const std::int32_t controls = data_.bitLong();
                        if (!fitsIn(knots) || !fitsIn(controls)) return;
                        integer(r, 95, knots);
                        integer(r, 96, controls);
                        for (std::int32_t k = 0; k < knots && !data_.failed(); ++k) {
                            real(r, 40, data_.bitDouble());
                        }
                        for (std::int32_t c = 0; c < controls && !data_.failed(); ++c) {
                            flat(10, data_.point2Raw());
                            if (rational) real(r, 42, data_.bitDouble());
                        }
                        break;
                    }
                    default:
                        data_.fail();
                        return;
                }
            }
        } else {
            const bool bulges = data_.bit();
            const bool closed = data_.bit();
            const std::int32_t vertices = data_.bitLong();
            if (!fitsIn(vertices)) return;
            integer(r, 72, bulges ? 1 : 0);
            integer(r, 73, closed ? 1 : 0);
            integer(r, 93, vertices);
            for (std::int32_t v = 0; v < vertices && !data_.failed(); ++v) {
                flat(10, data_.point2Raw());
                if (bulges) real(r, 42, data_.bitDouble());
            }
        }
        const std::int32_t sources = data_.bitLong();
        if (!fitsIn(sources)) return;
        integer(r, 97, sources);
        for (std::int32_t h = 0; h < sources && !handles_.failed(); ++h) {
            handleTag(r, 330, ref());
        }
    }
    integer(r, 75, data_.bitShort());
    integer(r, 76, data_.bitShort());
    if (!solid) {
        angle(r, 52, data_.bitDouble());
        real(r, 41, data_.bitDouble());
        integer(r, 77, data_.bit() ? 1 : 0);
        const int lines = data_.bitShort();
        integer(r, 78, lines);
        for (int l = 0; l < lines && !data_.failed(); ++l) {
            angle(r, 53, data_.bitDouble());
            real(r, 43, data_.bitDouble());
            real(r, 44, data_.bitDouble());
            real(r, 45, data_.bitDouble());
            real(r, 46, data_.bitDouble());
            const int dashes = data_.bitShort();
            integer(r, 79, dashes);
            for (int d = 0; d < dashes && !data_.failed(); ++d) real(r, 49, data_.bitDouble());
        }
    }
    if (derived) real(r, 47, data_.bitDouble());
    const std::int32_t seeds = data_.bitLong();
    if (!fitsIn(seeds)) return;
    integer(r, 98, seeds);
    for (std::int32_t i = 0; i < seeds && !data_.failed(); ++i) flat(10, data_.point2Raw());
}

void DwgObjectDecoder::layoutFields(DwgRecord& r) {
    const std::string pageName = data_.text();
    const std::string printer = data_.text();
    const int plotFlags = data_.bitShort();
    double margins[4];
    for (double& margin : margins) margin = data_.bitDouble();
    const double paperWidth = data_.bitDouble();
    const double paperHeight = data_.bitDouble();
    const std::string paperSize = data_.text();
    const double originX = data_.bitDouble();
    const double originY = data_.bitDouble();
    const int paperUnits = data_.bitShort();
    const int rotation = data_.bitShort();
    const int plotType = data_.bitShort();
    double window[4];
    for (double& corner : window) corner = data_.bitDouble();
    const std::string viewName = data_.text();
    const double numerator = data_.bitDouble();
    const double denominator = data_.bitDouble();
    const std::string styleSheet = data_.text();
    const int scaleType = data_.bitShort();
    const double scaleFactor = data_.bitDouble();
    const double imageX = data_.bitDouble();
    const double imageY = data_.bitDouble();

    const std::string layoutName = data_.text();
    const std::int32_t tabOrder = data_.bitLong();
    const int layoutFlags = data_.bitShort();
    const ge::Point3d ucsOrigin = data_.point3Bit();
    const ge::Point3d limitsMin = data_.point2Raw();
    const ge::Point3d limitsMax = data_.point2Raw();
    const ge::Point3d insertionBase = data_.point3Bit();
    const ge::Point3d xAxis = data_.point3Bit();
    const ge::Point3d yAxis = data_.point3Bit();
    const double elevation = data_.bitDouble();
    const int orthographic = data_.bitShort();
    const ge::Point3d extentsMin = data_.point3Bit();
    const ge::Point3d extentsMax = data_.point3Bit();
    const std::uint64_t block = ref();
    const std::uint64_t viewport = ref();
    const std::uint64_t baseUcs = ref();
    const std::uint64_t namedUcs = ref();

    marker(r, "AcDbPlotSettings");
    text(r, 1, pageName);
    text(r, 2, printer);
    text(r, 4, paperSize);
    text(r, 6, viewName);
    for (int i = 0; i < 4; ++i) real(r, 40 + i, margins[i]);
    real(r, 44, paperWidth);
    real(r, 45, paperHeight);
    real(r, 46, originX);
    real(r, 47, originY);
    real(r, 48, window[0]);
    real(r, 49, window[1]);
    real(r, 140, window[2]);
    real(r, 141, window[3]);
    real(r, 142, numerator);
    real(r, 143, denominator);
    integer(r, 70, plotFlags);
    integer(r, 72, paperUnits);
    integer(r, 73, rotation);
    integer(r, 74, plotType);
    text(r, 7, styleSheet);
    integer(r, 75, scaleType);
    real(r, 147, scaleFactor);
    real(r, 148, imageX);
    real(r, 149, imageY);
    marker(r, "AcDbLayout");
    text(r, 1, layoutName);
    integer(r, 70, layoutFlags);
    integer(r, 71, tabOrder);
    point(r, 10, limitsMin, false);
    point(r, 11, limitsMax, false);
    point(r, 12, insertionBase);
    point(r, 14, extentsMin);
    point(r, 15, extentsMax);
    real(r, 146, elevation);
    point(r, 13, ucsOrigin);
    point(r, 16, xAxis);
    point(r, 17, yAxis);
    integer(r, 76, orthographic);
    handleTag(r, 330, block);
    if (viewport != 0) handleTag(r, 331, viewport);
    if (namedUcs != 0) handleTag(r, 345, namedUcs);
    if (baseUcs != 0) handleTag(r, 346, baseUcs);
}

}  // namespace cad::db::dwg
