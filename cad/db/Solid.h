// SOLID: a filled triangle or quadrilateral in the plane of its normal. The corners are drawn
// in the order 1, 2, 4, 3 (a "bow tie" when given clockwise); a triangle repeats corner 3.
#pragma once

#include <array>

#include "cad/db/Entity.h"

namespace cad::db {

class Solid : public Entity {
public:
    Solid() = default;
    Solid(const ge::Point3d& p0, const ge::Point3d& p1, const ge::Point3d& p2,
          const ge::Point3d& p3);

    // Corners 0 to 3 in world coordinates (DXF stores them in the object coordinate system).
    ErrorStatus getPointAt(int index, ge::Point3d& point) const;
    ErrorStatus setPointAt(int index, const ge::Point3d& point);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    std::string_view dxfName() const override { return "SOLID"; }
    std::string_view className() const override { return "AcDbTrace"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Solid>(*this); }

    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    std::array<ge::Point3d, 4> corners_{};
    double thickness_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
};

}  // namespace cad::db
