// A file's bytes mapped read-only into memory. The pages come from the system's file cache as
// they are read, so a large file costs no copy; pages a reader is done with can be let go,
// and come back from the file if they are read again.
#pragma once

#include <cstddef>
#include <string_view>

#include "cad/sys/ErrorStatus.h"
#include "cad/sys/SharedFile.h"

namespace cad::sys {

class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    // Maps the whole of an open file; the mapping stays valid after the file is closed.
    // An empty file maps to no bytes. eFileReadError when the system refuses the mapping.
    ErrorStatus map(const SharedFile& file);
    std::string_view bytes() const { return {data_, size_}; }
    // Lets go of the whole pages inside [from, to); the bytes stay readable.
    void release(std::size_t from, std::size_t to);

private:
    void unmap();

    const char* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace cad::sys
