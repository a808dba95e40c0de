// The maths of a plan view, with no widget: which part of the drawing a device of a given
// size shows (a centre and a height in drawing units, as VIEWCTR and VIEWSIZE keep them),
// and the maps between drawing and device coordinates (device y grows downward).
#pragma once

#include "cad/gs/Affine2d.h"
#include "cad/gs/Box2d.h"

namespace cad::gs {

class ViewTransform {
public:
    ViewTransform() = default;
    ViewTransform(const ge::Point2d& centre, double height, double deviceWidth, double deviceHeight);

    const ge::Point2d& centre() const { return centre_; }
    double height() const { return height_; }  // drawing units shown top to bottom
    double width() const { return height_ * deviceWidth_ / deviceHeight_; }
    double deviceWidth() const { return deviceWidth_; }
    double deviceHeight() const { return deviceHeight_; }
    double pixelsPerUnit() const { return deviceHeight_ / height_; }

    Affine2d worldToDevice() const;
    ge::Point2d toDevice(const ge::Point2d& world) const { return worldToDevice().map(world); }
    ge::Point2d toWorld(double deviceX, double deviceY) const;
    // The drawing-unit box the device shows.
    Box2d visibleBox() const;

    // The device keeps its centre and scale when resized, as a window does.
    void setDeviceSize(double width, double height);
    void setCentre(const ge::Point2d& centre) { centre_ = centre; }
    void setHeight(double height);
    // The box fills the device with a margin (a fraction of each side); an empty or
    // degenerate box keeps the view.
    void fit(const Box2d& box, double margin = 0.02);
    // Scales by `factor` (>1 zooms in) keeping the drawing point under the device point still.
    void zoomAbout(double deviceX, double deviceY, double factor);
    // Moves the drawing with the device point (dx, dy pixels).
    void panBy(double dx, double dy);

private:
    ge::Point2d centre_{210.0, 148.5};
    double height_ = 297.0;
    double deviceWidth_ = 420.0;
    double deviceHeight_ = 297.0;
};

}  // namespace cad::gs
