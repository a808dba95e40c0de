// The recording stand-in for the library window's frame.
#include "vantor/host/RecordingFrame.h"

namespace vantor {

std::string RecordingFrame::Entry::text() const {
    switch (kind) {
        case Kind::Create:
            return "create";
        case Kind::Post:
            return "post " + std::to_string(message) + " " + std::to_string(wParam) + " " +
                   std::to_string(lParam);
        case Kind::RedrawPreview:
            return "redraw preview";
        case Kind::RefreshBlockList:
            return "refresh block list";
        case Kind::BringToFront:
            return "bring to front";
    }
    return {};
}

void RecordingFrame::create(const std::string&) {
    entries_.push_back({Entry::Kind::Create});
}

void RecordingFrame::postMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) {
    entries_.push_back({Entry::Kind::Post, message, wParam, lParam});
}

void RecordingFrame::redrawPreview() {
    entries_.push_back({Entry::Kind::RedrawPreview});
}

void RecordingFrame::refreshBlockList() {
    entries_.push_back({Entry::Kind::RefreshBlockList});
}

void RecordingFrame::bringToFront() {
    entries_.push_back({Entry::Kind::BringToFront});
}

}  // namespace vantor
