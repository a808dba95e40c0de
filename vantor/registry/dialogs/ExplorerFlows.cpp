// The drawing explorer's operations.
#include "vantor/registry/dialogs/ExplorerFlows.h"

#include "cad/app/Application.h"
#include "cad/app/DocumentManager.h"
#include "cad/app/UserDialogs.h"
#include "vantor/host/CommandGuard.h"
#include "vantor/registry/dialogs/NewDrawing.h"
#include "vantor/registry/dialogs/RegistrationFlows.h"
#include "vantor/registry/operations/DrawingRegistration.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace app = cad::app;

bool openExplorerDrawing(const QString& path, ModuleSettings& settings,
                         app::DocumentManager& documents, app::UserDialogs& dialogs,
                         QWidget* frame) {
    if (path.isEmpty() || settings.openQueueBusy) return false;
    // The guard's refusal comes before the read-only notice: the user learns first that
    // nothing opens now. It refuses here for certain, and tells why.
    if (!documents.isQuiescent(documents.curDocument()) || settings.commandBusy) {
        queueGuardedCommand(settings, "_UBLO\n");
        return false;
    }
    const std::string file = path.toStdString();
    DrawingExplorer explorer(documents, dialogs);
    if (explorer.isOpenInHost(file))
        dialogs.messageBox("이 도면은 이미 열려있으므로,\n읽기 전용 모드로 열립니다.",
                           "읽기전용모드", app::MB_OK | app::MB_ICONINFORMATION);
    settings.openQueue = {file};
    return queueOpenDrawings(settings, frame);
}

DrawingExplorer::Copy writeExplorerR14Copy(DrawingExplorer& explorer, const QString& path) {
    const std::string file = path.toStdString();
    if (explorer.selectedPath() != file) explorer.selectDrawing(file);
    return explorer.writeR14Copy();
}

bool registerExplorerDrawing(const QString& path, const RegistryFlowContext& context) {
    DrawingRegistration registration(context.list, context.tree, context.windows, context.dialogs);
    return registration.registerDrawing(path.toStdString());
}

QString makeNewDrawing(const QString& folder, app::UserDialogs& dialogs) {
    std::string made;
    const cad::ErrorStatus status = NewDrawing::create(folder.toStdString(), made);
    if (status == cad::ErrorStatus::eOk) return QString::fromStdString(made);
    dialogs.messageBox("새도면을 생성하지 못했습니다.\n" + folder.toStdString(), "새도면 생성 에러",
                       app::MB_OK | app::MB_ICONERROR);
    return {};
}

}  // namespace vantor
