// The drawing commands, in the host's group: LINE, CIRCLE (centre and radius or diameter, 2P,
// 3P), ARC (three points, or centre, start and end or included angle), PLINE, RECTANG and
// TEXT. Every answer may be picked in the view or typed; new entities go into model space on
// the current layer, and each is closed before the next request so the view can draw it.
#pragma once

#include <optional>

#include "cad/ge/Point3d.h"

namespace cad::app {

class Application;
class DrawingContext;

class DrawingCommands {
public:
    explicit DrawingCommands(Application& application) : app_(application) {}
    void registerCommands();

private:
    void line();
    void circle();
    void arc();
    void polyline();
    void rectangle();
    void text();

    void circleByThreePoints(DrawingContext& context);
    void circleByDiameterEnds(DrawingContext& context);
    // The end of an arc whose centre and start are known: a point, or an included angle.
    void arcFromCenter(DrawingContext& context, const ge::Point3d& center,
                       const ge::Point3d& start);

    Application& app_;
    // What the prompts offer as defaults: the last answers of this session.
    std::optional<double> circleRadius_;
    double textHeight_ = 2.5;
    double textRotation_ = 0.0;
    double polylineWidth_ = 0.0;
};

}  // namespace cad::app
