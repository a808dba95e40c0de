// The management windows of the library window: the named lists of registered drawings kept in
// UBTabList.dat and UBList<n>.dat, the drop-down's selection, and the list of the window shown.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cad/sys/FileLock.h"
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
//
// Other programs (a second host, the vantor command line) change the same files. Every change
// takes the file's lock and works on the file as it is on disk then: the window names are
// read again, and a list another program wrote since it was loaded is loaded again (see
// lockList), so no one's change is written over.
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
    // Writes the drawing list to the file of `position` (-1: the selected window). False, with
    // the file named and the system's reason shown to the user, when it cannot be written.
    bool saveList(int position = -1);
    // Takes the lock of the selected window's list file for a change of the list. When another
    // program wrote the file since it was loaded here, it is loaded again first, so that the
    // change goes onto what is on disk. Keep the answer until the list is saved. It is not
    // held when another program holds the file past the wait, which was shown to the user.
    cad::sys::FileLock lockList();

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
    // What a list file was when this object last read or wrote it; a file replaced since has
    // another identity (saves rename a new file into place) or another time or size.
    struct FileStamp {
        dev_t device = 0;
        ino_t inode = 0;
        std::int64_t nanoseconds = -1;
        std::int64_t size = -1;
        bool operator==(const FileStamp&) const = default;
    };
    static FileStamp stampOf(const std::string& path);

    bool validPosition(int position) const;
    // Takes the tab list's lock and reads the names as the file has them now.
    bool lockTabList(cad::sys::FileLock& lock);
    void showRefusal(const cad::sys::FileLock& lock);
    bool acceptableName(const std::string& name);

    ModuleSettings& settings_;
    DrawingList& list_;
    TreeRebuilder& tree_;
    cad::app::UserDialogs& dialogs_;
    DataFolder dataFolder_;
    std::vector<std::string> names_;
    int selection_ = -1;
    int currentIndex_ = -1;  // the window whose list is loaded; none yet
    FileStamp listStamp_;    // the loaded list's file as it was read or written
    bool busy_ = false;
};

}  // namespace vantor
