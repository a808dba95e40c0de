// SEQEND: the end marker of a block reference's attributes or a POLYLINE's vertices, owned by
// that entity. It has no data beyond the common entity part.
#pragma once

#include "cad/db/Entity.h"

namespace cad::db {

class SequenceEnd : public Entity {
public:
    SequenceEnd() = default;

    std::string_view dxfName() const override { return "SEQEND"; }
    std::string_view className() const override { return "AcDbSequenceEnd"; }
    std::unique_ptr<DbObject> clone() const override {
        return std::make_unique<SequenceEnd>(*this);
    }

    // The marker has no geometry: it moves with its owner and adds nothing to extents.
    ErrorStatus transformBy(const ge::Matrix3d&) override { return ErrorStatus::eOk; }
    ErrorStatus getGeomExtents(Extents3d& extents) const override {
        extents = Extents3d{};
        return ErrorStatus::eOk;
    }
};

}  // namespace cad::db
