// A 2D affine map (x' = a x + c y + e, y' = b x + d y + f): how block coordinates reach the
// screen. Kept apart from QTransform so the view maths have no Qt and stay exact in doubles.
#pragma once

#include <cmath>

#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point2d.h"

namespace cad::gs {

struct Affine2d {
    double a = 1.0, b = 0.0, c = 0.0, d = 1.0, e = 0.0, f = 0.0;

    static Affine2d translation(double dx, double dy) { return {1.0, 0.0, 0.0, 1.0, dx, dy}; }
    // The plan view of a 3D transform: what it does to x and y, Z dropped.
    static Affine2d fromMatrix(const ge::Matrix3d& m) {
        return {m(0, 0), m(1, 0), m(0, 1), m(1, 1), m(0, 3), m(1, 3)};
    }

    ge::Point2d map(double x, double y) const { return {a * x + c * y + e, b * x + d * y + f}; }
    ge::Point2d map(const ge::Point2d& p) const { return map(p.x, p.y); }
    // This map applied after `inner`.
    Affine2d operator*(const Affine2d& inner) const {
        return {a * inner.a + c * inner.b,     b * inner.a + d * inner.b,
                a * inner.c + c * inner.d,     b * inner.c + d * inner.d,
                a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    double determinant() const { return a * d - b * c; }
    bool isInvertible() const { return std::abs(determinant()) > 1e-300; }
    Affine2d inverse() const {
        const double det = determinant();
        const double ia = d / det, ib = -b / det, ic = -c / det, id = a / det;
        return {ia, ib, ic, id, -(ia * e + ic * f), -(ib * e + id * f)};
    }
    // The largest stretch the map gives any length: a curve flattened within t / maxScale()
    // in its own coordinates is within t after the map.
    double maxScale() const {
        const double p = a * a + b * b, q = c * c + d * d, r = a * c + b * d;
        const double mean = (p + q) / 2, diff = std::sqrt((p - q) * (p - q) / 4 + r * r);
        return std::sqrt(mean + diff);
    }
};

}  // namespace cad::gs
