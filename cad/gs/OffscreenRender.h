// Drawing a drawing without a window: model space, a layout or one block definition, fitted
// to its extents or to a window, onto a PNG, SVG or PDF file. What `cadtool render` does, and
// how previews and icons of blocks are made.
#pragma once

#include <optional>
#include <string>

#include "cad/db/ObjectId.h"
#include "cad/gs/Box2d.h"

class QPaintDevice;

namespace cad::db {
class Database;
}

namespace cad::gs {

class DrawingScene;

struct RenderRequest {
    int width = 1920;   // device pixels (points for PDF)
    int height = 1080;
    std::optional<Box2d> window;  // drawing units; the extents when not given
    std::string layout;           // a layout's name ("Model" or empty: model space)
    std::string block;            // a block definition's name, drawn on its own
    bool whiteBackground = false;
};

// The block table record a request draws; an explanation in `error` when it names nothing.
db::ObjectId blockToRender(db::Database& database, const RenderRequest& request, std::string& error);

// Draws `block` onto the device, which is request.width by request.height. Answers the box
// of drawing units the picture shows (the window or the extents, widened to the picture's
// shape).
Box2d renderBlock(DrawingScene& scene, db::ObjectId block, const RenderRequest& request,
                  QPaintDevice& device);

// Writes the picture to `path`, its format by the extension (.png, .svg, .pdf). Answers the
// empty string, or why it failed; `shown` receives what renderBlock answers.
std::string renderToFile(db::Database& database, const RenderRequest& request, const std::string& path,
                         Box2d* shown = nullptr);

}  // namespace cad::gs
