// The dashes of a hatch pattern inside its boundary: every pattern line repeated by its offset
// across the loops, cut where it crosses them (odd parity) and broken into its dashes.
#pragma once

#include <cstddef>
#include <vector>

#include "cad/gs/geometry/CurveFlattening.h"
#include "cad/gs/geometry/HatchDefinition.h"

namespace cad::gs {

// Segments in the loops' coordinates. Empty when the pattern would need more than
// `maxSegments` lines or dashes (known before they are made), and when a line's offset puts
// no distance between its repetitions. A dot (dash 0) is a dash `dotLength` long.
std::vector<Segment2d> patternSegments(const std::vector<HatchDefinition::PatternLine>& lines,
                                       const std::vector<const Polyline2d*>& loops,
                                       double dotLength, std::size_t maxSegments);

}  // namespace cad::gs
