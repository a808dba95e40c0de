// ARC: a circular arc running counter-clockwise about its normal from the start angle to the
// end angle, both measured in the object coordinate system of the normal.
#pragma once

#include "cad/db/CircularEntity.h"

namespace cad::db {

class Arc : public CircularEntity {
public:
    Arc() = default;
    // Angles in radians.
    Arc(const ge::Point3d& center, const ge::Vector3d& normal, double radius, double startAngle,
        double endAngle);

    double startAngle() const override { return start_; }
    ErrorStatus setStartAngle(double radians);
    // Below the start angle when the arc crosses angle 0; endAngle() of the sweep used for
    // geometry is always above the start.
    double endAngle() const override;
    ErrorStatus setEndAngle(double radians);
    ge::Point3d startPoint() const;
    ge::Point3d endPoint() const;

    std::string_view dxfName() const override { return "ARC"; }
    std::string_view className() const override { return "AcDbArc"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Arc>(*this); }

protected:
    void transformAngles(const PlaneMapping& mapping) override;

private:
    double start_ = 0.0;
    double end_ = 0.0;
};

}  // namespace cad::db
