// A buffered file stream with the Windows C runtime's fopen modes and text-mode translation.
#include "cad/sys/CrtFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "cad/sys/FileError.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/WriteFaults.h"

namespace cad::sys {

namespace {

constexpr unsigned char kCr = 0x0D;
constexpr unsigned char kLf = 0x0A;
constexpr unsigned char kEndOfData = 0x1A;

struct Mode {
    int flags = 0;
    bool writing = false;
    bool text = true;
};

bool parseMode(std::string_view text, Mode& mode) {
    if (text.empty() || text.size() > 2) return false;
    switch (text[0]) {
        case 'r':
            mode.flags = O_RDONLY;
            break;
        case 'w':
            mode.flags = O_WRONLY | O_CREAT | O_TRUNC;
            break;
        case 'a':
            mode.flags = O_WRONLY | O_CREAT | O_APPEND;
            break;
        default:
            return false;
    }
    mode.writing = text[0] != 'r';
    if (text.size() == 2) {
        if (text[1] != 'b' && text[1] != 't') return false;
        mode.text = text[1] == 't';
    }
    return true;
}

}  // namespace

CrtFile::~CrtFile() {
    if (isOpen()) close();
}

CrtFile::CrtFile(CrtFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      replacing_(std::move(other.replacing_)),
      path_(std::move(other.path_)),
      text_(other.text_),
      writing_(other.writing_),
      ended_(other.ended_),
      failed_(other.failed_),
      buffer_(std::move(other.buffer_)),
      pos_(std::exchange(other.pos_, 0)),
      end_(std::exchange(other.end_, 0)) {}

CrtFile& CrtFile::operator=(CrtFile&& other) noexcept {
    if (this != &other) {
        if (isOpen()) close();
        fd_ = std::exchange(other.fd_, -1);
        replacing_ = std::move(other.replacing_);
        path_ = std::move(other.path_);
        text_ = other.text_;
        writing_ = other.writing_;
        ended_ = other.ended_;
        failed_ = other.failed_;
        buffer_ = std::move(other.buffer_);
        pos_ = std::exchange(other.pos_, 0);
        end_ = std::exchange(other.end_, 0);
    }
    return *this;
}

ErrorStatus CrtFile::open(const std::string& path, std::string_view modeText) {
    if (isOpen()) return ErrorStatus::eInvalidOpenState;
    Mode mode;
    if (!parseMode(modeText, mode)) return ErrorStatus::eInvalidInput;

    int fd =
        mode.writing
            ? WriteFaults::run([&] { return ::open(path.c_str(), mode.flags | O_CLOEXEC, 0666); })
            : ::open(path.c_str(), mode.flags | O_CLOEXEC, 0666);
    if (fd < 0) {
        if (mode.writing) setFileError("write", path, errno);
        return errorStatusFromErrno(errno);
    }
    // Linux lets a folder be opened for reading; the C runtime refuses it.
    struct stat info {};
    if (::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return ErrorStatus::eFileAccessErr;
    }

    fd_ = fd;
    start(path, mode.text, mode.writing);
    return ErrorStatus::eOk;
}

ErrorStatus CrtFile::openReplacing(const std::string& path, std::string_view modeText) {
    if (isOpen()) return ErrorStatus::eInvalidOpenState;
    Mode mode;
    if (!parseMode(modeText, mode) || modeText[0] != 'w') return ErrorStatus::eInvalidInput;
    if (ErrorStatus es = replacing_.open(path); es != ErrorStatus::eOk) return es;
    start(path, mode.text, true);
    return ErrorStatus::eOk;
}

void CrtFile::start(const std::string& path, bool text, bool writing) {
    path_ = path;
    text_ = text;
    writing_ = writing;
    ended_ = false;
    failed_ = false;
    buffer_.resize(kBufferSize);
    pos_ = 0;
    end_ = 0;
}

void CrtFile::flush() {
    if (replacing_.isOpen()) {
        if (!failed_ && end_ > 0) {
            failed_ = replacing_.write(std::string_view(
                          reinterpret_cast<const char*>(buffer_.data()), end_)) != ErrorStatus::eOk;
        }
        end_ = 0;
        return;
    }
    std::size_t done = 0;
    while (done < end_ && !failed_) {
        ssize_t written =
            WriteFaults::run([&] { return ::write(fd_, buffer_.data() + done, end_ - done); });
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            failed_ = true;
            setFileError("write", path_, written < 0 ? errno : ENOSPC);
        } else {
            done += static_cast<std::size_t>(written);
        }
    }
    end_ = 0;
}

std::size_t CrtFile::write(const void* data, std::size_t size) {
    if (!isOpen() || !writing_ || failed_) return 0;
    const auto* source = static_cast<const unsigned char*>(data);
    std::size_t done = 0;
    while (done < size) {
        // Room for the two bytes a line feed becomes.
        if (end_ + 2 > buffer_.size()) {
            flush();
            if (failed_) return done;
        }
        if (text_ && source[done] == kLf) {
            buffer_[end_++] = kCr;
            buffer_[end_++] = kLf;
            ++done;
            continue;
        }
        std::size_t run = std::min(buffer_.size() - end_, size - done);
        if (text_) {
            const void* lineFeed = std::memchr(source + done, kLf, run);
            if (lineFeed) run = static_cast<const unsigned char*>(lineFeed) - (source + done);
        }
        std::memcpy(buffer_.data() + end_, source + done, run);
        end_ += run;
        done += run;
    }
    return done;
}

bool CrtFile::fill() {
    if (ended_) return false;
    ssize_t got;
    do {
        got = ::read(fd_, buffer_.data(), buffer_.size());
    } while (got < 0 && errno == EINTR);
    pos_ = 0;
    end_ = got > 0 ? static_cast<std::size_t>(got) : 0;
    if (got <= 0) {
        ended_ = true;
        failed_ = got < 0;
        return false;
    }
    return true;
}

std::size_t CrtFile::read(void* data, std::size_t size) {
    if (!isOpen() || writing_) return 0;
    auto* target = static_cast<unsigned char*>(data);
    std::size_t done = 0;
    while (done < size) {
        if (pos_ == end_ && !fill()) break;
        std::size_t run = std::min(end_ - pos_, size - done);
        if (text_) {
            unsigned char first = buffer_[pos_];
            // The 0x1A stays unread in the buffer, so every later read stops at it again.
            if (first == kEndOfData) break;
            if (first == kCr) {
                ++pos_;
                // A CR LF pair split by the end of the buffer is still one line end; a CR at
                // the end of the file, or before anything but LF, is an ordinary byte.
                if ((pos_ < end_ || fill()) && buffer_[pos_] == kLf) {
                    ++pos_;
                    target[done++] = kLf;
                } else {
                    target[done++] = kCr;
                }
                continue;
            }
            const unsigned char* from = buffer_.data() + pos_;
            run = std::find_if(from, from + run,
                               [](unsigned char c) { return c == kCr || c == kEndOfData; }) -
                  from;
        }
        std::memcpy(target + done, buffer_.data() + pos_, run);
        pos_ += run;
        done += run;
    }
    return done;
}

bool CrtFile::writeInt32(std::int32_t value) {
    auto bits = static_cast<std::uint32_t>(value);
    const unsigned char bytes[4] = {
        static_cast<unsigned char>(bits), static_cast<unsigned char>(bits >> 8),
        static_cast<unsigned char>(bits >> 16), static_cast<unsigned char>(bits >> 24)};
    return write(bytes, sizeof bytes) == sizeof bytes;
}

bool CrtFile::readInt32(std::int32_t& value) {
    unsigned char bytes[4];
    if (read(bytes, sizeof bytes) != sizeof bytes) return false;
    value = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
        static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24);
    return true;
}

