// Mapping files with mmap. The mapping is private and read-only: the file is never changed
// through it, and pages given back with madvise are read again from the file on their next
// use rather than coming back empty, as anonymous memory would.
#include "cad/sys/MappedFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <utility>

namespace cad::sys {

MappedFile::~MappedFile() {
    unmap();
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
    if (this != &other) {
        unmap();
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}

ErrorStatus MappedFile::map(const SharedFile& file) {
    unmap();
    const std::int64_t size = file.size();
    if (size < 0) return ErrorStatus::eFileReadError;
    if (size == 0) return ErrorStatus::eOk;
    void* data = ::mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_PRIVATE,
                        file.descriptor(), 0);
    if (data == MAP_FAILED) return ErrorStatus::eFileReadError;
    data_ = static_cast<const char*>(data);
    size_ = static_cast<std::size_t>(size);
    return ErrorStatus::eOk;
}

void MappedFile::release(std::size_t from, std::size_t to) {
    if (data_ == nullptr || to > size_ || from >= to) return;
    static const auto kPage = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    // Only pages wholly inside the range: the ones at its ends may hold bytes still in use.
    const std::size_t first = (from + kPage - 1) / kPage * kPage;
    const std::size_t last = to == size_ ? to : to / kPage * kPage;
    if (first >= last) return;
    ::madvise(const_cast<char*>(data_) + first, last - first, MADV_DONTNEED);
}

void MappedFile::unmap() {
    if (data_ != nullptr) ::munmap(const_cast<char*>(data_), size_);
    data_ = nullptr;
    size_ = 0;
}

}  // namespace cad::sys
