// LINE: a straight segment between two points in world coordinates, with an optional
// thickness along its normal.
#pragma once

#include "cad/db/Entity.h"

namespace cad::db {

class Line : public Entity {
public:
    Line() = default;
    Line(const ge::Point3d& start, const ge::Point3d& end);

    const ge::Point3d& startPoint() const { return start_; }
    ErrorStatus setStartPoint(const ge::Point3d& p);
    const ge::Point3d& endPoint() const { return end_; }
    ErrorStatus setEndPoint(const ge::Point3d& p);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    std::string_view dxfName() const override { return "LINE"; }
    std::string_view className() const override { return "AcDbLine"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Line>(*this); }

    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    ge::Point3d start_;
    ge::Point3d end_;
    double thickness_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
};

}  // namespace cad::db
