// The inline formatting of MTEXT contents (\P paragraphs, {\fArial|b1;...} groups, \S stacks,
// heights, colours, underlines ...) read into paragraphs of runs of one format each. Plain
// C++: layout and fonts come later, from these structs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cad::gs {

// The character format in force at a point of the text.
struct MTextFormat {
    std::string font;           // \f family or \F font file; empty: the text style's font
    bool bold = false;
    bool italic = false;
    double height = 1.0;        // absolute, in drawing units
    double widthFactor = 1.0;   // \W, on top of the style's
    double oblique = 0.0;       // \Q in radians; replaces the style's once given
    bool obliqueSet = false;
    double tracking = 1.0;      // \T: factor on the advance of each character
    std::optional<int> colorIndex;          // \C: 0 BYBLOCK, 256 BYLAYER, 1..255
    std::optional<std::int32_t> trueColor;  // \c, as 0xRRGGBB
    bool underline = false, overline = false, strike = false;
    // \A: where characters smaller than the line's largest sit: 0 baseline, 1 centre, 2 top.
    std::uint8_t lineAlign = 0;

    friend bool operator==(const MTextFormat&, const MTextFormat&) = default;
};

struct MTextRun {
    enum class Kind : std::uint8_t {
        Text,
        Stack,  // a stacked fraction: `text` over `lower`
        Tab,
    };
    Kind kind = Kind::Text;
    MTextFormat format;
    std::u32string text;
    std::u32string lower;
    // '/' over a horizontal bar, '#' split by a slash, '^' one over the other with no bar.
    char stackKind = '/';
};

enum class MTextParagraphAlign : std::uint8_t {
    Attachment,  // as the attachment point's column says
    Left,
    Center,
    Right,
    Justified,
    Distributed,
};

struct MTextParagraph {
    std::vector<MTextRun> runs;
    MTextParagraphAlign align = MTextParagraphAlign::Attachment;
    bool columnBreak = false;  // \N: starts the next column
};

struct MTextContent {
    std::vector<MTextParagraph> paragraphs;  // at least one
    std::size_t characters = 0;              // characters kept in runs
    bool truncated = false;                  // characters beyond the limit were left out
};

// Reads MTEXT contents starting from `initial` (the entity's height and the style's font).
// Never fails: unknown codes are skipped, an unterminated value ends at the end of the text.
// At most `limit` characters are kept; the rest is not even read.
MTextContent parseMText(std::string_view contents, const MTextFormat& initial, std::size_t limit);

}  // namespace cad::gs
