// The process-wide user-dialogs port: whatever the host installed, else a scripted default
// that answers OK and cancel, so library code never meets a missing port.
#include "cad/app/UserDialogs.h"

#include "cad/app/ScriptedDialogs.h"

namespace cad::app {

namespace {

UserDialogs* installed = nullptr;

UserDialogs& defaultDialogs() {
    static ScriptedDialogs dialogs;
    return dialogs;
}

}  // namespace

UserDialogs& userDialogs() {
    return installed ? *installed : defaultDialogs();
}

void setUserDialogs(UserDialogs* dialogs) {
    installed = dialogs;
}

}  // namespace cad::app
