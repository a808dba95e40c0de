// The ENDBLK that closes a block definition in the blocks section: a handle and entity
// properties, nothing else, kept so a drawing read and written keeps it.
#pragma once

#include <memory>

#include "cad/db/Entity.h"

namespace cad::db {

class BlockEnd : public Entity {
public:
    BlockEnd() = default;

    std::string_view dxfName() const override { return "ENDBLK"; }
    std::string_view className() const override { return "AcDbBlockEnd"; }

    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    BlockEnd(const BlockEnd&) = default;
};

}  // namespace cad::db
