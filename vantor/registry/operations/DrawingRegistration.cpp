// Registration of library drawings and the registered-drawing dialog's list operations.
#include "vantor/registry/operations/DrawingRegistration.h"

#include <algorithm>

#include "cad/app/UserDialogs.h"
#include "cad/sys/FileLock.h"
#include "cad/sys/FolderSearch.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace app = cad::app;

namespace {

constexpr std::string_view kBuildingList = "상태 : 리스트 형성 중...";
constexpr unsigned kConfirm = app::MB_OKCANCEL | app::MB_ICONWARNING;

// Our engine reads DXF; a file it cannot read is listed all the same and reads as inactive.
const std::vector<std::string> kDrawingPatterns = {"*.dwg", "*.dxf"};

// Another program held the list past the wait; the windows told the user so.
bool refused(const cad::sys::FileLock& lock) {
    return !lock.isHeld() && !lock.message().empty();
}

}  // namespace

DrawingRegistration::DrawingRegistration(DrawingList& list, CVNTreeBase& tree,
                                         ManagementWindows& windows, app::UserDialogs& dialogs)
    : list_(list), tree_(tree), windows_(windows), dialogs_(dialogs) {}

bool DrawingRegistration::addThroughDialog() {
    auto paths = dialogs_.openFiles("도면 등록", "Drawing (*.dwg *.dxf)", "", true);
    if (!paths) return false;
    addPaths(*paths);
    return true;
}

std::string DrawingRegistration::repairDialogPath(std::string path) {
    if (path.find("\\\\") == 1 && path.size() > 4) path.erase(3, 1);
    return path;
}

int DrawingRegistration::addPaths(const std::vector<std::string>& paths) {
    // Held until the list is saved, so a registration made meanwhile elsewhere is kept.
    const cad::sys::FileLock lock = windows_.lockList();
    if (refused(lock)) return 0;
    int added = 0;
    for (const std::string& given : paths) {
        const std::string path = repairDialogPath(given);
        // Checked first: addPath answers nothing for a path too long as well, and reports that
        // one itself.
        if (list_.contains(path)) {
            dialogs_.messageBox("\"" + path + "\"\n은 이미 등록된 도면입니다.", "도면 중복 알림",
                                app::MB_OK | app::MB_ICONINFORMATION);
            continue;
        }
        if (RegisteredDrawing* entry = list_.addPath(path, dialogs_)) {
            entry->active = tree_.loadDrawing(entry->path) == CVNTreeBase::LoadResult::Loaded;
            ++added;
        }
    }
    windows_.saveList();
    return added;
}

bool DrawingRegistration::registerDrawing(const std::string& path) {
    const cad::sys::FileLock lock = windows_.lockList();
    if (refused(lock)) return false;
    if (list_.contains(path)) {
        dialogs_.messageBox("이미 등록된 도면입니다.", "도면 중복 에러",
                            app::MB_OK | app::MB_ICONERROR);
        return false;
    }
    RegisteredDrawing* entry = list_.addPath(path, dialogs_);
    if (!entry) return false;
    entry->active = tree_.loadDrawing(entry->path) == CVNTreeBase::LoadResult::Loaded;
    if (!windows_.saveList()) return false;
    dialogs_.messageBox("정상적으로 등록되었습니다.", "추가 완료",
                        app::MB_OK | app::MB_ICONINFORMATION);
    return true;
}

bool DrawingRegistration::removeSelected(const std::vector<const RegisteredDrawing*>& selected) {
    if (selected.empty()) return false;
    if (dialogs_.messageBox("선택된 도면들을 리스트에서 제거합니다?\n제거하시겠습니까?",
                            "부품 도면 제거", kConfirm) != app::IDOK)
        return false;
    // By path: taking the lock may load the list again, which makes new entries.
    std::vector<std::string> paths;
    for (const RegisteredDrawing* entry : selected) paths.push_back(entry->path);
    const cad::sys::FileLock lock = windows_.lockList();
    if (refused(lock)) return false;
    bool changed = false;
    for (const std::string& path : paths) {
        auto entry = std::find_if(list_.begin(), list_.end(),
                                  [&](const RegisteredDrawing& e) { return e.path == path; });
        if (entry != list_.end()) changed = list_.remove(&*entry) || changed;
    }
    if (changed) windows_.saveList();
    return changed;
}

int DrawingRegistration::optimise() {
    if (dialogs_.messageBox("비활성 도면들을 모두 리스트에서 제거합니다?\n실행하시겠습니까?",
                            "리스트 최적화", kConfirm) != app::IDOK)
        return 0;
    const cad::sys::FileLock lock = windows_.lockList();
    if (refused(lock)) return 0;
    const int removed = removeInactive();
    if (removed > 0) windows_.saveList();
    return removed;
}

int DrawingRegistration::removeInactive() {
    int removed = 0;
    for (auto entry = list_.begin(); entry != list_.end();) {
        const RegisteredDrawing& current = *entry++;
        if (current.active == 1) continue;
        // A drawing without library data still shows its empty user library; once off the
        // list it must not show.
        const std::string path = current.path;
        if (!list_.remove(&current)) continue;
        tree_.removeDrawing(path);
        ++removed;
    }
    return removed;
}

bool DrawingRegistration::queueForOpening(const std::vector<const RegisteredDrawing*>& selected,
                                          ModuleSettings& settings) {
    if (settings.openQueueBusy || selected.empty()) return false;
    settings.openQueue.clear();
    for (const RegisteredDrawing* entry : selected) settings.openQueue.push_back(entry->path);
    return true;
}

void DrawingRegistration::dialogClosed(bool listChanged, bool drawingsQueued) {
    if (!listChanged && !drawingsQueued) return;
    {
        // Every change was saved as it was made; another program's since then are loaded.
        const cad::sys::FileLock lock = windows_.lockList();
        if (lock.isHeld()) windows_.saveList();
    }
    windows_.loadList();
}

bool DrawingRegistration::scanFolder() {
    auto folder = dialogs_.chooseFolder("폴더 선택", "");
    if (!folder) return false;
    return scanFolder(*folder);
}

bool DrawingRegistration::scanFolder(const std::string& folder) {
    if (dialogs_.messageBox("기존의 리스트가 사라집니다.\n그래도 하시겠습니까?", "폴더 SCAN",
                            kConfirm) != app::IDOK)
        return false;

    // The whole list is replaced, but under the lock all the same, so that no other program's
    // save lands between this one's and is lost without a trace.
    const cad::sys::FileLock lock = windows_.lockList();
    if (refused(lock)) return false;
    dialogs_.progressShow();
    // No window switch may reload the list while it is being replaced.
    windows_.setBusy(true);
    const std::vector<std::string> found = cad::sys::findFiles(folder, kDrawingPatterns);
    list_.clear();
    const int count = static_cast<int>(found.size());
    dialogs_.progressText(kBuildingList);
    dialogs_.progressRange(0, count);
    for (int i = 0; i < count; ++i) {
        list_.addPath(found[i], dialogs_);
        dialogs_.progressPosition(i);
        // Divided first, then scaled and cut, as the list's loading shows it.
        const int percent = static_cast<int>(static_cast<double>(i) / count * 100.0);
        dialogs_.progressText(std::string(kBuildingList) + " (" + std::to_string(percent) + "%)");
    }
    tree_.rebuildFromList(list_);
    windows_.setBusy(false);
    dialogs_.progressHide();

    removeInactive();
    windows_.saveList();
    return true;
}

}  // namespace vantor
