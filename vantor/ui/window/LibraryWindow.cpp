// The library window behind the module's frame messages.
#include "vantor/ui/window/LibraryWindow.h"

#include <QMetaObject>

#include "cad/app/Application.h"
#include "cad/app/UserDialogs.h"
#include "vantor/host/VantorApp.h"
#include "vantor/placement/dialogs/InsertionFlow.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/window/UblMainFrame.h"

namespace vantor {

LibraryWindow::~LibraryWindow() {
    if (frame_ == nullptr) return;
    // The module is going and its settings with it: nothing may write to them any more.
    frame_->disconnect();
    delete frame_.data();
}

CUblMainFrame* LibraryWindow::frame() const {
    return frame_;
}

void LibraryWindow::create(const std::string& title) {
    ModuleSettings& settings = *app_.settings();
    // The window opens on the side the user chose last.
    settings.displayMode = settings.ublView != 0;
    FrameContext context{settings,           cad::app::userDialogs(), app_.host().documentManager(),
                         app_.host().editor(), app_.insertionStates(), title,
                         app_.help().page()};
    frame_ = new CUblMainFrame(std::move(context));
    frame_->setAttribute(Qt::WA_DeleteOnClose);
    // The module's flag follows the window: closing it by any way makes VNK build it anew.
    QObject::connect(frame_.data(), &QObject::destroyed, [&settings] { settings.windowOpen = false; });
    frame_->show();
}

void LibraryWindow::postMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) {
    if (frame_ == nullptr) return;
    CUblMainFrame* frame = frame_.data();
    QMetaObject::invokeMethod(
        frame, [frame, message, wParam, lParam] { frame->handleMessage(message, wParam, lParam); },
        Qt::QueuedConnection);
}

void LibraryWindow::redrawPreview() {
    if (frame_ != nullptr) frame_->redrawPreview();
}

void LibraryWindow::refreshBlockList() {
    if (frame_ != nullptr) frame_->refreshBlockList();
}

void LibraryWindow::bringToFront() {
    if (frame_ == nullptr) return;
    frame_->showNormal();
    frame_->raise();
    frame_->activateWindow();
}

void installLibraryWindow(VantorApp& app) {
    if (!app.host().showsWindows()) return;
    app.setFrame(std::make_unique<LibraryWindow>(app));
    // A drag that asks for the settings brings the insertion dialog back.
    app.setPlacementHook([&app](cad::app::Document& document, InsertionState& state) {
        runInsertionWithDialog(document, state, *app.settings());
    });
}

}  // namespace vantor
