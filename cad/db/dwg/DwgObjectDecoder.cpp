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
#include "cad/db/dwg/DwgValues.h"
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

void DwgObjectDecoder::marker(DwgRecord& r, const char* name) { r.tags.push_back(DwgTag::ofMarker(100, name)); }

void DwgObjectDecoder::integer(DwgRecord& r, int code, std::int64_t value) {
    r.tags.push_back(DwgTag::ofInteger(code, value));
}

void DwgObjectDecoder::real(DwgRecord& r, int code, double value) {
    r.tags.push_back(DwgTag::ofReal(code, value));
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
    r.tags.push_back(DwgTag::ofText(code, sys::toCaretForm(value)));
}

void DwgObjectDecoder::handleTag(DwgRecord& r, int code, std::uint64_t handle) {
    r.tags.push_back(DwgTag::ofHandle(code, handle));
}

void DwgObjectDecoder::nameTag(DwgRecord& r, int code, std::uint64_t handle) {
    if (handle != 0) r.tags.push_back(DwgTag::ofName(code, handle));
}

void DwgObjectDecoder::binaryTags(DwgRecord& r, int code, const std::string& bytes) {
    // DXF holds binary data in chunks of at most 127 bytes.
    for (std::size_t at = 0; at < bytes.size(); at += 127) {
        r.tags.push_back(DwgTag::ofText(code, hexBytes(std::string_view(bytes).substr(at, 127))));
    }
}

DwgObjectDecoder::Outcome DwgObjectDecoder::decode(const DwgMapEntry& entry, DwgRecord& record,
                                                   Pass pass) {
    error_.clear();
    crcMatched_ = true;
    // The record's buffers are reused from one object to the next.
    std::vector<DwgTag> tags = std::move(record.tags);
    std::vector<DwgTag> xdata = std::move(record.xdata);
    tags.clear();
    xdata.clear();
    record = DwgRecord{};
    record.tags = std::move(tags);
    record.xdata = std::move(xdata);
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
    if (pass != Pass::Deferred && file_.size() - dataStart - size >= 2) {
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
        unknownName_ = "type " + std::to_string(record.type);
        record.dxfName = unknownName_;
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
    if (pass == Pass::DeferEntityFields && entity && deferrable(record)) return Outcome::Deferred;
    if (!decodeFields(record)) return Outcome::NotDecoded;
    if (data_.failed() || handles_.failed()) {
        error_ = dwgError(dataStart + (data_.failed() ? data_.failedAt() : handles_.failedAt()) / 8,
                          "expected the fields of " + std::string(record.dxfName) + " " +
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
        record.lineweight = lineweightFromIndex(data_.rawChar());
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
        record.xdata.push_back(DwgTag::ofName(1001, app));
        BitReader items(bytes);
        while (items.bitPosition() < items.sizeInBits() && !items.failed()) {
            const int code = 1000 + items.rawChar();
            switch (code) {
                case 1000: {
                    const std::uint8_t length = items.rawChar();
                    items.rawShort();  // the text's code page, always the drawing's here
                    record.xdata.push_back(DwgTag::ofText(code, sys::toCaretForm(items.bytes(length))));
                    break;
                }
                case 1002:
                    record.xdata.push_back(DwgTag::ofMarker(code, items.rawChar() ? "}" : "{"));
                    break;
                case 1003:
                case 1005: {
                    std::uint64_t handle = 0;
                    for (int i = 0; i < 8; ++i) handle = (handle << 8) | items.rawChar();
                    if (code == 1003) {
                        record.xdata.push_back(handle != 0 ? DwgTag::ofName(code, handle) : DwgTag::ofMarker(code, "0"));
                    } else {
                        record.xdata.push_back(DwgTag::ofHandle(code, handle));
                    }
                    break;
                }
                case 1004: {
                    const std::uint8_t length = items.rawChar();
                    record.xdata.push_back(DwgTag::ofText(code, hexBytes(items.bytes(length))));
                    break;
                }
                case 1010: case 1011: case 1012: case 1013: {
                    const ge::Point3d p = items.point3Raw();
                    record.xdata.push_back(DwgTag::ofReal(code, p.x));
                    record.xdata.push_back(DwgTag::ofReal(code + 10, p.y));
                    record.xdata.push_back(DwgTag::ofReal(code + 20, p.z));
                    break;
                }
                case 1040: case 1041: case 1042:
                    record.xdata.push_back(DwgTag::ofReal(code, items.rawDouble()));
                    break;
                case 1070:
                    record.xdata.push_back(DwgTag::ofInteger(code, items.rawShort()));
                    break;
                case 1071:
                    record.xdata.push_back(DwgTag::ofInteger(code, items.rawLong()));
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

bool DwgObjectDecoder::deferrable(const DwgRecord& r) const {
    // Blocks' ends and sequence ends are looked up by handle, and viewports are numbered in
    // file order: those are read at once. The others are entities decodeFields always takes.
    switch (r.type) {
        case 0x01: case 0x02: case 0x03: case 0x07: case 0x08: case 0x0A: case 0x0B: case 0x0C:
        case 0x0D: case 0x0E: case 0x0F: case 0x10: case 0x11: case 0x12: case 0x13: case 0x14:
        case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A: case 0x1B: case 0x1C:
        case 0x1D: case 0x1E: case 0x1F: case 0x20: case 0x23: case 0x24: case 0x28: case 0x29:
        case 0x2C: case 0x2D: case 0x2E: case 0x2F: case 0x4D: case 0x4E:
            return true;
        default:
            return r.type >= 500 && (r.dxfName == "LWPOLYLINE" || r.dxfName == "HATCH");
    }
}

bool DwgObjectDecoder::decodeFields(DwgRecord& r) {
    return entityFields(r) || annotationFields(r) || tableFields(r) || objectFields(r);
}

bool DwgObjectDecoder::fitsIn(std::int64_t count) {
    // Each item takes at least two bits; a count the record cannot hold is damage.
    if (count < 0 || static_cast<std::uint64_t>(count) > data_.sizeInBits() / 2) {
        data_.fail();
        return false;
    }
    return true;
}

void DwgObjectDecoder::extrusionTags(DwgRecord& r, const ge::Vector3d& e) {
    point(r, 210, {e.x, e.y, e.z});
}

}  // namespace cad::db::dwg
