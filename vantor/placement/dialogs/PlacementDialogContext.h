// What the placement's dialogs work with besides their own data: the settings they read and
// write, the dialogs port for every message, and the editor that picks an angle in the drawing.
#pragma once

namespace cad::app {
class UserDialogs;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

class ModuleSettings;

struct PlacementDialogContext {
    ModuleSettings& settings;
    cad::app::UserDialogs& dialogs;
    cad::ed::Editor& editor;
};

}  // namespace vantor
