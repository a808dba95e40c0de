// Part records and their chain of 26 typed values.
#include "vantor/store/PartRecord.h"

#include <variant>

namespace vantor {

namespace {

using cad::db::ResBuf;
using cad::db::ResBufChain;

constexpr std::size_t kFirstText = 2 * PartRecord::kViewCount;

bool isBlockPosition(std::size_t position) {
    return position < kFirstText && position % 2 == 0;
}
bool isPointPosition(std::size_t position) {
    return position < kFirstText && position % 2 == 1;
}

// Whether the value at `position` has the type the layout puts there; the codes are not
// tested, as readers of the format have always taken the fields by position and type.
bool holdsExpectedType(const ResBuf& value, std::size_t position) {
    if (isPointPosition(position)) return value.point() != nullptr;
    return value.text() != nullptr;
}

// The three kinds of position with their values, as toChain and writeInto both place them.
ResBuf valueAt(const PartRecord& record, std::size_t position) {
    if (isBlockPosition(position))
        return ResBuf{PartRecord::kBlockCode, record.viewBlocks[position / 2]};
    if (isPointPosition(position))
        return ResBuf{PartRecord::kPointCode, record.viewPoints[position / 2]};
    return ResBuf{PartRecord::kTextCode, record.text(position - kFirstText)};
}

}  // namespace

const std::string& PartRecord::text(std::size_t index) const {
    return const_cast<PartRecord*>(this)->text(index);
}

std::string& PartRecord::text(std::size_t index) {
    switch (index) {
        case 0:
            return group;
        case 1:
            return kname;
        case 2:
            return ename;
        case 3:
            return spec;
        case 4:
            return material;
        case 5:
            return weight;
        case 6:
            return price;
        case 7:
            return remark;
        default:
            return user.at(index - 8);
    }
}

ResBufChain PartRecord::toChain() const {
    ResBufChain chain;
    chain.reserve(kChainLength);
    for (std::size_t position = 0; position < kChainLength; ++position)
        chain.push_back(valueAt(*this, position));
    return chain;
}

void PartRecord::writeInto(ResBufChain& chain) const {
    bool shapeKept = chain.size() >= kChainLength;
    for (std::size_t position = 0; shapeKept && position < kChainLength; ++position)
        shapeKept = holdsExpectedType(chain[position], position);
    if (!shapeKept) {
        chain = toChain();
        return;
    }
    for (std::size_t position = 0; position < kChainLength; ++position)
        chain[position].value = valueAt(*this, position).value;
}

std::optional<PartRecord> PartRecord::fromChain(const ResBufChain& chain, std::string* problem) {
    if (chain.size() < kChainLength) {
        if (problem)
            *problem = "holds " + std::to_string(chain.size()) + " values where " +
                       std::to_string(kChainLength) + " are expected";
        return std::nullopt;
    }
    PartRecord record;
    for (std::size_t position = 0; position < kChainLength; ++position) {
        const ResBuf& value = chain[position];
        if (!holdsExpectedType(value, position)) {
            if (problem)
                *problem = "value " + std::to_string(position + 1) + " is not " +
                           (isPointPosition(position) ? "a point" : "a text");
            return std::nullopt;
        }
        if (isBlockPosition(position))
            record.viewBlocks[position / 2] = *value.text();
        else if (isPointPosition(position))
            record.viewPoints[position / 2] = *value.point();
        else
            record.text(position - kFirstText) = *value.text();
    }
    return record;
}

std::string PartRecord::specOf(const ResBufChain& chain) {
    std::size_t position = kFirstText + kSpecText;
    if (position >= chain.size() || chain[position].text() == nullptr) return {};
    return *chain[position].text();
}

}  // namespace vantor
