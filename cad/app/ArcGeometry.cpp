// Circles through points and tangent arc segments.
#include "cad/app/ArcGeometry.h"

#include <cmath>
#include <numbers>

namespace cad::app {

namespace {

// Relative to the drawing's size, so collinearity does not depend on its units.
bool negligible(double value, double scale) {
    return std::abs(value) <= 1e-12 * scale;
}

}  // namespace

std::optional<CircleThrough> circleThrough(const ge::Point3d& a, const ge::Point3d& b,
                                           const ge::Point3d& c) {
    // Centre relative to `a`, from the perpendicular bisectors of a-b and a-c.
    const double bx = b.x - a.x, by = b.y - a.y;
    const double cx = c.x - a.x, cy = c.y - a.y;
    const double cross = bx * cy - by * cx;
    const double scale = (bx * bx + by * by) + (cx * cx + cy * cy);
    if (scale == 0.0 || negligible(cross, scale)) return std::nullopt;
    const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const double ux = (cy * b2 - by * c2) / (2.0 * cross);
    const double uy = (bx * c2 - cx * b2) / (2.0 * cross);
    CircleThrough circle;
    circle.center = ge::Point3d(a.x + ux, a.y + uy, a.z);
    circle.radius = std::hypot(ux, uy);
    circle.counterClockwise = cross > 0.0;
    return circle;
}

std::optional<double> tangentBulge(const ge::Point3d& start, double tangentAngle,
                                   const ge::Point3d& end) {
    const double dx = end.x - start.x, dy = end.y - start.y;
    const double chord = std::hypot(dx, dy);
    if (chord == 0.0) return std::nullopt;
    // The arc turns by twice the angle between its tangent and its chord, so its bulge (the
    // tangent of a quarter of the turn) is the tangent of half that angle.
    double turn = std::atan2(dy, dx) - tangentAngle;
    turn = std::remainder(turn, 2.0 * std::numbers::pi);  // into [-pi, pi]
    if (std::abs(std::abs(turn) - std::numbers::pi) < 1e-9) return std::nullopt;
    return std::tan(turn / 2.0);
}

double segmentEndDirection(const ge::Point3d& start, const ge::Point3d& end, double bulge) {
    // An arc arrives turned from its chord by as much as it left turned to it.
    return std::atan2(end.y - start.y, end.x - start.x) + 2.0 * std::atan(bulge);
}

}  // namespace cad::app
