// Which entities of a space the cursor points at, and which a selection window takes: by
// their drawn geometry (a circle is hit on its rim, not anywhere in its square), with the
// spatial index visiting only what is near. Entities on layers that are off or frozen
// cannot be picked, as they cannot be seen.
#pragma once

#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/Box2d.h"
#include "cad/ge/Point2d.h"

namespace cad::gs {

class DrawingScene;
class DisplayList;
struct DisplayItem;

class EntityPicker {
public:
    EntityPicker(DrawingScene& scene, db::ObjectId block);

    // Entities whose geometry passes within `radius` drawing units of `point`, the nearest
    // first (of equal ones, the one drawn last, which is the one seen).
    std::vector<db::ObjectId> entitiesAt(const ge::Point2d& point, double radius) const;
    // A window takes what lies wholly inside the box; a crossing window also what crosses it.
    std::vector<db::ObjectId> entitiesIn(const Box2d& box, bool crossing) const;

private:
    bool pickable(const DisplayList& list, const DisplayItem& item) const;

    DrawingScene& scene_;
    db::ObjectId block_;
};

}  // namespace cad::gs
