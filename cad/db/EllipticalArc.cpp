// EllipticalArc: principal axes of an affine image and exact axis-aligned bounds.
#include "cad/db/EllipticalArc.h"

#include <cmath>
#include <utility>

#include "cad/db/DxfAngle.h"
#include "cad/db/Entity.h"

namespace cad::db {

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kFullSweepTolerance = 1e-12;
}  // namespace

bool EllipticalArc::isFull() const {
    return end - start >= kTwoPi - kFullSweepTolerance;
}

ge::Point3d EllipticalArc::pointAt(double t) const {
    return center + u * std::cos(t) + v * std::sin(t);
}

void EllipticalArc::transformBy(const ge::Matrix3d& m) {
    center = m * center;
    u = m * u;
    v = m * v;
}

void EllipticalArc::makePrincipal() {
    // With s = t - t0 the curve is center + a cos s + b sin s; t0 makes a and b perpendicular.
    const double t0 = 0.5 * std::atan2(2.0 * u.dotProduct(v), u.lengthSqrd() - v.lengthSqrd());
    ge::Vector3d a = u * std::cos(t0) + v * std::sin(t0);
    ge::Vector3d b = v * std::cos(t0) - u * std::sin(t0);
    double shift = t0;
    if (b.lengthSqrd() > a.lengthSqrd()) {
        a = std::exchange(b, -a);
        shift += std::numbers::pi / 2.0;
    }
    u = a;
    v = b;
    const double sweep = end - start;
    start = normalizedAngle(start - shift);
    end = start + sweep;
}

void EllipticalArc::reverseParameter() {
    v = -v;
    const double sweep = end - start;
    start = normalizedAngle(-end);
    end = start + sweep;
}

void EllipticalArc::addToExtents(Extents3d& extents) const {
    const bool full = isFull();
    const double sweep = end - start;
    auto inside = [&](double t) {
        return full || normalizedAngle(t - start) <= sweep + kFullSweepTolerance;
    };
    if (!full) {
        extents.addPoint(pointAt(start));
        extents.addPoint(pointAt(end));
    }
    const double uc[3] = {u.x, u.y, u.z};
    const double vc[3] = {v.x, v.y, v.z};
    for (int axis = 0; axis < 3; ++axis) {
        // d/dt (u cos t + v sin t) = 0 along this axis.
        const double t = std::atan2(vc[axis], uc[axis]);
        if (inside(t)) extents.addPoint(pointAt(t));
        if (inside(t + std::numbers::pi)) extents.addPoint(pointAt(t + std::numbers::pi));
    }
}

}  // namespace cad::db
