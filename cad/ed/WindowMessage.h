// A window event of the drawing view as the host hands it to message filters: the message type
// and key code with their Win32 values, the position in the view, the modifier keys, and the
// drawing point under the cursor.
#pragma once

#include "cad/ge/Point3d.h"

namespace cad::ed {

inline constexpr unsigned WM_KEYDOWN = 0x0100;
inline constexpr unsigned WM_KEYUP = 0x0101;
inline constexpr unsigned WM_MOUSEMOVE = 0x0200;
inline constexpr unsigned WM_LBUTTONDOWN = 0x0201;
inline constexpr unsigned WM_LBUTTONUP = 0x0202;
inline constexpr unsigned WM_RBUTTONDOWN = 0x0204;
inline constexpr unsigned WM_RBUTTONUP = 0x0205;

inline constexpr unsigned VK_RETURN = 0x0D;
inline constexpr unsigned VK_SHIFT = 0x10;
inline constexpr unsigned VK_CONTROL = 0x11;
inline constexpr unsigned VK_ESCAPE = 0x1B;

struct WindowMessage {
    unsigned message = WM_MOUSEMOVE;
    unsigned keyCode = 0;  // WM_KEYDOWN / WM_KEYUP: the virtual key
    int x = 0;             // position in the view's client area, in pixels
    int y = 0;
    bool shift = false;
    bool ctrl = false;
    ge::Point3d point;  // the drawing point at (x, y)

    bool isMouse() const { return message >= WM_MOUSEMOVE && message <= WM_RBUTTONUP; }
    // The position packed as a mouse message's lParam carries it: x low word, y high word.
    unsigned long lParam() const {
        return (static_cast<unsigned long>(static_cast<unsigned short>(y)) << 16) |
               static_cast<unsigned short>(x);
    }
    void setLParam(unsigned long value) {
        x = static_cast<short>(value & 0xFFFF);
        y = static_cast<short>((value >> 16) & 0xFFFF);
    }
};

// A message filter: called for every window event of the view while registered; it may change
// the event, and answers true to swallow it.
using FilterWinMsgFn = bool (*)(WindowMessage* message);

}  // namespace cad::ed
