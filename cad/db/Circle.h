// CIRCLE: a full circle in the plane of its normal.
#pragma once

#include "cad/db/CircularEntity.h"

namespace cad::db {

class Circle : public CircularEntity {
public:
    Circle() = default;
    Circle(const ge::Point3d& center, const ge::Vector3d& normal, double radius);

    std::string_view dxfName() const override { return "CIRCLE"; }
    std::string_view className() const override { return "AcDbCircle"; }
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Circle>(*this); }

protected:
    double startAngle() const override { return 0.0; }
    double endAngle() const override;
    void transformAngles(const PlaneMapping&) override {}
};

}  // namespace cad::db
