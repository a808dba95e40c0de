// What the drawing view paints for a hatch: the boundary loops that take part by its island
// style, and for a pattern the dashes already clipped to them, in world x/y.
#pragma once

#include <cstddef>
#include <vector>

#include "cad/db/Hatch.h"
#include "cad/gs/geometry/CurveFlattening.h"

namespace cad::gs {

struct HatchGeometry {
    bool solid = false;               // fill `loops` (odd-even)
    std::vector<Polyline2d> loops;    // boundary loops, world x/y, closed implicitly
    std::vector<Segment2d> segments;  // pattern dashes, world x/y, already clipped
};

// Curves are flattened within `tolerance`. A pattern that would need more than `maxSegments`
// lines or dashes gives no segments (the caller draws the boundary instead), and so does one
// that cannot be read, has no lines, or whose scale or offsets are degenerate.
HatchGeometry hatchGeometry(const db::Hatch& hatch, double tolerance, std::size_t maxSegments);

}  // namespace cad::gs
