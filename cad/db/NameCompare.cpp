// Case-insensitive name comparison for dictionary keys and symbol names.
#include "cad/db/NameCompare.h"

#include <algorithm>

#include "cad/sys/AsciiCase.h"

namespace cad::db {

int compareNames(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(sys::asciiUpper(a[i]));
        const auto y = static_cast<unsigned char>(sys::asciiUpper(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

}  // namespace cad::db
