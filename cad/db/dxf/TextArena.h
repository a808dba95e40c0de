// Storage for text that does not exist in a file's bytes (the values of binary DXF files turned
// into text). Text once stored never moves, so tags can keep views of it.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace cad::db::dxf {

class TextArena {
public:
    // Room for `size` characters, valid as long as the arena lives.
    char* allocate(std::size_t size);
    std::string_view store(std::string_view text);

private:
    static constexpr std::size_t kBlockSize = 64 * 1024;

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

}  // namespace cad::db::dxf
