// An entity the engine does not model (DIMENSION, 3DFACE, LEADER, VIEWPORT, proxies, ...):
// the common entity part is modelled, everything after it is kept as read and written back
// unchanged. Handles among the kept tags are references to walking filers.
#pragma once

#include <string>
#include <vector>

#include "cad/db/Entity.h"

namespace cad::db {

class RawEntity : public Entity {
public:
    RawEntity() = default;
    // className: the class the CLASSES section or the subclass markers name ("AcDbDimension").
    explicit RawEntity(std::string dxfName, std::string className = "AcDbEntity");

    const std::vector<RawTag>& tags() const { return tags_; }
    std::vector<RawTag>& tags() { return tags_; }

    std::string_view dxfName() const override { return dxfName_; }
    std::string_view className() const override { return className_; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<RawEntity>(*this); }

    // The geometry is not understood: no transform (eNotApplicable) and empty extents.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    std::string dxfName_;
    std::string className_ = "AcDbEntity";
    std::vector<RawTag> tags_;
};

}  // namespace cad::db
