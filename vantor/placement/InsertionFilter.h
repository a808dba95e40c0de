// The window-message filter of the insertion drag: it keeps the dragged image in step with the
// mouse when a part is dropped from the library window, and makes the view sample again on
// Shift and while the window nudges it. The editor calls filters as plain functions, so the
// filter's state lives in this class's statics; there is one drag at a time.
#pragma once

#include "cad/ed/WindowMessage.h"

namespace cad::ed {
class Editor;
}

namespace vantor {

class InsertionFilter {
public:
    // ---- Set by the library window's drag and drop ----
    // The window holds the mouse (either of its two capture flags): mouse messages take the
    // saved position instead of their own.
    static void setMouseCapture(bool first, bool second);
    // The position where the mouse was released over the view, as a mouse message's lParam
    // carries it (x low word, y high word), with the drawing point there.
    static void setSavedMouse(unsigned long lParam, const cad::ge::Point3d& point);
    // While set, every message makes the view sample again one pixel to the left.
    static void setNudge(bool on);
    // The current document's part was dragged in from the library window.
    static void setDragDrop(bool on);

    // ---- The drag ----
    // Clears the filter's own words and registers it; false when the editor refuses it.
    static bool begin(cad::ed::Editor& editor);
    static void end(cad::ed::Editor& editor);
    // Set by the first Shift of a drag-and-drop drag.
    static bool shiftResample();
    static void clearShiftResample();

    // The filter itself. It never swallows a message.
    static bool filter(cad::ed::WindowMessage* message);
};

}  // namespace vantor
