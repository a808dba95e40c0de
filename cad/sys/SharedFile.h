// Reading a file with the C runtime's share modes: a deny-write open keeps other deny-write
// opens out (in this process or any other) for as long as it lives; deny-none never does.
#pragma once

#include <cstdint>
#include <string>

#include "cad/sys/ErrorStatus.h"

namespace cad::sys {

// The C runtime's _SH_DENYWR and _SH_DENYNO values, which callers pass on as numbers.
enum class ShareMode : int { DenyWrite = 32, DenyNone = 64 };

class SharedFile {
public:
    SharedFile() = default;
    ~SharedFile();
    SharedFile(SharedFile&& other) noexcept;
    SharedFile& operator=(SharedFile&& other) noexcept;
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    // Opens for reading. eFileNotFound when missing, eFileAccessErr when refused or when a
    // DenyWrite open is asked for while another DenyWrite open holds the file,
    // eInvalidOpenState when this object is already open.
    ErrorStatus open(const std::string& path, ShareMode mode);
    // The whole content, bytes as they are, whatever was read before.
    ErrorStatus readAll(std::string& out);
    // The size in bytes, -1 when not open.
    std::int64_t size() const;
    // Closes and gives up the share lock; nothing happens when not open.
    void close();

    bool isOpen() const { return fd_ >= 0; }
    // The system's descriptor while open (-1 otherwise), for mapping the file into memory.
    int descriptor() const { return fd_; }

private:
    int fd_ = -1;
};

}  // namespace cad::sys
