// Writes a database as a DWG 2000 (AC1015) file. The database is first written as DXF by the
// DXF writer, so each class still names its fields in one place, and those structures are
// then encoded as DWG records. Types the encoder does not know are left out and listed in
// the messages, never dropped silently.
#pragma once

#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db::dwg {

class DwgWriter {
public:
    // The whole file in `bytes`, DWG 2000 or R14 (R13 is refused); eOk, or the DXF writer's
    // refusal (an object open for write).
    static ErrorStatus write(Database& database, std::string& bytes,
                             std::vector<std::string>& messages,
                             DwgVersion version = DwgVersion::R2000);
};

}  // namespace cad::db::dwg
