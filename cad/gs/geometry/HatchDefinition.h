// What a hatch's kept definition tags say, read for drawing: the boundary paths flattened to
// loops in the hatch's object coordinates, the island style and the pattern lines. Damaged
// tags end the reading of the boundary where they stand; what was read before is kept.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/db/RawTag.h"
#include "cad/gs/geometry/CurveFlattening.h"

namespace cad::gs {

struct HatchDefinition {
    // Path flags (92).
    static constexpr std::int32_t kExternalPath = 1;
    static constexpr std::int32_t kPolylinePath = 2;
    static constexpr std::int32_t kTextBoxPath = 8;
    static constexpr std::int32_t kOutermostPath = 16;

    // Island styles (75).
    static constexpr int kNormalStyle = 0;     // odd parity over every loop
    static constexpr int kOutermostStyle = 1;  // outer loops and the first level of islands
    static constexpr int kIgnoreStyle = 2;     // outer loops only

    struct Loop {
        std::int32_t flags = 0;
        Polyline2d points;  // closed implicitly: the first point is not repeated
    };

    // One family of parallel lines, as the hatch stores it: already turned by the hatch's
    // angle and scaled by its scale. Line k runs through base + k * offset.
    struct PatternLine {
        double angle = 0.0;  // degrees
        ge::Point2d base;
        ge::Point2d offset;
        std::vector<double> dashes;  // dash > 0, gap < 0, dot 0; none: a continuous line
    };

    std::vector<Loop> loops;
    int style = kNormalStyle;
    double patternScale = 1.0;
    std::vector<PatternLine> patternLines;
    // False when the pattern part could not be read whole (its lines are then left empty).
    bool patternReadable = true;

    // Curves of the boundary are flattened within `tolerance`.
    static HatchDefinition read(const std::vector<db::RawTag>& tags, double tolerance);
};

}  // namespace cad::gs
