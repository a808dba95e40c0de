// Splitting a path into drive, folder, name and extension the way the C runtime's _splitpath
// does, and turning a path built the Windows way into the POSIX path of the same file.
#pragma once

#include <string>
#include <string_view>

namespace cad::sys {

struct PathParts {
    std::string drive;  // "C:" or empty
    std::string dir;    // up to and including the last separator
    std::string fname;  // the name without its extension
    std::string ext;    // from the last dot of the name, with the dot, or empty
};

// _splitpath for Windows and POSIX paths alike: '\\' and '/' both separate folders, and the
// drive is the first two characters only when the second is ':'. The parts concatenated give
// the path back. "C:\a\b.dwg" -> "C:", "\a\", "b", ".dwg"; ".hidden" -> "", "", "", ".hidden"
// (a leading dot starts the extension, as the runtime has it). Parts are not cut to the
// runtime's buffer sizes.
PathParts splitPath(std::string_view path);

// The module builds paths as the system describes them ("/opt/v/" + "\DATA" +
// "\UBList0.dat"); here that becomes the path naming the same file: every backslash becomes
// '/', and a run of separators collapses into one, which is how the Windows file system reads
// a doubled backslash inside a path. A drive prefix is kept as it stands.
std::string nativePath(std::string_view path);

}  // namespace cad::sys
