// Plane geometry the drawing commands build arcs and circles from: the circle through three
// points, and a polyline arc segment that continues the direction of the segment before it.
// Everything is in the XY plane; Z is left to the caller.
#pragma once

#include <optional>

#include "cad/ge/Point3d.h"

namespace cad::app {

struct CircleThrough {
    ge::Point3d center;
    double radius = 0.0;
    // True when the points run counter-clockwise: an arc from the first to the last point
    // through the middle one then runs counter-clockwise too.
    bool counterClockwise = true;
};

// nullopt when the points are collinear (or two coincide): no circle passes through them.
std::optional<CircleThrough> circleThrough(const ge::Point3d& a, const ge::Point3d& b,
                                           const ge::Point3d& c);

// The bulge of the arc that leaves `start` along the direction `tangentAngle` (radians) and
// ends at `end`: 0 when the end lies straight ahead, nullopt when it lies straight behind (no
// arc leaves forward and comes back to a point on its own tangent) or on the start.
std::optional<double> tangentBulge(const ge::Point3d& start, double tangentAngle,
                                   const ge::Point3d& end);

// The direction (radians) in which a segment from `start` to `end` with `bulge` arrives.
double segmentEndDirection(const ge::Point3d& start, const ge::Point3d& end, double bulge);

}  // namespace cad::app
