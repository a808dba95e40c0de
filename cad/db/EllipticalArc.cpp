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

EllipticalArc EllipticalArc::fromBulge(const ge::Point3d& p, const ge::Point3d& q, double bulge) {
    // The centre lies on the chord's perpendicular bisector, (1 - b^2) / 4b chord lengths to
    // the left of p -> q.
    const ge::Vector3d chord(q.x - p.x, q.y - p.y, 0.0);
    const ge::Vector3d left(-chord.y, chord.x, 0.0);
    EllipticalArc arc;
    arc.center = ge::Point3d((p.x + q.x) / 2.0, (p.y + q.y) / 2.0, p.z) +
                 left * ((1.0 - bulge * bulge) / (4.0 * bulge));
    const double radius = std::hypot(p.x - arc.center.x, p.y - arc.center.y);
    arc.u = ge::Vector3d(radius, 0.0, 0.0);
    arc.v = ge::Vector3d(0.0, radius, 0.0);
    const ge::Point3d& from = bulge > 0.0 ? p : q;
    arc.start = normalizedAngle(std::atan2(from.y - arc.center.y, from.x - arc.center.x));
    arc.end = arc.start + 4.0 * std::atan(std::abs(bulge));
    return arc;
}

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
