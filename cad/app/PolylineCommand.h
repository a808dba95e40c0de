// One run of PLINE: straight segments and arcs that continue the direction of the segment
// before them, widths, Undo and Close, all made into one lightweight polyline. The polyline
// is in the drawing from its first segment on, so the view shows it while it grows; Enter or
// Esc end the command and leave it as drawn.
#pragma once

#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::app {

class DrawingContext;

class PolylineCommand {
public:
    // `width` is the session's current width: offered as the default, and kept when changed.
    PolylineCommand(DrawingContext& context, double& width) : context_(context), width_(width) {}
    void run();

private:
    struct Vertex {
        ge::Point3d point;
        // Of the segment that starts here.
        double bulge = 0.0;
        double startWidth = 0.0;
        double endWidth = 0.0;
    };

    // The next segment's end (or an option) in line or arc mode; false when the command ends.
    bool step();
    void addSegment(const ge::Point3d& end, double bulge);
    void undo();
    // False when the closing arc cannot be drawn (its end lies behind the last direction).
    bool close();
    bool askWidths();
    // The direction in which the polyline arrives at its last vertex; along the X axis before
    // the first segment.
    double direction() const;
    // Makes the drawing's polyline what the vertices say: added with the first segment,
    // erased when Undo takes the last one away.
    void update(bool closed = false);

    DrawingContext& context_;
    double& width_;
    std::vector<Vertex> vertices_;
    db::ObjectId id_;
    bool arcMode_ = false;
    double startWidth_ = 0.0;
    double endWidth_ = 0.0;
};

}  // namespace cad::app
