// Case-insensitive name comparison for dictionary keys and symbol names.
#include "cad/db/NameCompare.h"

#include <algorithm>

namespace cad::db {
namespace {

constexpr unsigned char foldedByte(char c) {
    auto byte = static_cast<unsigned char>(c);
    return (byte >= 'a' && byte <= 'z') ? static_cast<unsigned char>(byte - ('a' - 'A')) : byte;
}

}  // namespace

int compareNames(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const unsigned char x = foldedByte(a[i]);
        const unsigned char y = foldedByte(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

}  // namespace cad::db
