// The in-memory list of registered drawings and the rules for adding a path to it.
#include "vantor/registry/DrawingList.h"

#include <algorithm>

#include "cad/app/UserDialogs.h"
#include "cad/sys/SplitPath.h"
#include "vantor/registry/ListFile.h"

namespace vantor {

namespace {

// One pass from the left, as a find-and-replace does: three backslashes become two.
std::string collapseDoubledBackslashes(std::string_view path) {
    std::string collapsed;
    collapsed.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        collapsed += path[i];
        if (path[i] == '\\' && i + 1 < path.size() && path[i + 1] == '\\') ++i;
    }
    return collapsed;
}

// A network path starts with a doubled backslash that must stay.
std::string storedForm(std::string_view path) {
    return !path.empty() && path.front() == '\\' ? std::string(path)
                                                 : collapseDoubledBackslashes(path);
}

}  // namespace

RegisteredDrawing* DrawingList::addPath(std::string_view path, cad::app::UserDialogs& dialogs) {
    if (contains(path)) return nullptr;
    std::string stored = storedForm(path);
    if (!ListFile::fits(stored)) {
        dialogs.messageBox("\"" + stored +
                               "\"\n경로가 너무 깁니다. 도면 경로는 259바이트까지 등록할 수 "
                               "있습니다.",
                           "도면 등록 에러", cad::app::MB_OK | cad::app::MB_ICONERROR);
        return nullptr;
    }

    cad::sys::PathParts parts = cad::sys::splitPath(stored);
    RegisteredDrawing& entry = entries_.emplace_back();
    entry.path = std::move(stored);
    entry.drive = std::move(parts.drive);
    entry.dir = std::move(parts.dir);
    entry.name = std::move(parts.fname);
    entry.ext = std::move(parts.ext);
    entry.active = 1;
    return &entry;
}

bool DrawingList::contains(std::string_view path) const {
    // Both spellings count: the path as given, as every list on disk was built, and its stored
    // form, so a doubled spelling of a listed drawing is not listed a second time.
    const std::string stored = storedForm(path);
    return std::any_of(entries_.begin(), entries_.end(), [&](const RegisteredDrawing& entry) {
        return entry.path == path || entry.path == stored;
    });
}

bool DrawingList::remove(const RegisteredDrawing* entry) {
    auto found = std::find_if(entries_.begin(), entries_.end(),
                              [entry](const RegisteredDrawing& e) { return &e == entry; });
    if (found == entries_.end()) return false;
    entries_.erase(found);
    return true;
}

std::vector<std::string> DrawingList::paths() const {
    std::vector<std::string> paths;
    paths.reserve(entries_.size());
    for (const RegisteredDrawing& entry : entries_) paths.push_back(entry.path);
    return paths;
}

}  // namespace vantor
