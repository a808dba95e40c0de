// What a view knows of the drawing under the cursor: the entities a pick at a point takes
// (by the geometry as drawn, within the view's pick box) and those a window takes. The editor
// asks it when there is one; without a view it goes by the entities' extents.
#pragma once

#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::ed {

class HitTester {
public:
    virtual ~HitTester() = default;
    // Nearest first.
    virtual std::vector<db::ObjectId> entitiesAt(const ge::Point3d& point) = 0;
    // A window takes what lies wholly inside; a crossing window also what crosses it.
    virtual std::vector<db::ObjectId> entitiesIn(const ge::Point3d& corner1, const ge::Point3d& corner2,
                                                 bool crossing) = 0;
};

}  // namespace cad::ed
