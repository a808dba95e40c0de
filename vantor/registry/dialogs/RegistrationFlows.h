// The library window's registration commands as flows the frame calls: drawings added through
// the file dialog, the registered-drawing dialog, the folder scan; and the open-drawing
// command queued behind the command guard. Each answers whether the list changed, so the
// frame shows it again.
#pragma once

class QWidget;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CVNTreeBase;
class DrawingList;
class ManagementWindows;
class ModuleSettings;

// What the flows work on: the frame's list of the current management window with its tree,
// the windows that load and save it, and the frame (the dialogs' parent, given the focus
// before drawings are opened).
struct RegistryFlowContext {
    DrawingList& list;
    CVNTreeBase& tree;
    ManagementWindows& windows;
    ModuleSettings& settings;
    cad::app::UserDialogs& dialogs;
    QWidget* frame = nullptr;
};

// The file dialog "도면 등록" for several drawings; each one already listed is announced
// on its own, the others are added, read and saved.
bool registerDrawingsThroughDialog(const RegistryFlowContext& context);

// The registered-drawing dialog, modal over the frame. After it closes a changed list, or one
// with drawings chosen to open, is saved and loaded again; chosen drawings are then opened by
// "_UBLO\n" behind the command guard.
bool manageRegisteredDrawings(const RegistryFlowContext& context);

// The folder dialog and the confirmation, then the list replaced by the drawings below the
// folder that hold library data, with progress.
bool scanFolderForDrawings(const RegistryFlowContext& context);

// The drawings in the open-drawing queue opened by the host: the frame gets the focus and
// "_UBLO\n" is queued when the command guard lets it, which tells the user why not. The queue
// is left as it is either way: an open command sent earlier and not yet run still reads it.
bool queueOpenDrawings(const ModuleSettings& settings, QWidget* frame);

}  // namespace vantor
