// What a file was on disk at one moment, so that a program holding its content in memory can
// tell, before writing it back, whether something else wrote the file meanwhile.
#pragma once

#include <cstdint>
#include <string>

namespace cad::sys {

struct FileStamp {
    bool exists = false;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;  // a save by rename (ours, most editors') puts a new file there
    std::int64_t size = 0;
    std::int64_t modifiedNs = 0;
    // The status change time, which no program can set back: a writer that restores the
    // modification time (a copy keeping times) still moves it.
    std::int64_t changedNs = 0;

    // The stamp of the file at `path` now (a link is followed); exists is false when there is
    // no file to stat.
    static FileStamp of(const std::string& path);

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

}  // namespace cad::sys
