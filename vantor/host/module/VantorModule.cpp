// libvantor.so's exports: the entry point the host calls with its application messages, the
// interface version, and the library's unload (its detach).
#include "cad/app/AppMsg.h"
#include "cad/app/Application.h"
#include "vantor/host/VantorApp.h"
#include "vantor/placement/dialogs/PartSyncDlg.h"
#include "vantor/ui/window/LibraryWindow.h"

namespace {

// The file version the build stamps into the module; none in a build that gives none.
std::optional<vantor::FileVersion> builtVersion() {
#ifdef VANTOR_FILE_VERSION
    return vantor::FileVersion{VANTOR_FILE_VERSION};
#else
    return std::nullopt;
#endif
}

// The library is unloaded. Normally kUnloadAppMsg has freed the module already; a host that
// ended without sending it leaves the module object behind, which is then forgotten rather
// than destroyed (see VantorApp::abandon).
__attribute__((destructor)) void detach() {
    vantor::VantorApp::abandon();
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) cad::app::AppRetCode acrxEntryPoint(cad::app::AppMsg message,
                                                                           void* data) {
    const cad::app::AppRetCode answer =
        vantor::VantorApp::entryPoint(message, data, builtVersion());
    // Once the module stands, its frame becomes the window a user sees (when the host shows
    // windows at all).
    if (message == cad::app::AppMsg::kInitAppMsg && vantor::VantorApp::instance() != nullptr) {
        vantor::VantorApp& app = *vantor::VantorApp::instance();
        vantor::installLibraryWindow(app);
        if (app.host().showsWindows())
            app.setSyncListHook([](const vantor::PartSyncList& list) {
                return vantor::CPartSyncDlg::run(nullptr, list);
            });
    }
    return answer;
}

// The version of the module interface this module was built for.
__attribute__((visibility("default"))) int acrxGetApiVersion() {
    return 1;
}
}
