// The folder-choice dialog of the folder scan.
#include "vantor/registry/dialogs/FolderDialog.h"

#include "cad/app/UserDialogs.h"

namespace vantor {

namespace {

std::string& chosenLast() {
    static std::string folder;
    return folder;
}

}  // namespace

CFolderDialog::CFolderDialog(cad::app::UserDialogs& dialogs, std::string title)
    : dialogs_(dialogs), title_(std::move(title)) {}

std::optional<std::string> CFolderDialog::doModal(std::string_view initialFolder) {
    const std::string start(initialFolder.empty() ? std::string_view(chosenLast()) : initialFolder);
    std::optional<std::string> folder = dialogs_.chooseFolder(title_, start);
    if (!folder || folder->empty()) return std::nullopt;
    // The scan joins names onto the folder itself; "C:\" and "/" keep theirs.
    while (folder->size() > 1 && (folder->back() == '/' || folder->back() == '\\') &&
           !(folder->size() == 3 && (*folder)[1] == ':'))
        folder->pop_back();
    chosenLast() = *folder;
    return folder;
}

const std::string& CFolderDialog::lastFolder() {
    return chosenLast();
}

}  // namespace vantor
