// The management windows of the library window: the named lists of registered drawings kept in
// UBTabList.dat and UBList<n>.dat, the drop-down's selection, and the list of the window shown.
#pragma once

#include <string>
#include <vector>

#include "vantor/registry/DataFolder.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class DrawingList;
class ModuleSettings;
class TreeRebuilder;

// A window's list file is found by its position alone: renaming keeps the file, deleting
// renumbers the files behind it. Position 0 is the main window and cannot be deleted.
class ManagementWindows {
public:
    enum class Outcome {
        Done,
        Cancelled,  // the user said no
        Refused,    // the rule was shown to the user; nothing changed
        NotSaved,   // changed in memory, but UBTabList.dat could not be written
    };

    static constexpr const char* kMainWindowName = "주 관리창";

    // The data folder is the one below settings.moduleFolder.
    ManagementWindows(ModuleSettings& settings, DrawingList& list, TreeRebuilder& tree,
                      cad::app::UserDialogs& dialogs);

    // Fills the names from UBTabList.dat and selects the window named by curListName, else
    // position 0. Without a file the main window is made and the file written at once.
    void loadTabList();
    bool saveTabList();

    // Loads the list of the selected window into the drawing list, with progress, rebuilds the
    // tree and records the window as the current one (index and curListName). A missing file
    // gives an empty list.
    void loadList();
    // Writes the drawing list to the file of `position` (-1: the selected window). False when
    // the file cannot be written, which the library window does not report.
    bool saveList(int position = -1);

    // The drop-down's selection changed: loads that window's list unless busy or already shown.
    void selectionChanged(int position);

    Outcome addWindow();
    Outcome renameWindow();
    Outcome deleteWindow();

    const std::vector<std::string>& names() const { return names_; }
    int selection() const { return selection_; }
    int currentIndex() const { return currentIndex_; }
    // Set while a list operation runs, so selection changes do not reload under it.
    bool busy() const { return busy_; }
    void setBusy(bool busy) { busy_ = busy; }

    const DataFolder& dataFolder() const { return dataFolder_; }
    std::string listFile(int position) const { return dataFolder_.listFile(position); }

private:
    bool validPosition(int position) const;
    bool acceptableName(const std::string& name);

    ModuleSettings& settings_;
    DrawingList& list_;
    TreeRebuilder& tree_;
    cad::app::UserDialogs& dialogs_;
    DataFolder dataFolder_;
    std::vector<std::string> names_;
    int selection_ = -1;
    int currentIndex_ = -1;  // the window whose list is loaded; none yet
    bool busy_ = false;
};

}  // namespace vantor
