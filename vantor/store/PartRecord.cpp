// Part records and their chain of 26 typed values.
#include "vantor/store/PartRecord.h"

#include <stdexcept>
#include <variant>

namespace vantor {

namespace {

using cad::db::ResBuf;
using cad::db::ResBufChain;

// What the chain holds at one position: a field's value, or the point of the view before it.
struct Place {
    PartFields::Id field;
    bool point;
};

const std::array<Place, PartRecord::kChainLength>& places() {
    static const std::array<Place, PartRecord::kChainLength> table = [] {
        std::array<Place, PartRecord::kChainLength> at{};
        for (const PartFields::Field& field : PartFields::all()) {
            at[field.position] = {field.id, false};
            if (field.kind == PartFields::Kind::View) at[field.position + 1] = {field.id, true};
        }
        return at;
    }();
    return table;
}

std::size_t viewSlot(PartFields::Id view) {
    return view - PartFields::FrontView;
}

// Whether the value at a place has the type the layout puts there; the codes are not tested,
// as readers of the format have always taken the fields by position and type.
bool holdsExpectedType(const ResBuf& value, const Place& place) {
    if (place.point) return value.point() != nullptr;
    return value.text() != nullptr;
}

// The value of a place, as toChain and writeInto both place it.
ResBuf valueAt(const PartRecord& record, const Place& place) {
    if (place.point)
        return ResBuf{PartFields::kViewPointCode, record.viewPoints[viewSlot(place.field)]};
    return ResBuf{PartFields::field(place.field).code, record.text(place.field)};
}

}  // namespace

const std::string& PartRecord::text(PartFields::Id field) const {
    return const_cast<PartRecord*>(this)->text(field);
}

std::string& PartRecord::text(PartFields::Id field) {
    switch (field) {
        case PartFields::Group:
            return group;
        case PartFields::KName:
            return kname;
        case PartFields::EName:
            return ename;
        case PartFields::Spec:
            return spec;
        case PartFields::Material:
            return material;
        case PartFields::Weight:
            return weight;
        case PartFields::Price:
            return price;
        case PartFields::Remark:
            return remark;
        case PartFields::User1:
        case PartFields::User2:
        case PartFields::User3:
        case PartFields::User4:
        case PartFields::User5:
        case PartFields::User6:
            return user[field - PartFields::User1];
        case PartFields::FrontView:
        case PartFields::SideView:
        case PartFields::PlanView:
        case PartFields::Drawing1:
        case PartFields::Drawing2:
        case PartFields::Drawing3:
            return viewBlocks[viewSlot(field)];
    }
    throw std::out_of_range("no part record field " + std::to_string(field));
}

const cad::ge::Point3d& PartRecord::viewPoint(PartFields::Id view) const {
    return viewPoints.at(viewSlot(view));
}

const std::string& PartRecord::text(std::size_t index) const {
    return const_cast<PartRecord*>(this)->text(index);
}

std::string& PartRecord::text(std::size_t index) {
    if (index >= kTextCount)
        throw std::out_of_range("no part record text " + std::to_string(index));
    return text(PartFields::inStoredOrder()[kViewCount + index]);
}

ResBufChain PartRecord::toChain() const {
    ResBufChain chain;
    chain.reserve(kChainLength);
    for (const Place& place : places()) chain.push_back(valueAt(*this, place));
    return chain;
}

void PartRecord::writeInto(ResBufChain& chain) const {
    bool shapeKept = chain.size() >= kChainLength;
    for (std::size_t position = 0; shapeKept && position < kChainLength; ++position)
        shapeKept = holdsExpectedType(chain[position], places()[position]);
    if (!shapeKept) {
        chain = toChain();
        return;
    }
    for (std::size_t position = 0; position < kChainLength; ++position)
        chain[position].value = valueAt(*this, places()[position]).value;
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
        const Place& place = places()[position];
        if (!holdsExpectedType(value, place)) {
            if (problem)
                *problem = "value " + std::to_string(position + 1) + " is not " +
                           (place.point ? "a point" : "a text");
            return std::nullopt;
        }
        if (place.point)
            record.viewPoints[viewSlot(place.field)] = *value.point();
        else
            record.text(place.field) = *value.text();
    }
    return record;
}

std::string PartRecord::specOf(const ResBufChain& chain) {
    const std::size_t position = PartFields::field(PartFields::Spec).position;
    if (position >= chain.size() || chain[position].text() == nullptr) return {};
    return *chain[position].text();
}

}  // namespace vantor
