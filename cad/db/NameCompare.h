// How the drawing database compares the names of dictionary entries and symbol table records:
// ASCII letters without regard to case, every other byte by its value.
#pragma once

#include <string_view>

namespace cad::db {

// Negative, zero or positive as `a` sorts before, with or after `b`. Letters are folded to
// upper case, so "_" sorts after the letters as it does in the host's own lists. Bytes of
// multibyte characters are never folded: Korean names compare by their bytes.
int compareNames(std::string_view a, std::string_view b);

inline bool equalNames(std::string_view a, std::string_view b) {
    return a.size() == b.size() && compareNames(a, b) == 0;
}

}  // namespace cad::db
