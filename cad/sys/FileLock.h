// One writer at a time for a file that several programs read, change and write back (the
// settings, the window lists, a library drawing), on one machine or on a shared folder.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "cad/sys/ErrorStatus.h"

namespace cad::sys {

// The lock is a file beside the target (".Bolts.dxf.lock") naming who holds it; it appears
// under that name only complete (written under a unique name, then hard-linked), so its
// existence is the lock even where the system's advisory locks do not work (some network
// file systems). Where they do, the holder also keeps an advisory lock on it, so a lock left
// by a crashed program is recognised from any machine; a lock of a dead process on this
// machine is recognised by its process id. Either is taken over.
//
// Take the lock before reading the target and keep it until the new content has been renamed
// into place: a second writer then reads what the first one wrote. Within one process two
// FileLock objects exclude each other as two processes do, so a thread must not take a lock
// it already holds.
class FileLock {
public:
    struct Holder {
        std::string user;
        std::string machine;
        std::int64_t pid = 0;
        std::int64_t since = 0;  // seconds since the epoch
        bool advisory = false;   // the holder keeps an advisory lock on the lock file
    };

    FileLock() = default;
    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Takes the lock of the file at targetPath (which need not exist), waiting up to `wait`
    // while another holds it. eLockViolation when it is still held after the wait; the
    // lock file's folder may refuse it too (eFileNotFound, eFileAccessErr, ...). On failure
    // message() and lastFileError() name the file and the holder or the system's reason.
    ErrorStatus acquire(const std::string& targetPath);
    ErrorStatus acquire(const std::string& targetPath, std::chrono::milliseconds wait);
    // Removes the lock file and lets go; nothing happens when not held.
    void release();

    bool isHeld() const { return fd_ >= 0; }
    const std::string& lockPath() const { return lockPath_; }
    const std::string& message() const { return message_; }

    // ".<name>.lock" in the target's folder; a link is followed, so that every name of one
    // file shares one lock.
    static std::string lockPathFor(const std::string& targetPath);
    // The holder a lock file names; nullopt when it is missing or names nobody readable.
    static std::optional<Holder> readHolder(const std::string& lockPath);

    // How long acquire() waits by default: a few seconds, long enough for another program's
    // read-change-write of a list or a drawing, short enough for a user to wait for.
    static std::chrono::milliseconds defaultWait();
    static void setDefaultWait(std::chrono::milliseconds wait);

private:
    int fd_ = -1;
    dev_t device_ = 0;
    ino_t inode_ = 0;
    std::string lockPath_;
    std::string message_;
};

}  // namespace cad::sys
