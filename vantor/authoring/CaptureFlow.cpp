// The block list's capture.
#include "vantor/authoring/CaptureFlow.h"

#include "vantor/authoring/BlockCapture.h"
#include "vantor/authoring/LibraryEditSession.h"

namespace vantor {

bool captureIntoLibraryDrawing(const std::string& path, bool currentDrawing,
                               BlockCapture& capture, const CallerWindow& caller) {
    std::unique_ptr<LibraryEditSession> session = LibraryEditSession::open(path, capture.dialogs());
    if (!session) return false;
    if (!capture.capture(&session->database(), currentDrawing, caller)) return false;
    return session->save();
}

}  // namespace vantor
