// Loading, saving, switching, adding, renaming and deleting management windows.
#include "vantor/registry/ManagementWindows.h"

#include <sys/stat.h>

#include <algorithm>

#include "cad/app/UserDialogs.h"
#include "cad/sys/FileError.h"
#include "cad/sys/FileSystem.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

constexpr const char* kBuildingList = "상태 : 리스트 형성 중...";
constexpr const char* kInUseTitle = "파일 사용 중";

// Divided first, then scaled and cut, so the last step shows less than 100 percent.
std::string buildingListProgress(int done, int count) {
    const int percent = static_cast<int>(static_cast<double>(done) / count * 100.0);
    return std::string(kBuildingList) + " (" + std::to_string(percent) + "%)";
}

}  // namespace

ManagementWindows::ManagementWindows(ModuleSettings& settings, DrawingList& list,
                                     TreeRebuilder& tree, cad::app::UserDialogs& dialogs)
    : settings_(settings),
      list_(list),
      tree_(tree),
      dialogs_(dialogs),
      dataFolder_(settings.moduleFolder) {}

bool ManagementWindows::validPosition(int position) const {
    return position >= 0 && position < static_cast<int>(names_.size());
}

ManagementWindows::FileStamp ManagementWindows::stampOf(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino,
            static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1'000'000'000 + info.st_mtim.tv_nsec,
            static_cast<std::int64_t>(info.st_size)};
}

void ManagementWindows::showRefusal(const cad::sys::FileLock& lock) {
    dialogs_.messageBox(lock.message(), kInUseTitle, cad::app::MB_OK | cad::app::MB_ICONERROR);
}

bool ManagementWindows::lockTabList(cad::sys::FileLock& lock) {
    dataFolder_.create();
    if (lock.acquire(dataFolder_.tabListFile()) != cad::ErrorStatus::eOk) {
        showRefusal(lock);
        return false;
    }
    if (auto names = ListFile::readAll(dataFolder_.tabListFile())) names_ = std::move(*names);
    return true;
}

cad::sys::FileLock ManagementWindows::lockList() {
    cad::sys::FileLock lock;
    if (!validPosition(selection_)) return lock;
    const std::string path = dataFolder_.listFile(selection_);
    if (lock.acquire(path) != cad::ErrorStatus::eOk) {
        showRefusal(lock);
        return lock;
    }
    if (currentIndex_ != selection_ || stampOf(path) != listStamp_) loadList();
    return lock;
}

void ManagementWindows::loadTabList() {
    names_.clear();
    // Made here too, so that a first run can write the main window's tab list at once.
    dataFolder_.create();
    auto takeNames = [this](std::vector<std::string> names) {
        names_ = std::move(names);
        auto found = std::find(names_.begin(), names_.end(), settings_.curListName);
        selection_ = found != names_.end() ? static_cast<int>(found - names_.begin()) : 0;
        // A tab list that reads empty (a count starting with 0x1A) leaves nothing to select.
        if (names_.empty()) selection_ = -1;
    };
    if (auto names = ListFile::readAll(dataFolder_.tabListFile())) return takeNames(*names);
    // Another program's first run may be making the file at this moment: looked for again
    // under the lock.
    cad::sys::FileLock lock;
    if (lock.acquire(dataFolder_.tabListFile()) == cad::ErrorStatus::eOk) {
        if (auto names = ListFile::readAll(dataFolder_.tabListFile())) return takeNames(*names);
    } else {
        showRefusal(lock);
    }
    names_.push_back(kMainWindowName);
    selection_ = 0;
    if (lock.isHeld()) saveTabList();
}

bool ManagementWindows::saveTabList() {
    return ListFile::write(dataFolder_.tabListFile(), names_);
}

void ManagementWindows::loadList() {
    dialogs_.progressShow();
    dataFolder_.create();
    list_.clear();

    ListFile file;
    // Taken before the read: a file replaced while it is read is then read again next time.
    if (validPosition(selection_)) listStamp_ = stampOf(dataFolder_.listFile(selection_));
    if (validPosition(selection_) && file.open(dataFolder_.listFile(selection_))) {
        const int count = file.count();
        dialogs_.progressRange(0, count);
        dialogs_.progressText(kBuildingList);
        std::string path;
        for (int i = 0; i < count; ++i) {
            const ListFile::Entry entry = file.next(path);
            if (entry == ListFile::Entry::End) break;
            if (entry == ListFile::Entry::Skipped) continue;
            list_.addPath(path, dialogs_);
            dialogs_.progressPosition(i);
            dialogs_.progressText(buildingListProgress(i, count));
        }
        file.close();
    }
    tree_.rebuildFromList(list_);
    dialogs_.progressHide();

    if (!validPosition(selection_)) return;
    currentIndex_ = selection_;
    settings_.curListName = names_[selection_];
}

