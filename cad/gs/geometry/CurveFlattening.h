// Curves turned into points for drawing: polyline arcs given by their bulge, splines (control
// points or fit points) and elliptical arcs, each within a chord error the caller chooses.
#pragma once

#include <vector>

#include "cad/db/Spline.h"
#include "cad/ge/Point2d.h"
#include "cad/ge/Point3d.h"

namespace cad::gs {

using Polyline2d = std::vector<ge::Point2d>;

struct Segment2d {
    ge::Point2d start, end;
};

// Points along the arc from `from` to `to` whose bulge is tan(included angle / 4), positive
// counter-clockwise; both ends included; chord error <= tolerance. A bulge too small to leave
// the chord by the tolerance, or input that is not finite, gives the straight segment.
std::vector<ge::Point2d> flattenBulge(const ge::Point2d& from, const ge::Point2d& to, double bulge,
                                      double tolerance);

// A spline (degree, knots, weights, control points, fit points, end tangents,
// closed/periodic) as points in world coordinates within `tolerance`. Data that describes no
// curve is drawn as its control polygon, or its fit points, joined by straight lines.
std::vector<ge::Point3d> flattenSpline(const db::Spline& spline, double tolerance);

// The elliptical arc centre + cos(t) major + sin(t) ratio * perp(major) for t from `start` to
// `end` (radians; end < start runs clockwise), both ends included.
std::vector<ge::Point2d> flattenEllipticalArc(const ge::Point2d& center, const ge::Point2d& major,
                                              double ratio, double start, double end,
                                              double tolerance);

}  // namespace cad::gs
