// BLOCK: read into its own data, written from the block table record that owns it.
#include "cad/db/BlockBegin.h"

#include "cad/db/BlockTableRecord.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {
namespace {

void blockFields(DxfFiler& filer, BlockBegin::Data& data) {
    filer.string(2, data.name);
    filer.int16(70, data.flags);
    filer.point(10, data.origin);
    // The name stands twice; the second copy is read past, never trusted over the first.
    std::string again = data.name;
    filer.string(3, again);
    filer.string(1, data.pathName);
    if (filer.isReading() || filer.atLeast(DxfVersion::R2000)) filer.string(4, data.comments, "");
}

}  // namespace

ErrorStatus BlockBegin::transformBy(const ge::Matrix3d&) {
    return ErrorStatus::eNotApplicable;
}

ErrorStatus BlockBegin::getGeomExtents(Extents3d&) const {
    return ErrorStatus::eNotApplicable;
}

void BlockBegin::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbBlockBegin");
    const ObjectSlot* owner = ownerId().slot();
    const auto* record =
        owner != nullptr ? dynamic_cast<const BlockTableRecord*>(owner->object.get()) : nullptr;
    if (filer.isReading() || record == nullptr) {
        blockFields(filer, asRead_);
        return;
    }
    Data current{record->name(), record->flags(), record->origin(), record->pathName(),
                 record->comments()};
    blockFields(filer, current);
}

std::unique_ptr<DbObject> BlockBegin::clone() const {
    return std::unique_ptr<DbObject>(new BlockBegin(*this));
}

}  // namespace cad::db
