// Blocks of fixed size, so storing text costs an allocation per 64 KiB, not per value.
#include "cad/db/dxf/TextArena.h"

#include <algorithm>
#include <cstring>

namespace cad::db::dxf {

char* TextArena::allocate(std::size_t size) {
    if (size > left_) {
        const std::size_t blockSize = std::max(size, kBlockSize);
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
        next_ = blocks_.back().get();
        left_ = blockSize;
    }
    char* result = next_;
    next_ += size;
    left_ -= size;
    return result;
}

std::string_view TextArena::store(std::string_view text) {
    char* target = allocate(text.size());
    if (!text.empty()) std::memcpy(target, text.data(), text.size());
    return {target, text.size()};
}

}  // namespace cad::db::dxf
