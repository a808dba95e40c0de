// Reading a file with the C runtime's share modes, kept with advisory locks.
#include "cad/sys/SharedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "cad/sys/FileSystem.h"

namespace cad::sys {

SharedFile::~SharedFile() {
    close();
}

SharedFile::SharedFile(SharedFile&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

SharedFile& SharedFile::operator=(SharedFile&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
}

ErrorStatus SharedFile::open(const std::string& path, ShareMode mode) {
    if (isOpen()) return ErrorStatus::eInvalidOpenState;
    if (mode != ShareMode::DenyWrite && mode != ShareMode::DenyNone) {
        return ErrorStatus::eInvalidInput;
    }
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errorStatusFromErrno(errno);
    struct stat info {};
    if (::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return ErrorStatus::eFileAccessErr;
    }
    if (mode == ShareMode::DenyWrite) {
        // flock belongs to this open file description, so a second open in the same process
        // is refused just as one in another process is. Only a held lock refuses the open: a
        // file system without flock support still lets the drawing be read.
        int result;
        do {
            result = ::flock(fd, LOCK_EX | LOCK_NB);
        } while (result != 0 && errno == EINTR);
        if (result != 0 && errno == EWOULDBLOCK) {
            ::close(fd);
            return ErrorStatus::eFileAccessErr;
        }
    }
    fd_ = fd;
    return ErrorStatus::eOk;
}

ErrorStatus SharedFile::readAll(std::string& out) {
    if (!isOpen()) return ErrorStatus::eInvalidOpenState;
    out.clear();
    std::int64_t expected = size();
    if (expected > 0) out.reserve(static_cast<std::size_t>(expected));
    // pread leaves the file position alone, so every call reads from the start.
    char chunk[64 * 1024];
    off_t offset = 0;
    for (;;) {
        ssize_t got = ::pread(fd_, chunk, sizeof chunk, offset);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return ErrorStatus::eFileReadError;
        if (got == 0) return ErrorStatus::eOk;
        out.append(chunk, static_cast<std::size_t>(got));
        offset += got;
    }
}

std::int64_t SharedFile::size() const {
    struct stat info {};
    if (!isOpen() || ::fstat(fd_, &info) != 0) return -1;
    return static_cast<std::int64_t>(info.st_size);
}

void SharedFile::close() {
    // Closing the last descriptor of the open file description releases the lock.
    if (isOpen()) ::close(std::exchange(fd_, -1));
}

}  // namespace cad::sys
