// Wildcard matching and the depth-first folder search.
#include "cad/sys/FolderSearch.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "cad/sys/AsciiCase.h"

namespace cad::sys {
namespace {

// Position after the UTF-8 character that starts at `pos` (continuation bytes belong to it).
std::size_t nextCharacter(std::string_view text, std::size_t pos) {
    ++pos;
    while (pos < text.size() && (static_cast<unsigned char>(text[pos]) & 0xC0) == 0x80) ++pos;
    return pos;
}

// Names are ordered as NTFS orders them: by upper-cased characters, so '_' sorts after the
// letters. Names equal but for case are ordered by their bytes so the order is total.
bool precedes(const std::string& a, const std::string& b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto ca = static_cast<unsigned char>(asciiUpper(a[i]));
        const auto cb = static_cast<unsigned char>(asciiUpper(b[i]));
        if (ca != cb) return ca < cb;
    }
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

struct FolderId {
    dev_t device;
    ino_t inode;
    bool operator==(const FolderId&) const = default;
};

struct Entry {
    std::string name;
    bool isFolder;
    FolderId id;
};

struct DirCloser {
    void operator()(DIR* dir) const { closedir(dir); }
};

class Search {
public:
    Search(const std::vector<std::string>& patterns, std::vector<std::string>* unreadable)
        : patterns_(patterns), unreadable_(unreadable) {}

    void folder(const std::string& path, FolderId id) {
        std::vector<Entry> entries;
        if (!read(path, entries)) {
            if (unreadable_) unreadable_->push_back(path);
            return;
        }
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return precedes(a.name, b.name); });
        searching_.push_back(id);
        for (const Entry& entry : entries) {
            const bool loop =
                std::find(searching_.begin(), searching_.end(), entry.id) != searching_.end();
            if (entry.isFolder && !loop) folder(join(path, entry.name), entry.id);
        }
        searching_.pop_back();
        for (const Entry& entry : entries) {
            if (!entry.isFolder && matchesAny(entry.name)) found_.push_back(join(path, entry.name));
        }
    }

    std::vector<std::string> takeFound() { return std::move(found_); }

private:
    static bool read(const std::string& path, std::vector<Entry>& entries) {
        const std::unique_ptr<DIR, DirCloser> dir(opendir(path.c_str()));
        if (!dir) return false;
        while (const dirent* item = readdir(dir.get())) {
            const std::string_view name = item->d_name;
            if (name == "." || name == "..") continue;
            // Following links: a link to a folder is searched like the folder. A broken link
            // cannot be statted and is listed as a file, as it is still an entry of the folder.
            struct stat status {};
            const bool known = fstatat(dirfd(dir.get()), item->d_name, &status, 0) == 0;
            entries.push_back({std::string(name),
                               known && S_ISDIR(status.st_mode),
                               {status.st_dev, status.st_ino}});
        }
        return true;
    }

    static std::string join(const std::string& folder, const std::string& name) {
        return folder.empty() || folder.back() == '/' ? folder + name : folder + '/' + name;
    }

    bool matchesAny(std::string_view name) const {
        return std::any_of(patterns_.begin(), patterns_.end(), [name](const std::string& pattern) {
            return matchesPattern(name, pattern);
        });
    }

    const std::vector<std::string>& patterns_;
    std::vector<std::string>* unreadable_;
    std::vector<FolderId> searching_;  // the folders from the top down to the current one
    std::vector<std::string> found_;
};

}  // namespace

bool matchesPattern(std::string_view name, std::string_view pattern) {
    std::size_t n = 0;
    std::size_t p = 0;
    // Where the last '*' resumes in the pattern and how much of the name it has taken so far:
    // on a mismatch the star takes one more character and matching starts again after it.
    std::size_t afterStar = std::string_view::npos;
    std::size_t starEnd = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            afterStar = ++p;
            starEnd = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            n = nextCharacter(name, n);
            ++p;
        } else if (p < pattern.size() && asciiUpper(pattern[p]) == asciiUpper(name[n])) {
            ++n;
            ++p;
        } else if (afterStar != std::string_view::npos) {
            starEnd = nextCharacter(name, starEnd);
            n = starEnd;
            p = afterStar;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

std::vector<std::string> findFiles(const std::string& folder,
                                   const std::vector<std::string>& patterns,
                                   std::vector<std::string>* unreadable) {
    Search search(patterns, unreadable);
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0) {
        if (unreadable) unreadable->push_back(folder);
        return {};
    }
    search.folder(folder, {status.st_dev, status.st_ino});
    return search.takeFound();
}

}  // namespace cad::sys
