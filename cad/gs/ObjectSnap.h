// Object snaps: the point of interest of the geometry under the cursor that a click takes
// instead of the raw cursor position (an end, a middle, a centre, a quadrant, a node, an
// insertion point, an intersection or the nearest point on a curve), by the running-snap bits
// of OSMODE. The point comes from the entity's own geometry where it is a known type, so it
// is exact, and from the drawn geometry for intersections and nearest points.
#pragma once

#include <optional>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point2d.h"

namespace cad::gs {

class DrawingScene;

// The OSMODE bits.
enum SnapMode : int {
    kSnapEndpoint = 1,
    kSnapMidpoint = 2,
    kSnapCenter = 4,
    kSnapNode = 8,
    kSnapQuadrant = 16,
    kSnapIntersection = 32,
    kSnapInsertion = 64,
    kSnapNearest = 512,
    kSnapOff = 16384,  // the running snaps are switched off (F3) but remembered
};

struct SnapPoint {
    ge::Point2d point;
    SnapMode mode = kSnapEndpoint;
    db::ObjectId entity;
};

// The snap point within `aperture` drawing units of `cursor` in the given space, the nearest
// of those `modes` allow; the nearest point on a curve only when nothing else is there.
std::optional<SnapPoint> findSnap(DrawingScene& scene, db::ObjectId block, const ge::Point2d& cursor,
                                  double aperture, int modes);

}  // namespace cad::gs
