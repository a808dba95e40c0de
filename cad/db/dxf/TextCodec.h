// Text values between a DXF file's code page and UTF-8, with the escapes DXF text carries:
// "\U+XXXX" for a character the code page lacks, "\M+nXXXX" for a double-byte character of
// an Asian code page, and the caret form of control characters ("^J", "^ " for a caret).
#pragma once

#include <string>
#include <string_view>

#include "cad/sys/CodePage.h"

namespace cad::db::dxf {

// The code page of a file's text: UTF-8 from AC1021 (R2007) on, before that the one
// $DWGCODEPAGE names, and ANSI_1252 for a name we do not know.
sys::CodePage fileCodePage(std::string_view acadVersion, std::string_view dwgCodePageName);

// A value as read (in `codePage`) to UTF-8 with its escapes decoded. An escape that is not
// well formed, or names a character that does not exist, is kept as it stands.
std::string decodeText(std::string_view raw, sys::CodePage codePage);

// UTF-8 to a value to write in `codePage`: characters the page cannot hold become "\U+XXXX",
// control characters and carets take their caret form.
std::string encodeText(std::string_view utf8, sys::CodePage codePage);

}  // namespace cad::db::dxf
