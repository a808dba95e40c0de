// The command guard of the library window.
#include "vantor/host/CommandGuard.h"

#include "cad/app/Application.h"
#include "cad/app/UserDialogs.h"
#include "vantor/ui/HostBusy.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

bool commandGuardPasses(const ModuleSettings& settings) {
    cad::app::DocumentManager& documents = cad::app::Application::current()->documentManager();
    if (!documents.isQuiescent(documents.curDocument())) {
        cad::app::userDialogs().messageBox(kHostBusyText, kHostBusyTitle, cad::app::MB_ICONERROR);
        return false;
    }
    if (settings.commandBusy) {
        cad::app::userDialogs().messageBox("현재 명령실행 중입니다.", "INSERT PROCESSING",
                                           cad::app::MB_ICONERROR);
        return false;
    }
    return true;
}

bool queueGuardedCommand(const ModuleSettings& settings, std::string_view command,
                         QueueFlags flags) {
    if (!commandGuardPasses(settings)) return false;
    cad::app::DocumentManager& documents = cad::app::Application::current()->documentManager();
    cad::app::Document* document = documents.curDocument();
    return documents.sendStringToExecute(document, command, flags.activate, flags.wrapUpInactiveDoc,
                                         flags.echo) == cad::ErrorStatus::eOk;
}

}  // namespace vantor
