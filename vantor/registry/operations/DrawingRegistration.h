// Registering library drawings in the current management window: through the file dialog, from
// the drawing explorer, by scanning a folder; and the registered-drawing dialog's remove,
// optimise and open.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CVNTreeBase;
class DrawingList;
class ManagementWindows;
class ModuleSettings;
struct RegisteredDrawing;

// Works on the list of the window the management windows show, reading each new drawing's
// library data into the category tree; every operation that makes a change saves the list.
// Each change holds the list file's lock from before it looks at the list until it is saved,
// and works on the list as the file holds it then (another program may have saved since);
// when another program holds it past the wait, nothing changes and the user is told who.
class DrawingRegistration {
public:
    DrawingRegistration(DrawingList& list, CVNTreeBase& tree, ManagementWindows& windows,
                        cad::app::UserDialogs& dialogs);

    // The file dialog "도면 등록" (several files), then addPaths. False when cancelled.
    bool addThroughDialog();
    // Adds each path in order, announcing each duplicate on its own, reads the library data of
    // every drawing added to set its active flag, and saves the list. Answers how many were
    // added.
    int addPaths(const std::vector<std::string>& paths);
    // The file dialog's narrow repair: when the first doubled backslash stands at index 1 of a
    // path longer than four bytes, the byte at index 3 is dropped. Paths handed back in that
    // shape lost nothing else, and the list's own collapsing handles every other doubling.
    static std::string repairDialogPath(std::string path);

    // The explorer's register: the duplicate error, or the drawing added, read, the list saved
    // and the success message. True when it was added.
    bool registerDrawing(const std::string& path);

    // The dialog's remove: after the confirmation the selected entries go, first to last, and
    // the list is saved. True when the list changed.
    bool removeSelected(const std::vector<const RegisteredDrawing*>& selected);
    // The dialog's optimise: after the confirmation every entry whose active flag is not 1
    // goes, and the list is saved. Answers how many went.
    int optimise();
    // The dialog's open: the selected paths become the open queue unless a previous batch is
    // still being opened. True when drawings were queued.
    bool queueForOpening(const std::vector<const RegisteredDrawing*>& selected,
                         ModuleSettings& settings);
    // The dialog closed: a changed list, or one with drawings chosen to open, is saved and
    // loaded again, which rebuilds the tree and shows what other programs saved meanwhile.
    void dialogClosed(bool listChanged, bool drawingsQueued);

    // Automatic registration: the folder dialog and the confirmation, then the list replaced by
    // every drawing below the folder (subfolders first, then the folder's own files, each in
    // name order), the tree rebuilt, the drawings without readable library data dropped and
    // the list saved. False when cancelled.
    bool scanFolder();
    // The same after a folder was chosen elsewhere (the library window's own folder dialog):
    // the confirmation, then the scan. False when cancelled.
    bool scanFolder(const std::string& folder);

private:
    int removeInactive();

    DrawingList& list_;
    CVNTreeBase& tree_;
    ManagementWindows& windows_;
    cad::app::UserDialogs& dialogs_;
};

}  // namespace vantor
