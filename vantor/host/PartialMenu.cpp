// Loading the partial menu through the host's menu groups.
#include "vantor/host/PartialMenu.h"

#include <fstream>

#include "cad/app/Application.h"
#include "cad/ed/Editor.h"

namespace vantor {

std::string partialMenuPath(std::string_view moduleFolder) {
    return std::string(moduleFolder) + std::string(kMenuGroupName) + ".mns";
}

void loadPartialMenu(cad::app::Application& application, std::string_view moduleFolder) {
    cad::app::MenuGroups& groups = application.menuGroups();
    for (int i = 0; i < groups.count(); ++i)
        if (groups.item(i)->name() == kMenuGroupName) return;

    const std::string path = partialMenuPath(moduleFolder);
    if (!std::ifstream(path)) return;
    std::string error;
    if (groups.load(path, error) != cad::ErrorStatus::eOk) {
        application.editor().printf("\n%s", error.c_str());
        return;
    }
    const cad::app::MenuGroup* group = groups.item(groups.count() - 1);
    for (const cad::app::PopMenu& menu : group->menus())
        application.menuBar().insertInMenuBar(group->name(), menu);
}

}  // namespace vantor
