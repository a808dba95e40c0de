// One drawing as a view shows it, with no widget: the space on show (model space or a
// layout's paper), the view transform with its history for ZOOM Previous, and the kept
// picture. The widget forwards its events here and paints what this answers.
#pragma once

#include <QImage>
#include <string>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/ViewImage.h"
#include "cad/gs/ViewTransform.h"

namespace cad::db {
class Database;
}

namespace cad::gs {

class DrawingView {
public:
    static constexpr const char* kModel = "Model";

    explicit DrawingView(db::Database& database);

    DrawingScene& scene() { return scene_; }
    db::Database& database() const { return scene_.database(); }

    // "Model", then the layouts in their tab order.
    std::vector<std::string> layoutNames() const;
    const std::string& layout() const { return layout_; }
    db::ObjectId block() const { return image_.block(); }
    // Shows model space or the named layout at its extents; false for an unknown name.
    bool showLayout(const std::string& name);

    // The device was resized; the first size shown opens the view at the drawing's saved view,
    // or at its extents.
    void setDeviceSize(int width, int height);
    bool isSized() const { return sized_; }
    const ViewTransform& transform() const { return view_; }
    // A view put in place by a command (a saved view, ZOOM with a scale): kept for Previous.
    void setTransform(const ViewTransform& view);

    // The bounds of everything in the space, in drawing units.
    Box2d extents();
    void zoomExtents();
    void zoomWindow(const Box2d& window);
    // Back to the view before the last zoom or pan; false when there is none.
    bool zoomPrevious();
    // Wheel steps zoom about the point under the cursor.
    void zoomAbout(double deviceX, double deviceY, double factor);
    // A pan moves by whole pixels, so the kept picture moves with it instead of being redrawn.
    void panBy(int dx, int dy);
    // Starts a pan gesture: the whole gesture is one step of the history.
    void beginPan();
    // The drawing moves by (dx, dy) drawing units, as PAN asks.
    void panDrawing(double dx, double dy);

    // The drawing changed: its geometry is built again and the picture redrawn when next shown.
    void drawingChanged();
    // A REDRAW: the picture is painted again from the geometry that is kept.
    void redraw() { image_.invalidate(); }

    const QImage& image() { return image_.imageFor(view_); }
    ViewImage::Frame lastFrame() const { return image_.lastFrame(); }
    void setBackground(const QColor& colour) { image_.setBackground(colour); }

    ge::Point2d toWorld(double deviceX, double deviceY) const { return view_.toWorld(deviceX, deviceY); }

private:
    void remember();
    bool showSavedView();

    DrawingScene scene_;
    ViewImage image_;
    ViewTransform view_;
    std::string layout_ = kModel;
    std::vector<ViewTransform> previous_;
    bool sized_ = false;
};

}  // namespace cad::gs
