// How the module talks to the library window's frame: private window messages posted to it,
// and the few direct requests the reactors make of its views. The library window implements
// it in a host that shows windows; elsewhere RecordingFrame stands in and keeps what it was told.
#pragma once

#include <cstdint>
#include <string>

namespace vantor {

// Window messages with the values the frame's message map uses (WM_USER is 1024).
inline constexpr unsigned WM_CLOSE = 0x0010;
inline constexpr unsigned kMsgSwitchPane = 1042;  // wParam: kPaneDrawingTree or kPaneExplorer
inline constexpr unsigned kPaneDrawingTree = 1043;
inline constexpr unsigned kPaneExplorer = 1044;
inline constexpr unsigned kMsgAlwaysOnTop = 1045;
inline constexpr unsigned kMsgPreviewPane = 1046;     // after the preview button
inline constexpr unsigned kMsgDataPane = 1047;        // after the part data button
inline constexpr unsigned kMsgSelectionState = 1048;  // wParam: a block may be added
inline constexpr unsigned kMsgPaneShown = 1050;       // wParam: the pane button's id
inline constexpr unsigned kMsgDrawingsOpened = 1051;  // wParam: queued, lParam: failed
inline constexpr unsigned kMsgDocumentActivated = 1062;

class FrameMessages {
public:
    virtual ~FrameMessages() = default;

    // VNK with the window closed: the frame is made and shown under `title`.
    virtual void create(const std::string& title) = 0;

    // Queued for the frame's message loop, as PostMessage does: the caller never waits.
    virtual void postMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) = 0;
    // Repaints the preview pane at once (invalidate, erase, update now).
    virtual void redrawPreview() = 0;
    // Re-reads the current drawing's block list (the second display mode shows it).
    virtual void refreshBlockList() = 0;
    // A second VNK only raises the open window.
    virtual void bringToFront() = 0;
};

}  // namespace vantor
