// Conversion between the code pages that drawings and the module's files use on disk and the
// UTF-8 text held in memory, plus the code page names that DXF headers carry.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cad::sys {

// The code pages a drawing may declare. Utf8 is the identity (drawings from 2007 on).
enum class CodePage {
    Utf8,
    Ansi949,  // Korean (Unified Hangul Code): the module's own files and pre-2007 DXF
    Ansi1252,
    Ansi1250,
    Ansi1251,
    Ansi1253,
    Ansi1254,
    Ansi1255,
    Ansi1256,
    Ansi1257,
    Ansi1258,
    Ansi874,
    Ansi932,
    Ansi936,
    Ansi950,
    Dos437,
    Dos850,
    Dos852,
    Dos855,
    Dos857,
    Dos860,
    Dos861,
    Dos863,
    Dos865,
    Dos866,
    Dos869,
    Dos932,
};

// What fromUtf8 writes for a character the target code page cannot hold.
enum class Unmappable {
    QuestionMark,  // one '?' per character
    DxfEscape,     // "\U+XXXX" with four upper-case hex digits, as DXF text stores it
};

// Decodes bytes in the given code page to UTF-8.
// - A text of bytes below 0x80 comes back unchanged: every page listed here agrees with ASCII
//   there (which is why Johab and DOS 864, which do not, are missing).
// - A byte sequence that is not valid in the code page becomes U+FFFD, one per offending
//   byte, and decoding goes on with the next byte; a double-byte lead at the end of the text
//   counts as one offending byte. Nothing is dropped silently and the call never fails.
// - For Utf8 the text is checked the same way: invalid UTF-8 bytes become U+FFFD each.
// - Embedded NUL bytes are converted like any other character.
std::string toUtf8(std::string_view bytes, CodePage codePage);

// Encodes UTF-8 text in the given code page.
// - ASCII text comes back unchanged.
// - A character the code page cannot hold becomes what `policy` says. Characters above
//   U+FFFF become "?" under both policies, because the DXF escape has room for four hex
//   digits only.
// - Bytes that are not valid UTF-8 become "?", one per offending byte.
// - For Utf8 valid text is copied; invalid bytes still become "?".
std::string fromUtf8(std::string_view utf8, CodePage codePage,
                     Unmappable policy = Unmappable::QuestionMark);

// Whether every byte is below 0x80.
bool isAscii(std::string_view bytes);

// Whether the bytes are well-formed UTF-8 (plain ASCII is).
bool isUtf8(std::string_view bytes);

// Whether the code page holds every character of the UTF-8 text, so that encoding it needs
// no replacement or escape. Text that is not valid UTF-8 is held by no page.
bool canHold(std::string_view utf8, CodePage codePage);

// Shorthands for the module's own files and for drawings before 2007, which are CP949.
std::string cp949ToUtf8(std::string_view bytes);
std::string utf8ToCp949(std::string_view utf8, Unmappable policy = Unmappable::QuestionMark);

// The code page a DXF header names in $DWGCODEPAGE ("ANSI_949", "dos850", "UTF-8"),
// compared without regard to case; nullopt for a name we do not know.
std::optional<CodePage> codePageFromDxfName(std::string_view name);

// The name written into $DWGCODEPAGE for a code page ("ANSI_949", "DOS850", "UTF-8").
std::string_view dxfCodePageName(CodePage codePage);

}  // namespace cad::sys
