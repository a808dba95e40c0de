// An affine transform of 3D space held as a 4x4 matrix acting on column vectors: p' = M p,
// with the translation in the last column. Every entity transform goes through it.
#pragma once

#include "cad/ge/Point3d.h"
#include "cad/ge/Tolerance.h"
#include "cad/ge/Vector3d.h"

namespace cad::ge {

class Scale3d;

class Matrix3d {
public:
    constexpr Matrix3d()
        : entry{{1.0, 0.0, 0.0, 0.0},
                {0.0, 1.0, 0.0, 0.0},
                {0.0, 0.0, 1.0, 0.0},
                {0.0, 0.0, 0.0, 1.0}} {}  // the identity

    static const Matrix3d kIdentity;

    double operator()(int row, int column) const { return entry[row][column]; }
    double& operator()(int row, int column) { return entry[row][column]; }

    Matrix3d& setToIdentity();

    static Matrix3d translation(const Vector3d& offset);
    // Counter-clockwise by angle (radians) about axis, looking down the axis towards center.
    // A zero axis gives the identity.
    static Matrix3d rotation(double angle, const Vector3d& axis,
                             const Point3d& center = Point3d::kOrigin);
    static Matrix3d scaling(double factor, const Point3d& center = Point3d::kOrigin);
    // Per-axis factors along the world axes; a negative factor mirrors along its axis.
    static Matrix3d scaling(const Scale3d& factors, const Point3d& center = Point3d::kOrigin);
    // Maps the "from" system onto the "to" system: fromOrigin goes to toOrigin, fromX to toX and
    // so on. The axes need not be unit or perpendicular; a degenerate "from" system gives the
    // identity.
    static Matrix3d alignCoordSys(const Point3d& fromOrigin, const Vector3d& fromXAxis,
                                  const Vector3d& fromYAxis, const Vector3d& fromZAxis,
                                  const Point3d& toOrigin, const Vector3d& toXAxis,
                                  const Vector3d& toYAxis, const Vector3d& toZAxis);
    // The object coordinate system of an entity with extrusion direction normal, by the
    // arbitrary-axis rule of drawing files: planeToWorld maps object coordinates to world
    // coordinates, worldToPlane back. A zero normal counts as the world Z axis.
    static Matrix3d planeToWorld(const Vector3d& normal);
    static Matrix3d worldToPlane(const Vector3d& normal);

    // The matrix whose columns are the given axes and origin: it maps that system's
    // coordinates to world coordinates.
    Matrix3d& setCoordSystem(const Point3d& origin, const Vector3d& xAxis, const Vector3d& yAxis,
                             const Vector3d& zAxis);
    void getCoordSystem(Point3d& origin, Vector3d& xAxis, Vector3d& yAxis, Vector3d& zAxis) const;
    Vector3d translation() const;

    // A * B applies B first, then A.
    Matrix3d operator*(const Matrix3d& m) const;
    Matrix3d& operator*=(const Matrix3d& m) { return postMultiplyBy(m); }
    Matrix3d& preMultiplyBy(const Matrix3d& left);    // this = left * this: left applies after
    Matrix3d& postMultiplyBy(const Matrix3d& right);  // this = this * right: right applies first

    double det() const;
    // Singular when the volume the axes span is negligible against their lengths, so the test
    // does not depend on the drawing's units.
    bool isSingular(const Tolerance& tol = Tolerance::global()) const;
    // Writes the inverse into result and answers true; a singular matrix leaves result as it
    // was and answers false.
    bool inverse(Matrix3d& result, const Tolerance& tol = Tolerance::global()) const;
    // The inverse, or the identity for a singular matrix (which has none).
    Matrix3d inverse() const;
    Matrix3d& invert();
    Matrix3d transpose() const;

    // The largest scale the transform applies along any of its axes.
    double scale() const;
    // A rotation, possibly mirrored, with one scale for all axes: angles and circles survive.
    bool isUniScaledOrtho(const Tolerance& tol = Tolerance::global()) const;
    // Entry by entry: the linear part within equalVector, the translation within equalPoint.
    bool isEqualTo(const Matrix3d& m, const Tolerance& tol = Tolerance::global()) const;
    bool operator==(const Matrix3d& m) const { return isEqualTo(m); }

    double entry[4][4];
};

Point3d operator*(const Matrix3d& m, const Point3d& p);
Vector3d operator*(const Matrix3d& m, const Vector3d& v);

}  // namespace cad::ge
