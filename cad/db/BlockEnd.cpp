// ENDBLK: the entity part only.
#include "cad/db/BlockEnd.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus BlockEnd::transformBy(const ge::Matrix3d&) {
    return ErrorStatus::eNotApplicable;
}

ErrorStatus BlockEnd::getGeomExtents(Extents3d&) const {
    return ErrorStatus::eNotApplicable;
}

void BlockEnd::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbBlockEnd");
}

std::unique_ptr<DbObject> BlockEnd::clone() const {
    return std::unique_ptr<DbObject>(new BlockEnd(*this));
}

}  // namespace cad::db
