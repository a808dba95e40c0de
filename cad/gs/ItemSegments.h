// Every drawn item as straight segments in the coordinates of the list that holds it (or
// further out, through a transform), references followed into their blocks: what picking,
// window selection and object snaps measure against. Curves are cut finely enough for the
// tolerance asked, so what is measured is what is seen.
#pragma once

#include <functional>

#include "cad/gs/Affine2d.h"
#include "cad/ge/Point2d.h"

namespace cad::gs {

class DisplayList;
class DrawingScene;
struct DisplayItem;

struct Segment {
    ge::Point2d a, b;
};

// Calls `out` with each segment of `item`, mapped by `toTarget`; curves are cut so their
// error stays under `tolerance` target units. A POINT is a segment of no length; a filled
// area or a text is its outline. Answers false when `out` asked to stop (by answering false).
bool forEachSegment(DrawingScene& scene, const DisplayList& list, const DisplayItem& item,
                    const Affine2d& toTarget, double tolerance,
                    const std::function<bool(const Segment&)>& out, int depth = 0);

// The distance from `p` to the segment.
double distanceTo(const Segment& s, const ge::Point2d& p);
// The point of the segment nearest to `p`.
ge::Point2d nearestOn(const Segment& s, const ge::Point2d& p);

}  // namespace cad::gs
