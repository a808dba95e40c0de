// Reading one structure's tags into an object. Tags are never copied: a flag per tag records
// what has been read, and the scopes are index ranges into the structure's span.
#include "cad/db/dxf/ReadingFiler.h"

#include <iterator>
#include <limits>

#include "cad/db/dxf/GroupCode.h"
#include "cad/db/dxf/TextCodec.h"

namespace cad::db::dxf {
namespace {

constexpr int kMarkerCode = 100;
constexpr int kGroupCode = 102;
constexpr int kOwnerCode = 330;
constexpr int kReactorCode = 330;
constexpr int kXdictionaryCode = 360;
constexpr int kFirstXdataCode = 1001;

bool opensGroup(const Tag& tag) {
    return tag.code == kGroupCode && trimBlanks(tag.value).starts_with('{');
}

bool closesGroup(const Tag& tag) {
    return tag.code == kGroupCode && trimBlanks(tag.value) == "}";
}

bool isPrintable(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20) return false;
    }
    return true;
}

std::string shown(std::string_view value) {
    constexpr std::size_t kMaxShown = 40;
    std::string text(value.substr(0, kMaxShown));
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    }
    if (value.size() > kMaxShown) text += "...";
    return text;
}

// A binary file's two bytes can say anything; no group code is negative, and one kept raw
// could not be written back.
DxfError badCode(const Tag& tag, TagPlace place) {
    return dxfError(place, tag.line,
                    "expected a group code from 0 to 32767, found " + std::to_string(tag.code));
}

DxfError badValue(const Tag& tag, TagPlace place, std::string_view expected) {
    return dxfError(place, tag.line,
                    "expected " + std::string(expected) + " for group code " +
                        std::to_string(tag.code) + ", found '" + shown(tag.value) + "'");
}

}  // namespace

ReadingFiler::ReadingFiler(Database& database, DxfVersion version, sys::CodePage codePage,
                           TagPlace place, SymbolResolver& symbols)
    : database_(database),
      version_(version),
      codePage_(codePage),
      place_(place),
      symbols_(symbols) {}

Handle ReadingFiler::handleOf(TagSpan tags) {
    if (tags.empty()) return {};
    const int handleCode = trimBlanks(tags[0].value) == "DIMSTYLE" ? 105 : 5;
    for (std::size_t i = 1; i < tags.size(); ++i) {
        // The handle belongs to the common part, which ends at the first subclass marker.
        if (tags[i].code == kMarkerCode || tags[i].code == kFirstXdataCode) break;
        if (tags[i].code == handleCode) {
            const auto value = toHandle(tags[i]);
            return value ? Handle{*value} : Handle{};
        }
    }
    return {};
}

std::optional<std::string> ReadingFiler::rawValue(const Tag& tag, sys::CodePage codePage) {
    const std::string_view trimmed = trimBlanks(tag.value);
    switch (valueTypeOf(tag.code)) {
        case ValueType::String:
        case ValueType::Comment:
            return decodeText(tag.value, codePage);
        case ValueType::Double:
            if (!toDouble(tag)) return std::nullopt;
            break;
        case ValueType::Int16:
        case ValueType::Int32:
        case ValueType::Int64:
        case ValueType::Bool:
            if (!toInt(tag)) return std::nullopt;
            break;
        case ValueType::Handle:
            // Kept even when it is no handle (it is written back the same), but not with line
            // breaks or other control characters, which would break the file it is written to.
            if (!toHandle(tag) && !isPrintable(trimmed)) return std::nullopt;
            break;
        case ValueType::Binary:
            if (trimmed.size() % 2 != 0 || !toBinary(tag)) return std::nullopt;
            break;
    }
    return std::string(trimmed);
}

std::optional<std::string> ReadingFiler::keptValue(const Tag& tag, sys::CodePage codePage,
                                                   TagPlace place, std::optional<DxfError>& error) {
    if (tag.code < 0) {
        error = badCode(tag, place);
        return std::nullopt;
    }
    auto value = rawValue(tag, codePage);
    if (!value) error = badValue(tag, place, "a value of the group code's type");
    return value;
}

