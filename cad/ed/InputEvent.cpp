// Input events built the way the view would deliver them.
#include "cad/ed/InputEvent.h"

#include <cmath>

namespace cad::ed {

InputEvent InputEvent::pointer(Kind kind, const ge::Point3d& point, bool shift, bool ctrl) {
    InputEvent event;
    event.kind = kind;
    event.message.message = kind == Kind::Pick ? WM_LBUTTONDOWN : WM_MOUSEMOVE;
    // Without a view the drawing units stand in for pixels, so filters still see a position.
    event.message.x = static_cast<int>(std::lround(point.x));
    event.message.y = static_cast<int>(std::lround(point.y));
    event.message.point = point;
    event.message.shift = shift;
    event.message.ctrl = ctrl;
    return event;
}

InputEvent InputEvent::key(unsigned keyCode, bool shift, bool ctrl) {
    InputEvent event;
    event.kind = Kind::Key;
    event.message.message = WM_KEYDOWN;
    event.message.keyCode = keyCode;
    event.message.shift = shift || keyCode == VK_SHIFT;
    event.message.ctrl = ctrl || keyCode == VK_CONTROL;
    return event;
}

}  // namespace cad::ed
