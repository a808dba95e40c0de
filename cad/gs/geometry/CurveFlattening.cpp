// Curve flattening: exact arcs for bulges and ellipses with a step from the chord error, and
// splines through NurbsCurve with the polyline fall-backs for data that describes no curve.
#include "cad/gs/geometry/CurveFlattening.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "cad/gs/geometry/NurbsCurve.h"

namespace cad::gs {

namespace {

// Bounds on the points of one curve, whatever tolerance a caller passes: a finer tolerance
// than the curve's size can show must not cost unbounded time or memory.
constexpr std::size_t kMaxArcPoints = 8192;
constexpr std::size_t kMaxSplinePoints = 16384;

bool finite(const ge::Point2d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}
bool finite(const ge::Point3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// How many equal steps an arc of `sweep` radians on a circle of `radius` needs so that no
// chord leaves the arc by more than `tolerance`.
std::size_t arcSteps(double radius, double sweep, double tolerance) {
    sweep = std::abs(sweep);
    if (!(tolerance > 0.0) || !std::isfinite(tolerance)) tolerance = radius * 1e-4;
    double step =
        tolerance >= radius ? std::numbers::pi / 2.0 : 2.0 * std::acos(1.0 - tolerance / radius);
    step = std::min(step, std::numbers::pi / 2.0);
    if (!(step > 0.0)) return kMaxArcPoints - 1;
    const double steps = std::ceil(sweep / step);
    if (!(steps >= 1.0)) return 1;
    return static_cast<std::size_t>(std::min(steps, double(kMaxArcPoints - 1)));
}

// Every `stride`-th point, with the last kept, so a polyline stays within `limit` points.
template <typename Point>
std::vector<Point> finitePolyline(const std::vector<Point>& points, std::size_t limit) {
    std::vector<Point> kept;
    for (const Point& p : points)
        if (finite(p)) kept.push_back(p);
    if (kept.size() <= limit) return kept;
    std::vector<Point> thinned;
    const std::size_t stride = (kept.size() + limit - 2) / (limit - 1);
    for (std::size_t i = 0; i < kept.size(); i += stride) thinned.push_back(kept[i]);
    if (thinned.back().x != kept.back().x || thinned.back().y != kept.back().y)
        thinned.push_back(kept.back());
    return thinned;
}

}  // namespace

std::vector<ge::Point2d> flattenBulge(const ge::Point2d& from, const ge::Point2d& to, double bulge,
                                      double tolerance) {
    const double chord = from.distanceTo(to);
    // The sagitta is the straight segment's distance from the arc.
    const double sagitta = std::abs(bulge) * chord / 2.0;
    if (!finite(from) || !finite(to) || !std::isfinite(bulge) || !(chord > 0.0) ||
        !std::isfinite(sagitta) || sagitta <= tolerance || std::abs(bulge) < 1e-12)
        return {from, to};

    // Written without squaring the bulge, so one near a full circle does not overflow.
    const double b = std::abs(bulge);
    const double radius = chord / 4.0 * (1.0 / b + b);
    const double toCenter = chord / 4.0 * (1.0 / bulge - bulge);  // signed, to the left
    const double dx = (to.x - from.x) / chord, dy = (to.y - from.y) / chord;
    const ge::Point2d center{(from.x + to.x) / 2.0 - dy * toCenter,
                             (from.y + to.y) / 2.0 + dx * toCenter};
    if (!finite(center) || !std::isfinite(radius)) return {from, to};

    const double sweep = 4.0 * std::atan(bulge);
    const double start = std::atan2(from.y - center.y, from.x - center.x);
    const std::size_t steps = arcSteps(radius, sweep, tolerance);
    std::vector<ge::Point2d> points;
    points.reserve(steps + 1);
    points.push_back(from);
    for (std::size_t i = 1; i < steps; ++i) {
        const double a = start + sweep * double(i) / double(steps);
        points.push_back({center.x + radius * std::cos(a), center.y + radius * std::sin(a)});
    }
    points.push_back(to);
    return points;
}

std::vector<ge::Point2d> flattenEllipticalArc(const ge::Point2d& center, const ge::Point2d& major,
                                              double ratio, double start, double end,
                                              double tolerance) {
    const ge::Point2d minor{-major.y * ratio, major.x * ratio};
    auto at = [&](double t) {
        return ge::Point2d{center.x + major.x * std::cos(t) + minor.x * std::sin(t),
                           center.y + major.y * std::cos(t) + minor.y * std::sin(t)};
    };
    const double radius = std::max(std::hypot(major.x, major.y), std::hypot(minor.x, minor.y));
    if (!finite(center) || !std::isfinite(radius) || !std::isfinite(start) || !std::isfinite(end) ||
        !(radius > 0.0))
        return {};
    const double sweep = end - start;
    // The step for the circle of the major radius is safe for the whole ellipse.
    const std::size_t steps = arcSteps(radius, sweep, tolerance);
    std::vector<ge::Point2d> points;
    points.reserve(steps + 1);
    for (std::size_t i = 0; i <= steps; ++i)
        points.push_back(at(start + sweep * double(i) / double(steps)));
    return points;
}

std::vector<ge::Point3d> flattenSpline(const db::Spline& spline, double tolerance) {
    const std::vector<ge::Point3d>& controls = spline.controlPoints();
    const std::vector<ge::Point3d>& fits = spline.fitPoints();
    if (!(tolerance > 0.0) || !std::isfinite(tolerance)) {
        double size = 0.0;
        for (const auto* list : {&controls, &fits})
            for (const ge::Point3d& p : *list)
                if (finite(p)) size = std::max({size, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
        tolerance = size > 0.0 ? size * 1e-4 : 1e-6;
    }
    if (!controls.empty()) {
        const bool periodic = spline.isPeriodic() || spline.isClosed();
        if (auto curve = NurbsCurve::fromControlPoints(spline.degree(), controls, spline.knots(),
                                                       spline.weights(), periodic))
            return curve->flatten(tolerance, kMaxSplinePoints);
    }
    if (fits.size() >= 2) {
        if (auto curve = NurbsCurve::throughFitPoints(fits, spline.startFitTangent(),
                                                      spline.endFitTangent(), spline.isClosed()))
            return curve->flatten(tolerance, kMaxSplinePoints);
        return finitePolyline(fits, kMaxSplinePoints);
    }
    return finitePolyline(controls.empty() ? fits : controls, kMaxSplinePoints);
}

}  // namespace cad::gs