bool ReadingFiler::read(DbObject& object, TagSpan tags) {
    error_.reset();
    unreadableLinks_.clear();
    if (!prepare(tags)) return false;
    readCommonPart(object);
    if (!error_) object.dxfFields(*this);
    if (!error_) finish(object);
    return !error_;
}

bool ReadingFiler::prepare(TagSpan tags) {
    const auto size = static_cast<std::uint32_t>(tags.size());
    // One pass finds both a code that no file can hold and where the extended data begins.
    bodyEnd_ = size;
    for (std::uint32_t i = 0; i < size; ++i) {
        if (tags[i].code < 0) {
            error_ = badCode(tags[i], place_);
            return false;
        }
        if (tags[i].code == kFirstXdataCode && i > 0 && bodyEnd_ == size) bodyEnd_ = i;
    }
    tags_ = tags;
    flags_.assign(size, 0);
    takeScope_ = Scope{};
    segments_.clear();
    recordStarts_.clear();
    recordLists_.clear();
    lastSubclass_.clear();
    lastEntered_ = 0;
    owner_ = Handle{};

    segments_.push_back({0, 1, bodyEnd_, false, {}});
    for (std::uint32_t i = 1; i < bodyEnd_; ++i) {
        if (tags[i].code == kMarkerCode) {
            flags_[i] |= kMarker;
            segments_.back().end = i;
            segments_.push_back({i, i + 1, bodyEnd_, false, trimBlanks(tags[i].value)});
        } else if (opensGroup(tags[i])) {
            // A group ends at its "}" or, in a damaged file, at the end of its segment.
            std::uint32_t j = i;
            for (; j < bodyEnd_ && tags[j].code != kMarkerCode; ++j) {
                flags_[j] |= kGrouped;
                if (j > i && closesGroup(tags[j])) break;
            }
            i = j < bodyEnd_ && tags[j].code != kMarkerCode ? j : j - 1;
        }
    }
    markerless_ = segments_.size() == 1;
    scope_ = {1, bodyEnd_, false, true};
    return true;
}

void ReadingFiler::readCommonPart(DbObject& object) {
    const int handleCode = object.dxfName() == "DIMSTYLE" ? 105 : 5;
    bool handleSeen = false;
    bool ownerSeen = false;
    const std::uint32_t end = segments_.front().end;
    for (std::uint32_t i = 1; i < end && !error_; ++i) {
        const Tag& tag = tags_[i];
        if (tag.code == handleCode && !handleSeen && !(flags_[i] & kGrouped)) {
            handleSeen = true;
            flags_[i] |= kRead;
        } else if (opensGroup(tag)) {
            const std::string_view name = trimBlanks(tag.value);
            const bool reactors = name == "{ACAD_REACTORS";
            const bool xdictionary = name == "{ACAD_XDICTIONARY";
            if (!reactors && !xdictionary) continue;  // other groups are kept as they are
            const std::uint32_t open = i;
            for (std::uint32_t j = open; j < end && (flags_[j] & kGrouped); ++j) {
                flags_[j] |= kRead;
                i = j;
                if (j > open && closesGroup(tags_[j])) break;
                ObjectId id;
                if (reactors && tags_[j].code == kReactorCode) {
                    if (takeHandle(tags_[j], id) && !id.isNull()) object.addPersistentReactor(id);
                } else if (xdictionary && tags_[j].code == kXdictionaryCode) {
                    if (takeHandle(tags_[j], id)) object.setExtensionDictionary(id);
                }
            }
        } else if (tag.code == kOwnerCode && !ownerSeen && !(flags_[i] & kGrouped)) {
            ownerSeen = true;
            flags_[i] |= kRead;
            ObjectId id;
            if (takeHandle(tag, id)) owner_ = id.handle();
        }
    }
}

void ReadingFiler::finish(DbObject& object) {
    const Segment& head = segments_.front();
    keep(object, markerless_ ? lastSubclass_ : std::string(), head.begin, head.end);
    std::string previous;
    for (std::size_t s = 1; s < segments_.size() && !error_; ++s) {
        const Segment& segment = segments_[s];
        const std::string_view marker = segment.name;
        if (segment.entered) {
            previous = marker;
            keep(object, previous, segment.begin, segment.end);
        } else {
            // A subclass the class does not declare goes back after the one before it, marker
            // and all, so the structure is written as it was read.
            keep(object, previous, segment.marker, segment.end);
        }
    }
    for (std::uint32_t i = bodyEnd_; i < tags_.size() && !error_; ++i) {
        auto value = rawValue(tags_[i], codePage_);
        if (!value) {
            fail(tags_[i], "a value of the group code's type");
            break;
        }
        reserveHandle(tags_[i]);
        object.xdata().push_back(RawTag{tags_[i].code, std::move(*value)});
    }
}

