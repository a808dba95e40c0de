// The characters of a single-line text (TEXT, ATTRIB, ATTDEF): UTF-8 decoded, with the special
// codes (%%c %%d %%p %%u %%o %%k %%% %%nnn) and the \U+XXXX / \M+nXXXX escapes resolved.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cad::gs {

struct DecodedText {
    enum Mark : std::uint8_t { kUnderline = 1, kOverline = 2, kStrike = 4 };
    std::u32string chars;
    std::vector<std::uint8_t> marks;  // one per character: the Mark bits in force
    bool truncated = false;           // characters beyond the limit were left out
};

// `limit` caps the characters decoded, so a huge string costs no more than its first part.
DecodedText decodeTextCodes(std::string_view utf8, std::size_t limit);

// One character from UTF-8 at `i`, which moves past it; a malformed byte reads as U+FFFD and
// moves one byte, so every input ends.
char32_t nextUtf8(std::string_view text, std::size_t& i);

// A \U+XXXX escape at `i` (which points at the backslash): the character, with `i` moved past
// the escape; 0 when no escape starts there. \M+nXXXX (a double-byte character of code page n;
// only the Korean page is known) is decoded too.
char32_t escapeAt(std::string_view text, std::size_t& i);

}  // namespace cad::gs
