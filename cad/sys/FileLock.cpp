// Taking, judging, taking over and releasing lock files.
#include "cad/sys/FileLock.h"

#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <ctime>
#include <filesystem>
#include <thread>
#include <utility>

#include "cad/sys/FileError.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/LocalTime.h"

namespace cad::sys {

namespace fs = std::filesystem;

namespace {

std::atomic<std::int64_t> defaultWaitMs{5000};

std::string thisUser() {
    char buffer[1024];
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found)
        return found->pw_name;
    if (const char* name = std::getenv("USER"); name && *name) return name;
    return "uid " + std::to_string(::geteuid());
}

std::string thisMachine() {
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0 || name[0] == '\0') return "unknown";
    return name;
}

// A name no other taker, in this process or another, uses at the same time.
std::string uniqueBeside(const std::string& lockPath, std::string_view what) {
    static std::atomic<unsigned> counter{0};
    return lockPath + "." + std::string(what) + std::to_string(::getpid()) + "-" +
           std::to_string(counter++);
}

// Open-file-description locks belong to the open file, not the process, so two FileLock
// objects of one process exclude each other, and closing some other descriptor of the same
// file does not drop them (as it would a classic POSIX lock).
bool setLock(int fd, short type) {
    struct flock request {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    return ::fcntl(fd, F_OFD_SETLK, &request) == 0;
}

enum class Probe { Locked, Unlocked, Unsupported };

Probe probeLock(int fd) {
    struct flock request {};
    request.l_type = F_WRLCK;
    request.l_whence = SEEK_SET;
    if (::fcntl(fd, F_OFD_GETLK, &request) != 0) return Probe::Unsupported;
    return request.l_type == F_UNLCK ? Probe::Unlocked : Probe::Locked;
}

bool processAlive(std::int64_t pid) {
    if (pid <= 0 || pid > INT32_MAX) return false;
    return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

std::string holderText(bool advisory) {
    return "user=" + thisUser() + "\nmachine=" + thisMachine() +
           "\npid=" + std::to_string(::getpid()) +
           "\ntime=" + std::to_string(static_cast<std::int64_t>(std::time(nullptr))) +
           "\nlock=" + (advisory ? "advisory" : "file") + "\n";
}

std::optional<FileLock::Holder> parseHolder(std::string_view text) {
    FileLock::Holder holder;
    bool named = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
        const std::size_t equals = line.find('=');
        if (equals == line.npos) continue;
        const std::string_view key = line.substr(0, equals);
        const std::string_view value = line.substr(equals + 1);
        auto number = [&value](std::int64_t& out) {
            std::from_chars(value.data(), value.data() + value.size(), out);
        };
        if (key == "user") holder.user = value;
        if (key == "machine") {
            holder.machine = value;
            named = true;
        }
        if (key == "pid") number(holder.pid);
        if (key == "time") number(holder.since);
        if (key == "lock") holder.advisory = value == "advisory";
    }
    if (!named || holder.pid <= 0) return std::nullopt;
    return holder;
}

std::string readAll(int fd) {
    std::string text;
    char buffer[512];
    for (off_t at = 0; text.size() < 4096;) {
        const ssize_t got = ::pread(fd, buffer, sizeof buffer, at);
        if (got <= 0) break;
        text.append(buffer, static_cast<std::size_t>(got));
        at += got;
    }
    return text;
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// A lock file whose holder cannot be read yet is being made by the fallback path, which
// writes it after creating it; only one older than this is taken for damage.
constexpr std::int64_t kUnreadableGraceSeconds = 10;

struct Examined {
    bool gone = false;  // the lock file went away while being looked at: try again at once
    bool stale = false;
    std::optional<FileLock::Holder> holder;
};

// Removes the stale lock file `fd` was opened on, unless another taker got there first.
// Renamed aside rather than unlinked, and put back when the name turns out to have held a
// fresh lock by then, so that a taker that lost a race never deletes a live lock.
void takeOver(int fd, bool writable, const struct stat& stale, const std::string& lockPath) {
    // With advisory locks, only one taker at a time gets here; the owner, had it been alive,
    // would have kept the lock.
    if (probeLock(fd) != Probe::Unsupported && !setLock(fd, writable ? F_WRLCK : F_RDLCK)) return;
    struct stat current {};
    if (::stat(lockPath.c_str(), &current) != 0 || current.st_ino != stale.st_ino ||
        current.st_dev != stale.st_dev)
        return;
    const std::string aside = uniqueBeside(lockPath, "stale");
    if (::rename(lockPath.c_str(), aside.c_str()) != 0) return;
    struct stat moved {};
    if (::stat(aside.c_str(), &moved) == 0 && moved.st_ino != stale.st_ino) {
        [[maybe_unused]] int restored = ::link(aside.c_str(), lockPath.c_str());
    }
    ::unlink(aside.c_str());
}

Examined examine(const std::string& lockPath, const std::string& machine) {
    Examined result;
    bool writable = true;
    int fd = ::open(lockPath.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0 && (errno == EACCES || errno == EROFS)) {
        writable = false;
        fd = ::open(lockPath.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0) {
        result.gone = errno == ENOENT;
        return result;
    }
    struct stat info {};
    ::fstat(fd, &info);
    result.holder = parseHolder(readAll(fd));
    const Probe probe = probeLock(fd);
    const std::int64_t age = static_cast<std::int64_t>(std::time(nullptr)) - info.st_mtim.tv_sec;

    if (result.holder) {
        // The system drops a process's advisory locks when it ends, on whatever machine.
        result.stale = (result.holder->advisory && probe == Probe::Unlocked) ||
                       (result.holder->machine == machine && !processAlive(result.holder->pid));
    } else {
        result.stale = probe == Probe::Unlocked && age > kUnreadableGraceSeconds;
    }
    if (result.stale) takeOver(fd, writable, info, lockPath);
    ::close(fd);
    return result;
}

std::string heldMessage(const std::string& target, const std::string& lockPath,
                        const std::optional<FileLock::Holder>& holder) {
    if (!holder) return target + " is locked by another program (" + lockPath + ")";
    return target + " is being changed by " + (holder->user.empty() ? "?" : holder->user) + " on " +
           holder->machine + " (process " + std::to_string(holder->pid) + ") since " +
           localTimeText(holder->since) + "; if that program has ended, delete " + lockPath;
}

}  // namespace

FileLock::~FileLock() {
    release();
}

FileLock::FileLock(FileLock&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      device_(other.device_),
      inode_(other.inode_),
      lockPath_(std::move(other.lockPath_)),
      message_(std::move(other.message_)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    if (this != &other) {
        release();
        fd_ = std::exchange(other.fd_, -1);
        device_ = other.device_;
        inode_ = other.inode_;
        lockPath_ = std::move(other.lockPath_);
        message_ = std::move(other.message_);
    }
    return *this;
}

std::chrono::milliseconds FileLock::defaultWait() {
    return std::chrono::milliseconds(defaultWaitMs.load());
}

void FileLock::setDefaultWait(std::chrono::milliseconds wait) {
    defaultWaitMs.store(wait.count());
}

std::string FileLock::lockPathFor(const std::string& targetPath) {
    fs::path target(targetPath);
    std::error_code error;
    if (fs::is_symlink(target, error)) {
        fs::path real = fs::canonical(target, error);
        if (!error) target = real;
    }
    return (target.parent_path() / ("." + target.filename().string() + ".lock")).string();
}

std::optional<FileLock::Holder> FileLock::readHolder(const std::string& lockPath) {
    const int fd = ::open(lockPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    std::optional<Holder> holder = parseHolder(readAll(fd));
    ::close(fd);
    return holder;
}

ErrorStatus FileLock::acquire(const std::string& targetPath) {
    return acquire(targetPath, defaultWait());
}

ErrorStatus FileLock::acquire(const std::string& targetPath, std::chrono::milliseconds wait) {
    if (isHeld()) return ErrorStatus::eInvalidOpenState;
    message_.clear();
    const std::string lockPath = lockPathFor(targetPath);
    auto fail = [&](int osError, std::string_view action, const std::string& path) {
        setFileError(action, path, osError);
        message_ = "cannot lock " + targetPath + ": " + lastFileError().text;
        setFileErrorText(targetPath, message_);
        return errorStatusFromErrno(osError);
    };

    // Our lock file is made whole under a name of its own, so no one ever reads it half
    // written under the lock's name.
    const std::string own = uniqueBeside(lockPath, "new");
    int fd = ::open(own.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return fail(errno, "create", own);
    const bool advisory = setLock(fd, F_WRLCK);
    if (!writeAll(fd, holderText(advisory))) {
        const int error = errno;
        ::close(fd);
        ::unlink(own.c_str());
        return fail(error, "write", own);
    }

    const std::string machine = thisMachine();
    const auto deadline = std::chrono::steady_clock::now() + wait;
    auto pause = std::chrono::milliseconds(2);
    std::optional<Holder> lastHolder;
    bool taken = false;
    while (true) {
        if (::link(own.c_str(), lockPath.c_str()) == 0) {
            taken = true;
            break;
        }
        const int error = errno;
        // Over NFS the answer to a link that was made can be lost; the link count tells.
        struct stat info {};
        if (::fstat(fd, &info) == 0 && info.st_nlink == 2) {
            taken = true;
            break;
        }
        if (error != EEXIST) {
            // A file system without hard links: the lock file is made in place, and is
            // nameless for a moment (see kUnreadableGraceSeconds).
            if (error != EPERM && error != ENOSYS && error != EOPNOTSUPP) {
                ::close(fd);
                ::unlink(own.c_str());
                return fail(error, "create", lockPath);
            }
            const int direct =
                ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (direct >= 0) {
                ::close(fd);
                ::unlink(own.c_str());
                fd = direct;
                writeAll(fd, holderText(setLock(fd, F_WRLCK)));
                taken = true;
                break;
            }
            if (errno != EEXIST) {
                const int directError = errno;
                ::close(fd);
                ::unlink(own.c_str());
                return fail(directError, "create", lockPath);
            }
        }
        Examined examined = examine(lockPath, machine);
        if (examined.holder) lastHolder = examined.holder;
        // Released while we looked: try again at once.
        if (examined.gone && !examined.stale) continue;
        const auto now = std::chrono::steady_clock::now();
        if (now >= deadline) break;
        // Taken over just now, or being removed by another taker: try again soon. A stale
        // file that cannot be removed is met again until the deadline.
        if (examined.stale) {
            std::this_thread::yield();
            continue;
        }
        // Spread out so that two waiting programs do not keep trying in step.
        const auto jitter = std::chrono::microseconds(::getpid() % 997);
        std::this_thread::sleep_for(
            std::min<std::chrono::steady_clock::duration>(pause + jitter, deadline - now));
        pause = std::min(pause * 2, std::chrono::milliseconds(50));
    }
    ::unlink(own.c_str());
    if (!taken) {
        ::close(fd);
        message_ = heldMessage(targetPath, lockPath, lastHolder);
        setFileErrorText(targetPath, message_);
        return ErrorStatus::eLockViolation;
    }
    struct stat info {};
    ::fstat(fd, &info);
    fd_ = fd;
    device_ = info.st_dev;
    inode_ = info.st_ino;
    lockPath_ = lockPath;
    return ErrorStatus::eOk;
}

void FileLock::release() {
    if (!isHeld()) return;
    // Only our own lock file goes: one taken over from us (we were thought dead) is another's.
    struct stat current {};
    if (::stat(lockPath_.c_str(), &current) == 0 && current.st_ino == inode_ &&
        current.st_dev == device_)
        ::unlink(lockPath_.c_str());
    // Closing last drops the advisory lock, after the name is gone: a waiter that judged the
    // file in between finds it held, or finds the name gone or another file under it.
    ::close(std::exchange(fd_, -1));
}

}  // namespace cad::sys
