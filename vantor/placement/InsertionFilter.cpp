// The insertion drag's message filter.
#include "vantor/placement/InsertionFilter.h"

#include "cad/ed/Editor.h"

namespace vantor {

namespace {

struct FilterState {
    // Set from outside, by the library window.
    bool captureFirst = false;
    bool captureSecond = false;
    unsigned long savedMouse = 0;
    cad::ge::Point3d savedPoint;
    bool nudge = false;
    bool dragDrop = false;
    // The filter's own words, cleared with each drag.
    bool shiftResample = false;
    // A nudge is posted and not yet through the filter: it must not post another, or the
    // view would sample forever.
    bool nudgePending = false;
    cad::ed::Editor* editor = nullptr;
};

FilterState& state() {
    static FilterState instance;
    return instance;
}

}  // namespace

void InsertionFilter::setMouseCapture(bool first, bool second) {
    state().captureFirst = first;
    state().captureSecond = second;
}

void InsertionFilter::setSavedMouse(unsigned long lParam, const cad::ge::Point3d& point) {
    state().savedMouse = lParam;
    state().savedPoint = point;
}

void InsertionFilter::setNudge(bool on) {
    state().nudge = on;
}

void InsertionFilter::setDragDrop(bool on) {
    state().dragDrop = on;
}

bool InsertionFilter::begin(cad::ed::Editor& editor) {
    state().shiftResample = false;
    state().nudgePending = false;
    state().editor = &editor;
    return editor.registerMessageFilter(&InsertionFilter::filter);
}

void InsertionFilter::end(cad::ed::Editor& editor) {
    editor.removeMessageFilter(&InsertionFilter::filter);
    state().editor = nullptr;
}

bool InsertionFilter::shiftResample() {
    return state().shiftResample;
}

void InsertionFilter::clearShiftResample() {
    state().shiftResample = false;
}

bool InsertionFilter::filter(cad::ed::WindowMessage* message) {
    using namespace cad::ed;
    FilterState& s = state();
    const bool mouse = message->message == WM_LBUTTONDOWN || message->message == WM_MOUSEMOVE ||
                       message->message == WM_LBUTTONUP;
    if ((s.captureFirst || s.captureSecond) && mouse) {
        message->setLParam(s.savedMouse);
        message->point = s.savedPoint;
    }
    if (!s.dragDrop || s.editor == nullptr) return false;
    if (message->message == WM_KEYDOWN && message->keyCode == VK_SHIFT && !s.shiftResample) {
        s.shiftResample = true;
        WindowMessage move = *message;
        move.message = WM_MOUSEMOVE;
        move.keyCode = 0;
        s.editor->postWindowMessage(move);
    }
    if (s.nudge) {
        if (s.nudgePending) {
            s.nudgePending = false;
        } else {
            WindowMessage move = *message;
            move.message = WM_MOUSEMOVE;
            move.keyCode = 0;
            move.x -= 1;
            s.nudgePending = true;
            s.editor->postWindowMessage(move);
        }
    }
    return false;
}

}  // namespace vantor
