// RawEntity: the common part as declared, the rest kept raw.
#include "cad/db/RawEntity.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

RawEntity::RawEntity(std::string dxfName, std::string className)
    : dxfName_(std::move(dxfName)), className_(std::move(className)) {}

void RawEntity::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.rawTags(tags_);
}

ErrorStatus RawEntity::transformBy(const ge::Matrix3d&) {
    return ErrorStatus::eNotApplicable;
}

ErrorStatus RawEntity::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    return ErrorStatus::eOk;
}

}  // namespace cad::db
