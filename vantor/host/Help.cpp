// Help file path and the desktop opener.
#include "vantor/host/Help.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

extern char** environ;

namespace vantor {

namespace {

constexpr std::string_view kOpener = "xdg-open";

bool onSearchPath(std::string_view program) {
    const char* path = std::getenv("PATH");
    if (path == nullptr) return false;
    std::string_view folders = path;
    while (!folders.empty()) {
        std::size_t colon = folders.find(':');
        std::string_view folder = folders.substr(0, colon);
        if (!folder.empty()) {
            std::string candidate = std::string(folder) + "/" + std::string(program);
            if (::access(candidate.c_str(), X_OK) == 0) return true;
        }
        if (colon == std::string_view::npos) break;
        folders.remove_prefix(colon + 1);
    }
    return false;
}

}  // namespace

std::string Help::filePath(std::string_view moduleFolder) {
    std::string path = std::string(moduleFolder) + "Vantor.chm";
    for (std::size_t at = path.find(".HLP"); at != std::string::npos; at = path.find(".HLP", at))
        path.replace(at, 4, ".chm");
    return path;
}

std::string Help::page() const {
    return (std::filesystem::path(file_).parent_path() / "help" / "index.html").string();
}

bool Help::open() {
    if (unavailable_) return false;
    const std::string target = page();
    if (!std::filesystem::is_regular_file(target) || !onSearchPath(kOpener)) {
        unavailable_ = true;
        return false;
    }
    // The opener may wait for the browser it starts; a shell puts it in the background so
    // the host's user-interface thread only waits for the shell.
    std::string script = std::string(kOpener) + " \"$1\" >/dev/null 2>&1 &";
    const char* argv[] = {"sh", "-c", script.c_str(), "sh", target.c_str(), nullptr};
    pid_t shell = 0;
    if (::posix_spawnp(&shell, "sh", nullptr, nullptr, const_cast<char**>(argv), environ) != 0) {
        unavailable_ = true;
        return false;
    }
    int status = 0;
    ::waitpid(shell, &status, 0);
    return true;
}

}  // namespace vantor