void ReadingFiler::reserveHandle(const Tag& tag) {
    if (!isHandleReference(tag.code)) return;
    const auto value = toHandle(tag);
    if (!value || *value == 0 || *value == UINT64_MAX) return;
    database_.setHandseed(Handle{*value + 1});
}

void ReadingFiler::keep(DbObject& object, const std::string& subclass, std::uint32_t begin,
                        std::uint32_t end) {
    for (std::uint32_t i = begin; i < end; ++i) {
        if (flags_[i] & kRead) continue;
        auto value = rawValue(tags_[i], codePage_);
        if (!value) {
            fail(tags_[i], "a value of the group code's type");
            return;
        }
        auto& kept = object.keptTags();
        if (kept.empty() || kept.back().subclass != subclass) {
            kept.push_back(DbObject::KeptTags{subclass, {}});
        }
        reserveHandle(tags_[i]);
        kept.back().tags.push_back(RawTag{tags_[i].code, std::move(*value)});
        flags_[i] |= kRead;
    }
}

const Tag* ReadingFiler::take(int code) {
    if (error_) return nullptr;
    std::uint32_t from = scope_.begin;
    if (!scope_.lastRecord) {
        // Flags are only ever added while an object is read, so the tags before the first one
        // without any are never taken again: fields read in order (a point's x, y and z) do not
        // walk over the ones read before them.
        if (takeScope_.begin != scope_.begin || takeScope_.end != scope_.end) {
            takeScope_ = scope_;
            takeFrom_ = scope_.begin;
        }
        while (takeFrom_ < scope_.end && flags_[takeFrom_] != 0) ++takeFrom_;
        from = takeFrom_;
    }
    for (std::uint32_t i = from; i < scope_.end; ++i) {
        const std::uint8_t flags = flags_[i];
        if (flags & (kGrouped | kMarker)) continue;
        if (flags & kRead) {
            // In the last record of a list, a code seen again belongs to what follows.
            if (scope_.lastRecord && tags_[i].code == code) return nullptr;
            continue;
        }
        if (tags_[i].code == code) {
            flags_[i] |= kRead;
            return &tags_[i];
        }
    }
    return nullptr;
}

bool ReadingFiler::fail(const Tag& tag, std::string_view expected) {
    if (!error_) error_ = badValue(tag, place_, expected);
    return false;
}

std::optional<std::int64_t> ReadingFiler::takeInt(int code, std::int64_t low, std::int64_t high) {
    const Tag* tag = take(code);
    if (tag == nullptr) return std::nullopt;
    const auto value = toInt(*tag);
    if (!value || *value < low || *value > high) {
        fail(*tag, "an integer from " + std::to_string(low) + " to " + std::to_string(high));
        return std::nullopt;
    }
    return value;
}

std::optional<double> ReadingFiler::takeDouble(int code) {
    const Tag* tag = take(code);
    if (tag == nullptr) return std::nullopt;
    const auto value = toDouble(*tag);
    if (!value) fail(*tag, "a number");
    return value;
}

bool ReadingFiler::takeHandle(const Tag& tag, ObjectId& id) {
    const auto value = toHandle(tag);
    if (!value && trimBlanks(tag.value).empty()) {
        // Some writers leave an unset link empty rather than writing 0.
        id = ObjectId::kNull;
        return true;
    }
    if (!value) {
        unreadableLinks_.push_back(
            dxfError(place_, tag.line,
                     "group code " + std::to_string(tag.code) + " holds '" + shown(tag.value) +
                         "' where a handle belongs; the link was left empty"));
        return false;
    }
    if (*value == 0) {
        id = ObjectId::kNull;
    } else {
        database_.getObjectId(id, true, Handle{*value});
    }
    return true;
}

