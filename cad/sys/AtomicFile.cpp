// Saving a file so that a crash or a failed write never leaves it half-written.
#include "cad/sys/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <utility>

#include "cad/sys/FileError.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/WriteFaults.h"

namespace cad::sys {

namespace fs = std::filesystem;

namespace {

// Small writes (one INI line at a time) are gathered so the file sees few system calls.
constexpr std::size_t kFlushThreshold = 64 * 1024;

// The name must be unique between threads and processes saving into the same folder, and
// hidden so that folder scans and file dialogs do not show it while the save runs.
// The clock part keeps names apart between machines sharing a network folder.
std::string temporaryName(const std::string& targetName) {
    static std::atomic<unsigned> counter{0};
    auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    // Keep the whole name within the file system's limit of 255 bytes.
    return "." + targetName.substr(0, 180) + ".tmp" + std::to_string(::getpid()) + "-" +
           std::to_string(counter++) + "-" + std::to_string(ticks);
}

}  // namespace

AtomicFile::~AtomicFile() {
    discard();
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      target_(std::move(other.target_)),
      temporary_(std::move(other.temporary_)),
      buffer_(std::move(other.buffer_)),
      writeStatus_(std::exchange(other.writeStatus_, ErrorStatus::eOk)),
      osError_(std::exchange(other.osError_, 0)) {}

AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept {
    if (this != &other) {
        discard();
        fd_ = std::exchange(other.fd_, -1);
        target_ = std::move(other.target_);
        temporary_ = std::move(other.temporary_);
        buffer_ = std::move(other.buffer_);
        writeStatus_ = std::exchange(other.writeStatus_, ErrorStatus::eOk);
        osError_ = std::exchange(other.osError_, 0);
    }
    return *this;
}

ErrorStatus AtomicFile::open(const std::string& targetPath) {
    if (isOpen()) return ErrorStatus::eInvalidOpenState;
    if (targetPath.empty()) return ErrorStatus::eInvalidInput;

    fs::path target(targetPath);
    std::error_code error;
    // Saving through a symbolic link updates the file it points to, not the link.
    if (fs::is_symlink(target, error)) {
        fs::path real = fs::canonical(target, error);
        if (!error) target = real;
    }
    target_ = target.string();
    osError_ = 0;
    if (folderExists(target_)) return failed(EISDIR);
    fs::path folder = target.parent_path();
    if (folder.empty()) folder = ".";

    for (unsigned attempt = 0; attempt < 100; ++attempt) {
        fs::path candidate = folder / temporaryName(target.filename().string());
        // Created with the ordinary mode so the umask applies as for any new file.
        int fd = WriteFaults::run([&] {
            return ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        });
        if (fd >= 0) {
            fd_ = fd;
            temporary_ = candidate.string();
            buffer_.clear();
            writeStatus_ = ErrorStatus::eOk;
            return ErrorStatus::eOk;
        }
        if (errno != EEXIST) return failed(errno);
    }
    return failed(EEXIST);
}

// Remembers the first failure and tells the user's side which file and why; the status is
// what the folder's refusal or the device's failure means to a caller.
ErrorStatus AtomicFile::failed(int osError) {
    if (osError_ == 0) {
        osError_ = osError;
        setFileError("write", target_, osError);
    }
    return osError == EISDIR ? ErrorStatus::eFileAccessErr : errorStatusFromErrno(osError);
}

ErrorStatus AtomicFile::write(std::string_view bytes) {
    if (!isOpen()) return ErrorStatus::eInvalidOpenState;
    if (writeStatus_ != ErrorStatus::eOk) return writeStatus_;
    if (buffer_.size() + bytes.size() < kFlushThreshold) {
        buffer_.append(bytes);
        return ErrorStatus::eOk;
    }
    // A large piece (a whole drawing) goes straight to the file: copying it into the buffer
    // first only doubled the memory a save takes.
    if (flushBuffer() != ErrorStatus::eOk) return writeStatus_;
    return writeDirect(bytes);
}

ErrorStatus AtomicFile::flushBuffer() {
    writeDirect(buffer_);
    buffer_.clear();
    return writeStatus_;
}

ErrorStatus AtomicFile::writeDirect(std::string_view bytes) {
    std::size_t done = 0;
    while (done < bytes.size() && writeStatus_ == ErrorStatus::eOk) {
        ssize_t written = WriteFaults::run(
            [&] { return ::write(fd_, bytes.data() + done, bytes.size() - done); });
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            // A write that takes nothing without an error is a full device all the same.
            writeStatus_ = failed(written < 0 ? errno : ENOSPC);
            break;
        }
        done += static_cast<std::size_t>(written);
    }
    return writeStatus_;
}

ErrorStatus AtomicFile::commit() {
    if (!isOpen()) return ErrorStatus::eInvalidOpenState;
    ErrorStatus status = flushBuffer();

    struct stat old {};
    if (status == ErrorStatus::eOk && ::stat(target_.c_str(), &old) == 0 &&
        ::fchmod(fd_, old.st_mode & 07777) != 0) {
        status = failed(errno);
    }
    // Without the sync a crash soon after the rename can leave an empty file under the
    // target's name on file systems that order metadata before data.
    if (status == ErrorStatus::eOk && WriteFaults::run([&] { return ::fsync(fd_); }) != 0)
        status = failed(errno);
    int fd = std::exchange(fd_, -1);
    // Network file systems may report a failed write only when the file is closed.
    const int closed = ::close(fd);
    if (WriteFaults::run([closed] { return closed; }) != 0 && status == ErrorStatus::eOk) {
        status = failed(errno);
    }
    if (status == ErrorStatus::eOk &&
        WriteFaults::run([&] { return ::rename(temporary_.c_str(), target_.c_str()); }) != 0) {
        status = failed(errno);
    }
    if (status != ErrorStatus::eOk) {
        ::unlink(temporary_.c_str());
        temporary_.clear();
        return status;
    }

    // Make the rename itself durable; a failure here leaves a complete file either way.
    fs::path folder = fs::path(target_).parent_path();
    int folderFd =
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd >= 0) {
        ::fsync(folderFd);
        ::close(folderFd);
    }
    temporary_.clear();
    return ErrorStatus::eOk;
}

void AtomicFile::discard() {
    if (!isOpen()) return;
    ::close(std::exchange(fd_, -1));
    ::unlink(temporary_.c_str());
    temporary_.clear();
    buffer_.clear();
}

}  // namespace cad::sys
