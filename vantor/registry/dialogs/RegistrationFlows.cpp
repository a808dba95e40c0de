// The library window's registration commands.
#include "vantor/registry/dialogs/RegistrationFlows.h"

#include <QWidget>

#include "vantor/host/CommandGuard.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/dialogs/DwgListDlg.h"
#include "vantor/registry/dialogs/FolderDialog.h"
#include "vantor/registry/operations/DrawingRegistration.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

DrawingRegistration registrationOf(const RegistryFlowContext& context) {
    return DrawingRegistration(context.list, context.tree, context.windows, context.dialogs);
}

// Where the folder dialog starts: the folder scanned last, else that of the first drawing
// listed, which is where a window's drawings usually lie.
std::string scanStart(const DrawingList& list) {
    if (!CFolderDialog::lastFolder().empty() || list.empty()) return {};
    const RegisteredDrawing& first = *list.begin();
    return first.drive + first.dir;
}

}  // namespace

bool registerDrawingsThroughDialog(const RegistryFlowContext& context) {
    const std::vector<std::string> before = context.list.paths();
    registrationOf(context).addThroughDialog();
    return context.list.paths() != before;
}

bool manageRegisteredDrawings(const RegistryFlowContext& context) {
    DrawingRegistration registration = registrationOf(context);
    bool changed = false;
    bool queued = false;
    {
        CDwgListDlg dialog(registration, context.list, context.settings, context.frame);
        dialog.exec();
        changed = dialog.listChanged();
        queued = dialog.drawingsQueued();
    }
    registration.dialogClosed(changed, queued);
    if (queued) queueOpenDrawings(context.settings, context.frame);
    return changed || queued;
}

bool scanFolderForDrawings(const RegistryFlowContext& context) {
    CFolderDialog folderDialog(context.dialogs);
    const std::optional<std::string> folder = folderDialog.doModal(scanStart(context.list));
    if (!folder) return false;
    return registrationOf(context).scanFolder(*folder);
}

bool queueOpenDrawings(const ModuleSettings& settings, QWidget* frame) {
    if (frame != nullptr) {
        frame->window()->activateWindow();
        frame->setFocus(Qt::OtherFocusReason);
    }
    return queueGuardedCommand(settings, "_UBLO\n");
}

}  // namespace vantor
