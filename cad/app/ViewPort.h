// What a drawing view does for the viewing commands (ZOOM, PAN, REGEN, REDRAW). The GUI's
// view implements it; headless there is none and the commands only take their input.
#pragma once

#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::app {

class ViewPort {
public:
    virtual ~ViewPort() = default;
    virtual void zoomExtents() = 0;
    // The window between two opposite corners fills the view.
    virtual void zoomWindow(const ge::Point3d& corner1, const ge::Point3d& corner2) = 0;
    // False when there is no view to go back to.
    virtual bool zoomPrevious() = 0;
    // Greater than 1 zooms in, about the view's centre.
    virtual void zoomScale(double factor) = 0;
    // The drawing moves by `displacement`, in drawing units.
    virtual void pan(const ge::Vector3d& displacement) = 0;
    // The drawing's geometry is made again from the database.
    virtual void regen() = 0;
    // The picture is painted again.
    virtual void redraw() = 0;
};

}  // namespace cad::app
