// Why the last file operation of this thread failed, in words the user can act on: the file's
// name and the operating system's reason ("No space left on device"), not only a status.
#pragma once

#include <string>
#include <string_view>

namespace cad::sys {

// The status codes say what kind of failure it was; this says which file and why, so that a
// message can tell a full disk from a read-only folder from a file another user holds.
struct FileError {
    std::string path;
    int osError = 0;   // errno of the failing call; 0 when no system call failed (a lock held)
    std::string text;  // a whole sentence: "cannot write /lib/UBList0.dat: Permission denied"
};

// Records "cannot <action> <path>: <strerror(osError)>" as this thread's last file error.
void setFileError(std::string_view action, const std::string& path, int osError);
// Records a failure that is no system call's (a lock another process holds).
void setFileErrorText(const std::string& path, std::string text);
const FileError& lastFileError();
void clearFileError();

// The system's text for an error number, independent of the thread's locale.
std::string osErrorText(int osError);

}  // namespace cad::sys