bool ManagementWindows::saveList(int position) {
    if (position < 0) position = selection_;
    if (position < 0) return false;
    const std::string path = dataFolder_.listFile(position);
    if (!ListFile::write(path, list_.paths())) {
        dialogs_.messageBox("리스트를 저장하지 못했습니다.\n" + cad::sys::lastFileError().text,
                            "리스트 저장 에러", cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    if (position == currentIndex_) listStamp_ = stampOf(path);
    return true;
}

void ManagementWindows::selectionChanged(int position) {
    selection_ = position;
    if (!busy_ && position != currentIndex_) loadList();
}

bool ManagementWindows::acceptableName(const std::string& name) {
    if (ListFile::fits(name)) return true;
    dialogs_.messageBox("관리창 이름이 너무 깁니다. 259바이트까지 쓸 수 있습니다.",
                        "관리창 이름 에러", cad::app::MB_OK | cad::app::MB_ICONERROR);
    return false;
}

ManagementWindows::Outcome ManagementWindows::addWindow() {
    auto name = dialogs_.askText("관리창 추가하기", "관리창 이름", "");
    if (!name) return Outcome::Cancelled;
    if (!acceptableName(*name)) return Outcome::Refused;
    cad::sys::FileLock lock;
    if (!lockTabList(lock)) return Outcome::Refused;
    // The new window's list file comes into being the first time its list is saved.
    names_.push_back(std::move(*name));
    return saveTabList() ? Outcome::Done : Outcome::NotSaved;
}

ManagementWindows::Outcome ManagementWindows::renameWindow() {
    if (!validPosition(selection_)) return Outcome::Refused;
    auto name = dialogs_.askText("관리창 이름 바꾸기", "관리창 이름", names_[selection_]);
    if (!name) return Outcome::Cancelled;
    if (!acceptableName(*name)) return Outcome::Refused;
    cad::sys::FileLock lock;
    if (!lockTabList(lock) || !validPosition(selection_)) return Outcome::Refused;
    names_[selection_] = std::move(*name);
    return saveTabList() ? Outcome::Done : Outcome::NotSaved;
}

ManagementWindows::Outcome ManagementWindows::deleteWindow() {
    if (selection_ == 0) {
        dialogs_.messageBox("기본 관리창은 삭제할 수 없습니다.", "삭제 에러",
                            cad::app::MB_OK | cad::app::MB_ICONERROR);
        return Outcome::Refused;
    }
    if (!validPosition(selection_)) return Outcome::Refused;
    if (dialogs_.messageBox("리스트를 정말로 삭제하시겠습니까?", "리스트 삭제",
                            cad::app::MB_OKCANCEL | cad::app::MB_ICONWARNING) != cad::app::IDOK) {
        return Outcome::Cancelled;
    }

    // The list files are found by position, so their renumbering goes under the tab list's
    // lock as well.
    cad::sys::FileLock lock;
    if (!lockTabList(lock) || !validPosition(selection_)) return Outcome::Refused;
    const int deleted = selection_;
    cad::sys::deleteFile(dataFolder_.listFile(deleted));
    names_.erase(names_.begin() + deleted);
    const bool saved = saveTabList();
    // Files behind the deleted one move up a number, since a window's file is found by its
    // position. A file that cannot move is left where it is; the tab list is saved already.
    const int count = static_cast<int>(names_.size());
    for (int k = deleted; k < count; ++k) {
        const std::string next = dataFolder_.listFile(k + 1);
        if (cad::sys::fileExists(next)) cad::sys::renameFile(next, dataFolder_.listFile(k));
    }

    selection_ = deleted - 1;
    loadList();
    return saved ? Outcome::Done : Outcome::NotSaved;
}

}  // namespace vantor
