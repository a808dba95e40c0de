// Writing one object as DXF tags through the tag writer.
#include "cad/db/dxf/WritingFiler.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>
#include <variant>

#include "cad/db/dxf/GroupCode.h"

namespace cad::db::dxf {
namespace {

constexpr int kPaperSpaceCode = 67;
constexpr int kMarkerCode = 100;
constexpr int kGroupCode = 102;

// Codes introduced after R14 for data every entity or object may carry.
bool isAfterR14(int code) {
    return code == 160 || code == 347 || code == 348 || (code >= 370 && code <= 399) ||
           (code >= 420 && code <= 481);
}

// A number that overflowed in some computation has no DXF form, and readers refuse "inf":
// it is written as 0 so the file stays readable.
double finite(double value) {
    return std::isfinite(value) ? value : 0.0;
}

std::string toHex(std::string_view bytes) {
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kHex[byte >> 4];
        text += kHex[byte & 0xF];
    }
    return text;
}

std::string_view fallbackName(DxfFiler::SymbolTable table) {
    switch (table) {
        case DxfFiler::SymbolTable::Layer:
            return "0";
        case DxfFiler::SymbolTable::Linetype:
            return "BYLAYER";
        case DxfFiler::SymbolTable::TextStyle:
        case DxfFiler::SymbolTable::DimStyle:
            return "Standard";
        case DxfFiler::SymbolTable::Block:
            return "";
    }
    return "";
}

}  // namespace

WritingFiler::WritingFiler(TagWriter& out, DxfVersion version, SymbolNames& names)
    : out_(out), version_(version), names_(names) {}

void WritingFiler::write(DbObject& object, Handle handle) {
    object_ = &object;
    // Read through const: the writable accessors would give every object room for extras.
    const DbObject& readOnly = object;
    handle_ = handle.isNull() ? object.handle() : handle;
    keptWritten_.assign(readOnly.keptTags().size(), 0);
    out_.writeString(0, object.dxfName());
    commonPartDue_ = true;
    subclass_.clear();
    object.dxfFields(*this);
    writeCommonPart();
    writeKept(subclass_);
    // Whatever was kept for a subclass that was not declared this time goes here.
    for (std::size_t i = 0; i < keptWritten_.size(); ++i) {
        if (keptWritten_[i]) continue;
        for (const RawTag& tag : readOnly.keptTags()[i].tags) writeRawTag(tag);
    }
    for (const RawTag& tag : readOnly.xdata()) writeRawTag(tag);
    object_ = nullptr;
}

void WritingFiler::writeCommonPart() {
    if (!commonPartDue_) return;
    commonPartDue_ = false;
    const DbObject& object = *object_;
    out_.writeHandle(object.dxfName() == "DIMSTYLE" ? 105 : 5, handle_.value);
    if (version_ <= DxfVersion::R12) return;
    const ObjectId xdictionary = object.extensionDictionary();
    if (xdictionary.isLive()) {
        out_.writeRaw(102, "{ACAD_XDICTIONARY");
        writeReference(360, xdictionary);
        out_.writeRaw(102, "}");
    }
    bool reactorsOpen = false;
    const auto reactor = [&](ObjectId id) {
        if (!id.isValid() || id.isErased()) return;
        if (!reactorsOpen) out_.writeRaw(102, "{ACAD_REACTORS");
        reactorsOpen = true;
        writeReference(330, id);
    };
    const auto& own = object.persistentReactors();
    for (const ObjectId id : own) reactor(id);
    if (extraReactors_ != nullptr) {
        if (const auto it = extraReactors_->find(object.objectId()); it != extraReactors_->end()) {
            for (const ObjectId id : it->second) {
                if (std::find(own.begin(), own.end(), id) == own.end()) reactor(id);
            }
        }
    }
    if (reactorsOpen) out_.writeRaw(102, "}");
    // Kept tags of the head: other applications' 102 groups stand before the owner; anything
    // else a damaged file put there (a second 330, subclasses the class does not know) stands
    // after it, where the next reader cannot take it for the owner.
    const auto& kept = object.keptTags();
    std::vector<const RawTag*> after;
    bool groupOpen = false;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (keptWritten_[i] || !kept[i].subclass.empty()) continue;
        keptWritten_[i] = 1;
        for (const RawTag& tag : kept[i].tags) {
            const bool opens = tag.code == kGroupCode && tag.value.starts_with('{');
            if (!after.empty() || (!groupOpen && !opens) || tag.code == kMarkerCode) {
                after.push_back(&tag);
                continue;
            }
            if (tag.code == kGroupCode) groupOpen = opens;
            writeRawTag(tag);
        }
    }
    // A group a damaged file left open is closed, or it would take in the owner.
    if (groupOpen) out_.writeRaw(kGroupCode, "}");
    writeReference(330, object.ownerId());
    for (const RawTag* tag : after) writeRawTag(*tag);
}

void WritingFiler::writeKept(std::string_view subclass) {
    const auto& kept = std::as_const(*object_).keptTags();
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (keptWritten_[i] || kept[i].subclass != subclass) continue;
        keptWritten_[i] = 1;
        for (const RawTag& tag : kept[i].tags) writeRawTag(tag);
    }
}

