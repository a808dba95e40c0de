// The editing commands, in the host's group: ERASE, MOVE, COPY (to as many places as given)
// and ROTATE (optionally a rotated copy). Each takes the pick-first set when the command
// starts with one, else asks "Select objects: ".
#pragma once

#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"

namespace cad::app {

class Application;
class DrawingContext;

class EditCommands {
public:
    explicit EditCommands(Application& application) : app_(application) {}
    void registerCommands();

private:
    void erase();
    void move();
    void copy();
    void rotate();

    // The pick-first set, or what the user selects; empty when nothing was or on Esc.
    std::vector<db::ObjectId> selection() const;
    // RTNORM with the displacement from a base and a second point (or from one point taken as
    // the displacement itself); `base` is where the rubber line of a next point starts.
    // The selection `ids` follows the cursor while the second point is asked for.
    int askDisplacement(const std::vector<db::ObjectId>& ids, ge::Vector3d& displacement, ge::Point3d& base) const;
    // Moves the entities, or adds moved copies of them (their ids into `copies`); prints how
    // many could not take the transform.
    void transform(DrawingContext& context, const std::vector<db::ObjectId>& ids,
                   const ge::Matrix3d& xform, std::vector<db::ObjectId>* copies) const;

    Application& app_;
};

}  // namespace cad::app
