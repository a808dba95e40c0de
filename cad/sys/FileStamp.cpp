// Stamps of files on disk.
#include "cad/sys/FileStamp.h"

#include <sys/stat.h>

namespace cad::sys {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileStamp FileStamp::of(const std::string& path) {
    FileStamp stamp;
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return stamp;
    stamp.exists = true;
    stamp.device = static_cast<std::uint64_t>(info.st_dev);
    stamp.inode = static_cast<std::uint64_t>(info.st_ino);
    stamp.size = static_cast<std::int64_t>(info.st_size);
    stamp.modifiedNs = nanoseconds(info.st_mtim);
    stamp.changedNs = nanoseconds(info.st_ctim);
    return stamp;
}

}  // namespace cad::sys