bool CrtFile::atEnd() {
    if (!isOpen() || writing_) return true;
    if (pos_ == end_ && !fill()) return true;
    return text_ && buffer_[pos_] == kEndOfData;
}

ErrorStatus CrtFile::close() {
    if (!isOpen()) return ErrorStatus::eInvalidOpenState;
    if (writing_) flush();
    ErrorStatus status = ErrorStatus::eOk;
    if (replacing_.isOpen()) {
        // The old file stays unless every byte reached the new one.
        if (failed_) {
            replacing_.discard();
            status = ErrorStatus::eFileWriteError;
        } else if (replacing_.commit() != ErrorStatus::eOk) {
            status = ErrorStatus::eFileWriteError;
        }
    } else {
        // Network file systems may report a failed write only when the file is closed.
        const int closed = ::close(std::exchange(fd_, -1));
        const bool closeFailed = writing_ && WriteFaults::run([closed] { return closed; }) != 0;
        if (closeFailed) setFileError("write", path_, errno);
        if (failed_ || closeFailed) {
            status = writing_ ? ErrorStatus::eFileWriteError : ErrorStatus::eFileReadError;
        }
    }
    buffer_.clear();
    buffer_.shrink_to_fit();
    pos_ = end_ = 0;
    ended_ = failed_ = false;
    return status;
}

}  // namespace cad::sys
