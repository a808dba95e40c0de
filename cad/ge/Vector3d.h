// A direction or displacement in 3D: axes, normals, offsets. Unlike a point, a vector is not
// moved by the translation part of a transform.
#pragma once

#include "cad/ge/Tolerance.h"

namespace cad::ge {

class Matrix3d;

class Vector3d {
public:
    constexpr Vector3d() = default;
    constexpr Vector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const Vector3d kIdentity;  // the zero vector
    static const Vector3d kXAxis;
    static const Vector3d kYAxis;
    static const Vector3d kZAxis;

    constexpr Vector3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3d operator-() const { return {-x, -y, -z}; }
    constexpr Vector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    constexpr Vector3d operator/(double s) const { return {x / s, y / s, z / s}; }
    Vector3d& operator+=(const Vector3d& v) { return *this = *this + v; }
    Vector3d& operator-=(const Vector3d& v) { return *this = *this - v; }
    Vector3d& operator*=(double s) { return *this = *this * s; }
    Vector3d& operator/=(double s) { return *this = *this / s; }
    friend constexpr Vector3d operator*(double s, const Vector3d& v) { return v * s; }

    // Equality within the global tolerance, as everywhere in the geometry layer.
    bool operator==(const Vector3d& v) const { return isEqualTo(v); }

    double length() const;
    constexpr double lengthSqrd() const { return x * x + y * y + z * z; }

    // The unit vector in this direction; a vector of zero length (within tol) stays zero.
    Vector3d normal(const Tolerance& tol = Tolerance::global()) const;
    Vector3d& normalize(const Tolerance& tol = Tolerance::global());

    constexpr double dotProduct(const Vector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    constexpr Vector3d crossProduct(const Vector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }

    // The unsigned angle between the two vectors, in [0, pi].
    double angleTo(const Vector3d& v) const;
    // The angle from this vector to v counter-clockwise about reference, in [0, 2 pi).
    double angleTo(const Vector3d& v, const Vector3d& reference) const;

    bool isZeroLength(const Tolerance& tol = Tolerance::global()) const;
    bool isEqualTo(const Vector3d& v, const Tolerance& tol = Tolerance::global()) const;
    // Same or opposite direction; a zero vector is parallel to nothing.
    bool isParallelTo(const Vector3d& v, const Tolerance& tol = Tolerance::global()) const;

    // A unit vector perpendicular to this one, chosen by the arbitrary-axis rule of the object
    // coordinate systems, so the same normal always yields the same perpendicular.
    Vector3d perpVector() const;

    // Applies the linear part of m; translation does not move a vector.
    Vector3d& transformBy(const Matrix3d& m);

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

}  // namespace cad::ge
