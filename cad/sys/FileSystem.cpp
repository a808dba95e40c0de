// File-system services with the semantics of the Windows C runtime.
#include "cad/sys/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace cad::sys {

ErrorStatus errorStatusFromErrno(int error) {
    switch (error) {
        case 0:
            return ErrorStatus::eOk;
        case ENOENT:
        case ENOTDIR:
            return ErrorStatus::eFileNotFound;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
        case EIO:
            return ErrorStatus::eFileWriteError;
        case ENOMEM:
            return ErrorStatus::eOutOfMemory;
        case EINVAL:
        case ENAMETOOLONG:
            return ErrorStatus::eInvalidInput;
        default:
            return ErrorStatus::eFileAccessErr;
    }
}

std::optional<std::int64_t> lastWriteTime(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return std::nullopt;
    return static_cast<std::int64_t>(info.st_mtim.tv_sec);
}

bool fileExists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool folderExists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

ErrorStatus renameFile(const std::string& from, const std::string& to) {
    // The missing source is reported first, as the C runtime does when both apply.
    struct stat info {};
    if (::lstat(from.c_str(), &info) != 0) return errorStatusFromErrno(errno);
    // RENAME_NOREPLACE makes the refusal atomic; file systems without it get the check.
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return ErrorStatus::eOk;
    }
    if (errno == EEXIST) return ErrorStatus::eFileAccessErr;
    if (errno != EINVAL && errno != ENOSYS) return errorStatusFromErrno(errno);
    if (::lstat(to.c_str(), &info) == 0) return ErrorStatus::eFileAccessErr;
    if (::rename(from.c_str(), to.c_str()) == 0) return ErrorStatus::eOk;
    return errorStatusFromErrno(errno);
}

ErrorStatus deleteFile(const std::string& path) {
    if (::unlink(path.c_str()) == 0) return ErrorStatus::eOk;
    return errorStatusFromErrno(errno);
}

int makeDirectory(const std::string& path) {
    return ::mkdir(path.c_str(), 0777) == 0 ? 0 : -1;
}

}  // namespace cad::sys
