// The module's partial menu: the pull-down "Vantor" with the three commands, read from
// "Vantor.mns" beside the module and placed in the host's menu bar once per session.
#pragma once

#include <string>
#include <string_view>

namespace cad::app {
class Application;
}

namespace vantor {

inline constexpr std::string_view kMenuGroupName = "Vantor";

// The module folder with the file name "Vantor" and the extension ".mns".
std::string partialMenuPath(std::string_view moduleFolder);

// Loads the menu file as a menu group and puts each of its pull-downs in the menu bar, unless
// a group named "Vantor" (case counts) is loaded already: the menu outlives an unload of the
// module, so loading the module again finds it there. A missing file is silent; a file the
// host refuses is reported on the command line and leaves the module loaded without a menu.
void loadPartialMenu(cad::app::Application& application, std::string_view moduleFolder);

}  // namespace vantor
