// A user coordinate system: the origin and axes in which the user types and picks points.
// Points and angles entered by the user are converted to the world before they reach the
// drawing.
#pragma once

#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::ge {

class CoordinateSystem {
public:
    CoordinateSystem() = default;  // the world system
    // The x axis is made unit and the y axis unit and perpendicular to it, in the plane the
    // two span. A zero x axis, or a y axis parallel to it, leaves the world axes in place.
    CoordinateSystem(const Point3d& origin, const Vector3d& xAxis, const Vector3d& yAxis);

    const Point3d& origin() const { return m_origin; }
    const Vector3d& xAxis() const { return m_xAxis; }
    const Vector3d& yAxis() const { return m_yAxis; }
    Vector3d zAxis() const { return m_xAxis.crossProduct(m_yAxis); }

    Point3d ucsToWorld(const Point3d& p) const;
    Point3d worldToUcs(const Point3d& p) const;
    Vector3d ucsToWorld(const Vector3d& v) const;
    Vector3d worldToUcs(const Vector3d& v) const;
    Matrix3d ucsToWorldMatrix() const;
    Matrix3d worldToUcsMatrix() const;

    // An angle picked in the user system (from its x axis, counter-clockwise about its z axis)
    // as the rotation an entity in the user's plane carries: measured in the object coordinate
    // system of that plane, which is the world system when the user's z is the world's. The
    // angle is only shifted, never wrapped, so a full turn stays a full turn.
    double angleToWorld(double ucsAngle) const;
    double angleToUcs(double worldAngle) const;

private:
    double objectAngleOfXAxis() const;

    Point3d m_origin;
    Vector3d m_xAxis = Vector3d::kXAxis;
    Vector3d m_yAxis = Vector3d::kYAxis;
};

}  // namespace cad::ge
