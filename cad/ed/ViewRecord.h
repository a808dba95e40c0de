// A view to make current: what a saved view holds (centre and size on the view plane,
// direction, target, lens, twist and clipping), as setCurrentView takes it.
#pragma once

#include "cad/ge/Point2d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::ed {

struct ViewRecord {
    ge::Point2d centerPoint{210.0, 148.5};
    double height = 297.0;
    double width = 420.0;
    ge::Point3d target;
    ge::Vector3d viewDirection{0.0, 0.0, 1.0};
    double lensLength = 50.0;
    double viewTwist = 0.0;  // radians
    double frontClipDistance = 0.0;
    double backClipDistance = 0.0;
    bool perspectiveEnabled = false;
    bool frontClipEnabled = false;
    bool backClipEnabled = false;
    bool frontClipAtEye = true;

    // The VIEWMODE bits: 1 perspective, 2 front clipping, 4 back clipping, 16 front clipping
    // not at the eye.
    int viewMode() const {
        return (perspectiveEnabled ? 1 : 0) | (frontClipEnabled ? 2 : 0) |
               (backClipEnabled ? 4 : 0) | (frontClipAtEye ? 0 : 16);
    }
    void setViewMode(int mode) {
        perspectiveEnabled = (mode & 1) != 0;
        frontClipEnabled = (mode & 2) != 0;
        backClipEnabled = (mode & 4) != 0;
        frontClipAtEye = (mode & 16) == 0;
    }
};

}  // namespace cad::ed
