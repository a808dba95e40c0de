// The document-manager reactor of the module.
#include "vantor/host/VantorDocReactor.h"

#include "cad/app/Application.h"
#include "vantor/host/VantorApp.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

// The settings when the library window is open; nullptr otherwise.
const ModuleSettings* openWindow(VantorApp& app) {
    const ModuleSettings* settings = app.settings();
    return settings != nullptr && settings->windowOpen ? settings : nullptr;
}

}  // namespace

VantorDocReactor::VantorDocReactor(VantorApp& app) : app_(app) {
    app_.host().documentManager().addReactor(this);
}

VantorDocReactor::~VantorDocReactor() {
    app_.host().documentManager().removeReactor(this);
}

// The display-mode flag set means the second display mode, which lists the active drawing's
// blocks; the first mode shows the explorer, which hears of the drawing through 1062.
void VantorDocReactor::documentActivated(cad::app::Document*) {
    const ModuleSettings* settings = openWindow(app_);
    if (settings == nullptr) return;
    if (settings->displayMode) {
        app_.frame().refreshBlockList();
    } else {
        app_.frame().postMessage(kMsgDocumentActivated, 0, 0);
        app_.frame().redrawPreview();
    }
}

void VantorDocReactor::documentToBeDeactivated(cad::app::Document*) {
    const ModuleSettings* settings = openWindow(app_);
    if (settings != nullptr && !settings->displayMode) app_.frame().redrawPreview();
}

void VantorDocReactor::documentDestroyed(const std::string&) {
    const ModuleSettings* settings = openWindow(app_);
    if (settings != nullptr && settings->displayMode) app_.frame().redrawPreview();
}

}  // namespace vantor
