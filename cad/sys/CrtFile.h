// A buffered file stream with the C runtime's fopen modes, including its text mode exactly as
// the Windows C runtime does it, on which the module's binary-in-text-mode formats depend.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/sys/AtomicFile.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::sys {

// Text mode ("r", "w", "a"): every 0x0A written is stored as 0x0D 0x0A; when reading, 0x0D 0x0A
// comes back as 0x0A, any other 0x0D stays, and a byte 0x1A ends the data for good. Binary
// mode ("rb", "wb", "ab"; "rt", "wt", "at" are text mode spelled out) moves bytes unchanged.
// A file is either read or written, never both.
class CrtFile {
public:
    // The size of the stream buffer; a CR LF pair may be split across two fills of it.
    static constexpr std::size_t kBufferSize = 4096;

    CrtFile() = default;
    ~CrtFile();
    CrtFile(CrtFile&& other) noexcept;
    CrtFile& operator=(CrtFile&& other) noexcept;
    CrtFile(const CrtFile&) = delete;
    CrtFile& operator=(const CrtFile&) = delete;

    // eFileNotFound for a missing file (or folder on the way), eFileAccessErr when refused
    // (permissions, a folder), eInvalidInput for a mode not listed above, eInvalidOpenState
    // when this stream is already open.
    ErrorStatus open(const std::string& path, std::string_view mode);
    // Opens to write ("w", "wb", "wt") a new content for the file at `path` that replaces it
    // only when close() finds every write done: until then, and after any failure, the old
    // file stays as it was. A failure names the file and the system's reason in
    // lastFileError().
    ErrorStatus openReplacing(const std::string& path, std::string_view mode);

    // The number of the caller's bytes taken; less than size only after a failure.
    std::size_t write(const void* data, std::size_t size);
    // The number of bytes delivered; less than size at the end of the data.
    std::size_t read(void* data, std::size_t size);

    // Four raw bytes, little-endian, through the same translation as any other bytes.
    bool writeInt32(std::int32_t value);
    bool readInt32(std::int32_t& value);

    // True when a read would deliver nothing more (always so for a stream opened to write).
    bool atEnd();
    // Flushes and closes; eFileWriteError when any write failed, eFileReadError after a read
    // failure of the device (the end of the data is not a failure). A replacing stream puts
    // its content in place here, or drops it and reports the save's failure.
    ErrorStatus close();

    bool isOpen() const { return fd_ >= 0 || replacing_.isOpen(); }
    bool isTextMode() const { return text_; }

private:
    void start(const std::string& path, bool text, bool writing);
    bool fill();
    void flush();

    int fd_ = -1;
    AtomicFile replacing_;  // open instead of fd_ for a replacing stream
    std::string path_;
    bool text_ = false;
    bool writing_ = false;
    bool ended_ = false;  // the end of the file or a failure was met; reading stops there
    bool failed_ = false;
    std::vector<unsigned char> buffer_;
    std::size_t pos_ = 0;  // reading: next byte of buffer_ to deliver
    std::size_t end_ = 0;  // reading: bytes filled; writing: bytes waiting to be flushed
};

}  // namespace cad::sys
