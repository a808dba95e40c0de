// The library window as the module sees it: made by VNK, raised by a second VNK, told the
// module's messages through FrameMessages, queued as the window's own messages are. The frame
// closes itself; the module learns of it through the settings' open flag.
#pragma once

#include <QPointer>
#include <memory>

#include "vantor/host/FrameMessages.h"

namespace vantor {

class CUblMainFrame;
class VantorApp;

class LibraryWindow : public FrameMessages {
public:
    explicit LibraryWindow(VantorApp& app) : app_(app) {}
    ~LibraryWindow() override;

    void create(const std::string& title) override;
    void postMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) override;
    void redrawPreview() override;
    void refreshBlockList() override;
    void bringToFront() override;

    CUblMainFrame* frame() const;

private:
    VantorApp& app_;
    QPointer<CUblMainFrame> frame_;
};

// In a host that shows windows, the module's frame becomes the library window.
void installLibraryWindow(VantorApp& app);

}  // namespace vantor