std::string ReadingFiler::decoded(const Tag& tag) const {
    return decodeText(tag.value, codePage_);
}

void ReadingFiler::subclass(std::string_view marker) {
    lastSubclass_ = marker;
    recordStarts_.clear();
    recordLists_.clear();
    if (!markerless_) {
        for (std::size_t s = 1; s < segments_.size(); ++s) {
            Segment& segment = segments_[s];
            if (segment.entered || segment.name != marker) continue;
            segment.entered = true;
            flags_[segment.marker] |= kRead;
            lastEntered_ = s;
            scope_ = {segment.begin, segment.end, false, false};
            return;
        }
    }
    // No marker of that name. R12 has none, and the fields may be anywhere; a writer that left
    // one marker out put its fields with the subclass before (an ELLIPSE's after "AcDbEntity"),
    // or before the first marker there is. Only what no field took is looked at.
    scope_ = markerless_ ? Scope{1, bodyEnd_, false, true}
                         : Scope{1, segments_[lastEntered_].end, false, false};
}

void ReadingFiler::string(int code, std::string& value) {
    if (const Tag* tag = take(code)) value = decoded(*tag);
}

void ReadingFiler::string(int code, std::string& value, std::string_view) {
    string(code, value);
}

void ReadingFiler::int16(int code, std::int16_t& value) {
    if (const auto v = takeInt(code, std::numeric_limits<std::int16_t>::min(),
                               std::numeric_limits<std::int16_t>::max())) {
        value = static_cast<std::int16_t>(*v);
    }
}

void ReadingFiler::int16(int code, std::int16_t& value, std::int16_t) {
    int16(code, value);
}

void ReadingFiler::int32(int code, std::int32_t& value) {
    if (const auto v = takeInt(code, std::numeric_limits<std::int32_t>::min(),
                               std::numeric_limits<std::int32_t>::max())) {
        value = static_cast<std::int32_t>(*v);
    }
}

void ReadingFiler::int32(int code, std::int32_t& value, std::int32_t) {
    int32(code, value);
}

void ReadingFiler::int64(int code, std::int64_t& value) {
    if (const auto v = takeInt(code, std::numeric_limits<std::int64_t>::min(),
                               std::numeric_limits<std::int64_t>::max())) {
        value = *v;
    }
}

void ReadingFiler::real(int code, double& value) {
    if (const auto v = takeDouble(code)) value = *v;
}

void ReadingFiler::real(int code, double& value, double) {
    real(code, value);
}

void ReadingFiler::boolean(int code, bool& value) {
    if (const auto v = takeInt(code, std::numeric_limits<std::int64_t>::min(),
                               std::numeric_limits<std::int64_t>::max())) {
        value = *v != 0;
    }
}

void ReadingFiler::point(int code, ge::Point3d& value) {
    point2d(code, value);
    real(code + 20, value.z);
}

void ReadingFiler::point2d(int code, ge::Point3d& value) {
    real(code, value.x);
    real(code + 10, value.y);
}

void ReadingFiler::vector(int code, ge::Vector3d& value) {
    real(code, value.x);
    real(code + 10, value.y);
    real(code + 20, value.z);
}

void ReadingFiler::vector(int code, ge::Vector3d& value, const ge::Vector3d&) {
    vector(code, value);
}

void ReadingFiler::reference(int code, ObjectId& id) {
    if (const Tag* tag = take(code)) takeHandle(*tag, id);
}

void ReadingFiler::symbol(int code, ObjectId& record, SymbolTable table) {
    const Tag* tag = take(code);
    if (tag == nullptr) return;
    const std::string name = decoded(*tag);
    symbols_.resolve(record, name, table);
}

void ReadingFiler::symbol(int code, ObjectId& record, SymbolTable table, ObjectId) {
    symbol(code, record, table);
}

void ReadingFiler::binary(int code, std::string& bytes) {
    bool first = true;
    while (const Tag* tag = take(code)) {
        const auto chunk = toBinary(*tag);
        if (!chunk) {
            fail(*tag, "hexadecimal binary data");
            return;
        }
        if (first) bytes.clear();
        first = false;
        bytes += *chunk;
    }
}

}  // namespace cad::db::dxf
