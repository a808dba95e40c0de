// A position in 3D. Points and vectors are kept apart so that a transform moves a point by its
// translation but never a direction.
#pragma once

#include "cad/ge/Tolerance.h"
#include "cad/ge/Vector3d.h"

namespace cad::ge {

class Matrix3d;

class Point3d {
public:
    constexpr Point3d() = default;
    constexpr Point3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const Point3d kOrigin;

    constexpr Point3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Point3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3d operator-(const Point3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    Point3d& operator+=(const Vector3d& v) { return *this = *this + v; }
    Point3d& operator-=(const Vector3d& v) { return *this = *this - v; }

    // Equality within the global tolerance, as everywhere in the geometry layer.
    bool operator==(const Point3d& p) const { return isEqualTo(p); }

    double distanceTo(const Point3d& p) const { return (*this - p).length(); }
    bool isEqualTo(const Point3d& p, const Tolerance& tol = Tolerance::global()) const {
        return distanceTo(p) <= tol.equalPoint;
    }

    // The displacement from the origin to this point.
    constexpr Vector3d asVector() const { return {x, y, z}; }

    Point3d& transformBy(const Matrix3d& m);

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

}  // namespace cad::ge
