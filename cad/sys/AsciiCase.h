// Case folding for names (INI keys, file names, code page names, dictionary keys and symbol
// names): ASCII letters only and the same in every locale, so no byte of UTF-8 text beyond
// ASCII changes. CP949 trail bytes can be letters: step over double-byte characters there.
#pragma once

#include <string>
#include <string_view>

namespace cad::sys {

// std::toupper and std::tolower would do for the "C" locale only: under another locale they
// may fold bytes of CP949 characters or leave an 'i' as it is.
constexpr char asciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string asciiUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = asciiUpper(c);
    return out;
}
inline std::string asciiLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = asciiLower(c);
    return out;
}

// Equal but for the case of ASCII letters.
constexpr bool equalNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (asciiUpper(a[i]) != asciiUpper(b[i])) return false;
    return true;
}

}  // namespace cad::sys
