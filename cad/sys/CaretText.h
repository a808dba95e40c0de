// The caret form of control characters that DXF text uses, shared by every file whose values
// must not break its lines or end a text-mode read: "^J" a line feed, "^M" a carriage return,
// "^@" to "^_" the bytes 0 to 31, "^ " a caret itself.
#pragma once

#include <string>
#include <string_view>

namespace cad::sys {

// True when the text holds a byte below 0x20 or a caret, i.e. toCaretForm would change it.
bool needsCaretForm(std::string_view text);

// Each byte below 0x20 becomes a caret and the character 0x40 above it, each caret "^ ".
// Works on UTF-8 and on single- or double-byte code pages alike: no multi-byte sequence of
// those holds a byte below 0x40.
std::string toCaretForm(std::string_view text);

// The inverse: "^ " a caret, "^@" to "^_" their control character. A caret before anything
// else (a hand-written "2^3", a caret at the end) is kept as it stands, as other readers do.
std::string fromCaretForm(std::string_view text);

}  // namespace cad::sys
