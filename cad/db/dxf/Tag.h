// One group of a DXF file: its code and its value as text, viewed in place, with the line it
// came from. Typed values are parsed on demand by the accessors below.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cad::db::dxf {

struct Tag {
    Tag() = default;
    constexpr Tag(int code_, std::string_view value_, std::uint32_t line_)
        : code(code_), line(line_), value(value_) {}

    // Code and line stand side by side so a tag takes 24 bytes, not 32: a large drawing holds
    // millions of them while its objects are built.
    int code = 0;
    // Line of the group code in a text file (1-based); byte offset of the tag in a binary one.
    std::uint32_t line = 0;
    // The value as it stands in the file, without its line end, in the file's code page. Text
    // values (strings, comments) keep their blanks, which can be part of the text; numbers and
    // handles lose trailing blanks. For binary files this is equivalent text held by the
    // DxfFile: numbers in shortest form, chunks in upper-case hexadecimal.
    std::string_view value;
};

// The value without the blanks (spaces, tabs, CR) around it.
std::string_view trimBlanks(std::string_view text);

// A finite decimal number; blanks around it and a leading '+' are allowed, anything else
// after the number is not.
std::optional<double> toDouble(const Tag& tag);

// A decimal integer in the range of the code's type: int16 codes -32768..32767, int32 codes
// the 32-bit range, Bool codes 0..255 (one byte in binary files), every other code 64 bits.
std::optional<std::int64_t> toInt(const Tag& tag);

// A handle: 1 to 16 hexadecimal digits (either case), blanks around them allowed.
std::optional<std::uint64_t> toHandle(const Tag& tag);

// Binary data: pairs of hexadecimal digits turned into bytes; an odd count is refused.
std::optional<std::string> toBinary(const Tag& tag);

}  // namespace cad::db::dxf
