// _splitpath semantics and the Windows-to-POSIX path conversion.
#include "cad/sys/SplitPath.h"

namespace cad::sys {

PathParts splitPath(std::string_view path) {
    PathParts parts;
    if (path.size() >= 2 && path[1] == ':') {
        parts.drive = path.substr(0, 2);
        path.remove_prefix(2);
    }
    const std::size_t lastSeparator = path.find_last_of("\\/");
    if (lastSeparator != std::string_view::npos) {
        parts.dir = path.substr(0, lastSeparator + 1);
        path.remove_prefix(lastSeparator + 1);
    }
    const std::size_t lastDot = path.rfind('.');
    if (lastDot != std::string_view::npos) {
        parts.ext = path.substr(lastDot);
        path.remove_suffix(path.size() - lastDot);
    }
    parts.fname = path;
    return parts;
}

std::string nativePath(std::string_view path) {
    std::string native;
    native.reserve(path.size());
    for (char c : path) {
        const bool separator = c == '\\' || c == '/';
        if (!separator) {
            native += c;
        } else if (native.empty() || native.back() != '/') {
            native += '/';
        }
    }
    return native;
}

}  // namespace cad::sys