void WritingFiler::writeRawTag(const RawTag& tag) {
    if (version_ < DxfVersion::R2000 && isAfterR14(tag.code)) return;
    const ValueType type = valueTypeOf(tag.code);
    if (type == ValueType::String || type == ValueType::Comment) {
        out_.writeString(tag.code, tag.value);
    } else {
        out_.writeRaw(tag.code, tag.value);
    }
}

void WritingFiler::writeReference(int code, ObjectId id) {
    const bool written = id.isLive();
    out_.writeHandle(code, written ? id.handle().value : 0);
}

void WritingFiler::subclass(std::string_view marker) {
    if (object_ == nullptr) return;
    writeCommonPart();
    writeKept(subclass_);
    subclass_ = marker;
    if (version_ > DxfVersion::R12) out_.writeString(100, marker);
}

void WritingFiler::string(int code, std::string& value) {
    out_.writeString(code, value);
}

void WritingFiler::string(int code, std::string& value, std::string_view defaultValue) {
    if (value != defaultValue) out_.writeString(code, value);
}

void WritingFiler::int16(int code, std::int16_t& value) {
    out_.writeInt(code, value);
}

void WritingFiler::int16(int code, std::int16_t& value, std::int16_t defaultValue) {
    if (code == kPaperSpaceCode && paperSpace_) {
        out_.writeInt(code, 1);
    } else if (value != defaultValue) {
        out_.writeInt(code, value);
    }
}

void WritingFiler::int32(int code, std::int32_t& value) {
    out_.writeInt(code, value);
}

void WritingFiler::int32(int code, std::int32_t& value, std::int32_t defaultValue) {
    if (value != defaultValue) out_.writeInt(code, value);
}

void WritingFiler::int64(int code, std::int64_t& value) {
    out_.writeInt(code, value);
}

void WritingFiler::real(int code, double& value) {
    out_.writeDouble(code, finite(value));
}

void WritingFiler::real(int code, double& value, double defaultValue) {
    if (value != defaultValue) out_.writeDouble(code, finite(value));
}

void WritingFiler::boolean(int code, bool& value) {
    out_.writeBool(code, value);
}

void WritingFiler::point(int code, ge::Point3d& value) {
    out_.writePoint(code, finite(value.x), finite(value.y), finite(value.z));
}

void WritingFiler::point2d(int code, ge::Point3d& value) {
    out_.writePoint2d(code, finite(value.x), finite(value.y));
}

void WritingFiler::vector(int code, ge::Vector3d& value) {
    out_.writePoint(code, finite(value.x), finite(value.y), finite(value.z));
}

void WritingFiler::vector(int code, ge::Vector3d& value, const ge::Vector3d& defaultValue) {
    if (value.x != defaultValue.x || value.y != defaultValue.y || value.z != defaultValue.z) {
        vector(code, value);
    }
}

void WritingFiler::reference(int code, ObjectId& id) {
    writeReference(code, id);
}

void WritingFiler::symbol(int code, ObjectId& record, SymbolTable table) {
    std::string_view name = record.isNull() ? std::string_view() : names_.nameOf(record, table);
    if (name.empty()) name = fallbackName(table);
    out_.writeString(code, name);
}

void WritingFiler::symbol(int code, ObjectId& record, SymbolTable table, ObjectId defaultRecord) {
    if (record == defaultRecord || record.isNull()) return;
    symbol(code, record, table);
}

void WritingFiler::binary(int code, std::string& bytes) {
    if (!bytes.empty()) out_.writeBinary(code, bytes);
}

void WritingFiler::beginRecords(int, std::size_t&) {}

void WritingFiler::enterRecord(std::size_t) {}

void WritingFiler::endRecords() {}

void WritingFiler::resbufs(ResBufChain& chain) {
    writeCommonPart();
    for (const ResBuf& item : chain) {
        std::visit(
            [&](const auto& value) {
                using T = std::decay_t<decltype(value)>;
                if constexpr (std::is_same_v<T, std::string>) {
                    if (valueTypeOf(item.code) == ValueType::Handle) {
                        out_.writeRaw(item.code, value);
                    } else {
                        out_.writeString(item.code, value);
                    }
                } else if constexpr (std::is_same_v<T, double>) {
                    out_.writeDouble(item.code, finite(value));
                } else if constexpr (std::is_same_v<T, ge::Point3d>) {
                    out_.writePoint(item.code, finite(value.x), finite(value.y), finite(value.z));
                } else if constexpr (std::is_same_v<T, BinaryChunk>) {
                    // One value is one tag, whatever its length: splitting it would change the
                    // chain an application reads back.
                    out_.writeRaw(item.code, toHex(value.bytes));
                } else if constexpr (std::is_same_v<T, ObjectId>) {
                    writeReference(item.code, value);
                } else {
                    out_.writeInt(item.code, value);
                }
            },
            item.value);
    }
}

void WritingFiler::rawTags(std::vector<RawTag>& tags) {
    writeCommonPart();
    for (const RawTag& tag : tags) writeRawTag(tag);
}

}  // namespace cad::db::dxf
