// The code page a drawing's text is written in. The formats we write predate UTF-8 in DXF, so
// all text of a file shares the one code page its header names.
#pragma once

#include "cad/db/Database.h"
#include "cad/sys/CodePage.h"

namespace cad::db::dxf {

// The drawing's own code page (ANSI_1252 for one that declares UTF-8), unless it cannot hold
// one of the drawing's symbol-table names and ANSI_949 holds them all: then ANSI_949.
//
// Names decide because a "\U+XXXX" escape is fine in text but not in a name: other programs
// read its backslash as a character names may not have. Drawings from 2007 on keep their text
// in UTF-8 whatever code page they declare, so Korean names under ANSI_1252 are common there;
// a Korean desktop writes such a drawing in its own code page, 949, and so do we.
sys::CodePage writtenCodePage(const Database& db);

}  // namespace cad::db::dxf
