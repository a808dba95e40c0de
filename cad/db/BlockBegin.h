// The BLOCK that opens a block definition in the blocks section. It has a handle and entity
// properties of its own, so a drawing read and written keeps it; the block's name, origin,
// flags and description belong to its block table record and are written from there.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cad/db/Entity.h"
#include "cad/ge/Point3d.h"

namespace cad::db {

class BlockBegin : public Entity {
public:
    // What the BLOCK carried when read, until BlockTableRecord::setBlockBegin takes it over.
    struct Data {
        std::string name;
        std::int16_t flags = 0;
        ge::Point3d origin;
        std::string pathName;
        std::string comments;
    };

    BlockBegin() = default;

    std::string_view dxfName() const override { return "BLOCK"; }
    std::string_view className() const override { return "AcDbBlockBegin"; }

    const Data& asRead() const { return asRead_; }

    // A block's frame has no geometry: moving it means moving the block's origin.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    BlockBegin(const BlockBegin&) = default;

    Data asRead_;
};

}  // namespace cad::db
