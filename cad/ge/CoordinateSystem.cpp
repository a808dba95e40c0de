// Conversions between a user coordinate system and the world.
#include "cad/ge/CoordinateSystem.h"

#include <cmath>

namespace cad::ge {

CoordinateSystem::CoordinateSystem(const Point3d& origin, const Vector3d& xAxis,
                                   const Vector3d& yAxis)
    : m_origin(origin) {
    const Vector3d x = xAxis.normal();
    const Vector3d y = (yAxis - x * yAxis.dotProduct(x)).normal();
    if (x.isZeroLength() || y.isZeroLength()) return;
    m_xAxis = x;
    m_yAxis = y;
}

Point3d CoordinateSystem::ucsToWorld(const Point3d& p) const {
    return m_origin + ucsToWorld(p.asVector());
}

Point3d CoordinateSystem::worldToUcs(const Point3d& p) const {
    return Point3d::kOrigin + worldToUcs(p - m_origin);
}

Vector3d CoordinateSystem::ucsToWorld(const Vector3d& v) const {
    return m_xAxis * v.x + m_yAxis * v.y + zAxis() * v.z;
}

Vector3d CoordinateSystem::worldToUcs(const Vector3d& v) const {
    // The axes are orthonormal, so the coordinates are the projections on them.
    return {v.dotProduct(m_xAxis), v.dotProduct(m_yAxis), v.dotProduct(zAxis())};
}

Matrix3d CoordinateSystem::ucsToWorldMatrix() const {
    return Matrix3d().setCoordSystem(m_origin, m_xAxis, m_yAxis, zAxis());
}

Matrix3d CoordinateSystem::worldToUcsMatrix() const {
    return Matrix3d::alignCoordSys(m_origin, m_xAxis, m_yAxis, zAxis(), Point3d::kOrigin,
                                   Vector3d::kXAxis, Vector3d::kYAxis, Vector3d::kZAxis);
}

double CoordinateSystem::angleToWorld(double ucsAngle) const {
    return ucsAngle + objectAngleOfXAxis();
}

double CoordinateSystem::angleToUcs(double worldAngle) const {
    return worldAngle - objectAngleOfXAxis();
}

double CoordinateSystem::objectAngleOfXAxis() const {
    // The user's x and y axes and the object system's axes span the same plane with the same
    // orientation, so the two differ by one rotation: the angle of the user's x axis there.
    const Matrix3d toPlane = Matrix3d::worldToPlane(zAxis());
    const Vector3d x = toPlane * m_xAxis;
    return std::atan2(x.y, x.x);
}

}  // namespace cad::ge
