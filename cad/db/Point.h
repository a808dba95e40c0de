// POINT: a point in world coordinates, with the thickness and normal of the plane it was drawn
// in and the angle of that plane's x axis (used when point styles draw a symbol).
#pragma once

#include "cad/db/Entity.h"

namespace cad::db {

class Point : public Entity {
public:
    Point() = default;
    explicit Point(const ge::Point3d& position);

    const ge::Point3d& position() const { return position_; }
    ErrorStatus setPosition(const ge::Point3d& position);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);
    double ecsRotation() const { return xAxisAngle_; }  // radians
    ErrorStatus setEcsRotation(double radians);

    std::string_view dxfName() const override { return "POINT"; }
    std::string_view className() const override { return "AcDbPoint"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Point>(*this); }

    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    ge::Point3d position_;
    double thickness_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    double xAxisAngle_ = 0.0;
};

}  // namespace cad::db
