// The folder-choice dialog of the folder scan: one folder, chosen through the user-dialogs
// port, starting where the user chose last.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CFolderDialog {
public:
    static constexpr std::string_view kTitle = "폴더 선택";

    explicit CFolderDialog(cad::app::UserDialogs& dialogs, std::string title = std::string(kTitle));

    // The folder chosen, without a trailing separator unless it is the root; nullopt when the
    // user cancelled. An empty `initialFolder` starts at the folder chosen last in this run.
    std::optional<std::string> doModal(std::string_view initialFolder = {});

    // The folder chosen last by any folder dialog of this run; empty before the first.
    static const std::string& lastFolder();

private:
    cad::app::UserDialogs& dialogs_;
    std::string title_;
};

}  // namespace vantor
