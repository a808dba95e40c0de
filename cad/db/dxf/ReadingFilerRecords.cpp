// Reading the repeated parts of one structure: runs of records (dictionary entries, vertices),
// typed value chains and the raw tags of what the engine does not model.
#include "cad/db/dxf/ReadingFiler.h"

#include <utility>

#include "cad/db/dxf/GroupCode.h"

namespace cad::db::dxf {

void ReadingFiler::beginRecords(int startCode, std::size_t& count) {
    RecordList list{recordStarts_.size(), 0, scope_, scope_.end};
    for (std::uint32_t i = scope_.begin; i < scope_.end; ++i) {
        const std::uint8_t flags = flags_[i];
        if (flags & (kGrouped | kMarker)) continue;
        if (flags & kRead) {
            // A tag an outer field took after the first record: the list ends there.
            if (list.count == 0) continue;
            list.end = i;
            break;
        }
        if (tags_[i].code == startCode) {
            recordStarts_.push_back(i);
            ++list.count;
        }
    }
    count = list.count;
    recordLists_.push_back(list);
}

void ReadingFiler::enterRecord(std::size_t index) {
    if (recordLists_.empty()) return;
    const RecordList& list = recordLists_.back();
    if (index >= list.count) {
        scope_ = {0, 0, false, false};
        return;
    }
    const std::uint32_t begin = recordStarts_[list.firstStart + index];
    const bool last = index + 1 == list.count;
    const std::uint32_t end = last ? list.end : recordStarts_[list.firstStart + index + 1];
    scope_ = {begin, end, last, false};
}

void ReadingFiler::endRecords() {
    if (recordLists_.empty()) return;
    scope_ = recordLists_.back().outer;
    recordStarts_.resize(recordLists_.back().firstStart);
    recordLists_.pop_back();
}

void ReadingFiler::resbufs(ResBufChain& chain) {
    // Built in a buffer that is reused from one record to the next, then moved into a chain of
    // exactly its size: a chain grown item by item held up to twice the room it needs, for
    // the life of the drawing.
    chainBuffer_.clear();
    // The chain is everything left, also past later markers: a 100 in the data is data.
    const std::uint32_t end = recordLists_.empty() ? bodyEnd_ : scope_.end;
    for (std::uint32_t i = scope_.begin; i < end && !error_; ++i) {
        if (flags_[i] & kRead) continue;
        flags_[i] |= kRead;
        ResBuf& item = chainBuffer_.emplace_back();
        if (!readResBuf(i, end, item)) {
            chainBuffer_.pop_back();
            break;
        }
    }
    chain = ResBufChain(std::make_move_iterator(chainBuffer_.begin()),
                        std::make_move_iterator(chainBuffer_.end()));
}

bool ReadingFiler::readResBuf(std::uint32_t& i, std::uint32_t end, ResBuf& item) {
    const Tag& tag = tags_[i];
    item.code = tag.code;
    switch (valueTypeOf(tag.code)) {
        case ValueType::String:
        case ValueType::Comment:
            item.value = decoded(tag);
            return true;
        case ValueType::Int16:
        case ValueType::Bool:
        case ValueType::Int32:
        case ValueType::Int64: {
            const auto v = toInt(tag);
            if (!v) return fail(tag, "an integer");
            const ValueType type = valueTypeOf(tag.code);
            if (type == ValueType::Int32) {
                item.value = static_cast<std::int32_t>(*v);
            } else if (type == ValueType::Int64) {
                item.value = *v;
            } else {
                item.value = static_cast<std::int16_t>(*v);
            }
            return true;
        }
        case ValueType::Double: {
            const auto x = toDouble(tag);
            if (!x) return fail(tag, "a number");
            if (!isPointCode(tag.code)) {
                item.value = *x;
                return true;
            }
            ge::Point3d p{*x, 0.0, 0.0};
            // y and z follow x directly; a point may lack its z (2D data).
            for (int axis = 1; axis <= 2 && i + 1 < end; ++axis) {
                const Tag& next = tags_[i + 1];
                if ((flags_[i + 1] & kRead) || next.code != tag.code + 10 * axis) break;
                const auto v = toDouble(next);
                if (!v) return fail(next, "a number");
                (axis == 1 ? p.y : p.z) = *v;
                flags_[++i] |= kRead;
            }
            item.value = p;
            return true;
        }
        case ValueType::Binary: {
            auto bytes = toBinary(tag);
            if (!bytes) return fail(tag, "hexadecimal binary data");
            item.value = BinaryChunk{std::move(*bytes)};
            return true;
        }
        case ValueType::Handle: {
            // Arbitrary handles (320-329) are data, not links: they stay text and are not
            // remapped when the record is cloned. A link that holds no handle is reported and
            // left empty: kept as text it would be written back under a link's code, and every
            // later load would report it again.
            ObjectId id;
            if (isHandleReference(tag.code)) {
                if (!takeHandle(tag, id)) id = ObjectId::kNull;
                item.value = id;
            } else if (auto text = rawValue(tag, codePage_)) {
                item.value = std::move(*text);
            } else {
                return fail(tag, "a hexadecimal handle");
            }
            return true;
        }
    }
    return true;
}

void ReadingFiler::rawTags(std::vector<RawTag>& tags) {
    tags.clear();
    // Everything left, also past later markers, so a raw structure keeps its subclasses.
    const std::uint32_t end = recordLists_.empty() ? bodyEnd_ : scope_.end;
    for (std::uint32_t i = scope_.begin; i < end && !error_; ++i) {
        if (flags_[i] & kRead) continue;
        auto value = rawValue(tags_[i], codePage_);
        if (!value) {
            fail(tags_[i], "a value of the group code's type");
            return;
        }
        flags_[i] |= kRead;
        reserveHandle(tags_[i]);
        tags.push_back(RawTag{tags_[i].code, std::move(*value)});
    }
}

}  // namespace cad::db::dxf
