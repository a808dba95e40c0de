// INSERT: a reference to a block definition placed with a position, scale factors (a
// negative factor mirrors), rotation and normal, optionally repeated in rows and columns, and
// owning its attributes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cad/db/ComplexEntity.h"
#include "cad/ge/Scale3d.h"

namespace cad::db {

class Attribute;

class BlockReference : public ComplexEntity {
public:
    BlockReference() = default;
    BlockReference(const ge::Point3d& position, ObjectId blockTableRecord);

    ObjectId blockTableRecord() const { return block_; }
    ErrorStatus setBlockTableRecord(ObjectId block);
    // In world coordinates; DXF stores it in the object coordinate system of the normal.
    const ge::Point3d& position() const { return position_; }
    ErrorStatus setPosition(const ge::Point3d& position);
    const ge::Scale3d& scaleFactors() const { return scale_; }
    ErrorStatus setScaleFactors(const ge::Scale3d& scale);  // no factor may be zero
    double rotation() const { return rotation_; }  // radians, in the object coordinate system
    ErrorStatus setRotation(double radians);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    // Repetition as rows and columns (a MINSERT when either count is above one); spacing is
    // measured along the reference's rotated axes.
    std::int16_t columnCount() const { return columns_; }
    std::int16_t rowCount() const { return rows_; }
    double columnSpacing() const { return columnSpacing_; }
    double rowSpacing() const { return rowSpacing_; }
    ErrorStatus setArray(std::int16_t columns, std::int16_t rows, double columnSpacing,
                         double rowSpacing);
    bool isMInsert() const { return columns_ > 1 || rows_ > 1; }

    // Maps block coordinates to world coordinates: translation(position) * planeToWorld(normal)
    // * rotation * scaling * translation(-block origin). The block record is opened for read
    // to learn its origin (taken as zero when it cannot be opened).
    ge::Matrix3d blockTransform() const;

    // The attribute becomes owned by this reference (and database-resident with it).
    ErrorStatus appendAttribute(std::unique_ptr<Attribute> attribute, ObjectId& id);
    const std::vector<ObjectId>& attributeIds() const { return subentityIds(); }

    std::string_view dxfName() const override { return "INSERT"; }
    std::string_view className() const override;
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override {
        return std::make_unique<BlockReference>(*this);
    }

    // Composes into position, rotation, scale and normal (and moves the attributes); a mirror
    // turns the X factor negative. A transform that would shear the block is refused with
    // eNotApplicable, as the host refuses it.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // The block's visible entities placed by the block transform (every row and column), and
    // the visible attributes.
    ErrorStatus getGeomExtents(Extents3d& extents) const override;
    // The block's entities placed by the block transform, in no database. Attribute
    // definitions come along as attribute definitions and this reference's attributes are
    // dropped: the host's explode does the same, so the values typed into a reference are not
    // part of what an explode yields.
    ErrorStatus explode(std::vector<std::unique_ptr<Entity>>& pieces) const override;

private:
    void referenceFields(DxfFiler& filer, ge::Point3d& ocsPosition, double& rotationDegrees);
    ge::Matrix3d cellTransform(const ge::Point3d& origin, int row, int column) const;
    ErrorStatus blockEntities(std::vector<ObjectId>& ids, ge::Point3d& origin) const;

    ObjectId block_;
    ge::Point3d position_;
    ge::Scale3d scale_;
    double rotation_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    std::int16_t columns_ = 1;
    std::int16_t rows_ = 1;
    double columnSpacing_ = 0.0;
    double rowSpacing_ = 0.0;
};

}  // namespace cad::db
