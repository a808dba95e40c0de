// The last stage of reading a drawing: the sections and structures of a DXF file turned into
// the objects of a database, each stored under its handle first and the links checked and
// repaired in a second pass.
#pragma once

#include <optional>

#include "cad/db/Database.h"
#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/DxfStructure.h"

namespace cad::db::dxf {

class DxfDatabaseReader {
public:
    // Reads `structure`, taken from `file`, into `database`, which must be
    // empty, made without default content. On success the database is complete: what a
    // drawing must have and the file lacked is made, and every repair is listed in its
    // loadIssues() with the codes of LoadIssueCodes.h. On a structural failure the error names
    // the place and what was expected; the database is then half-filled and to be dropped.
    static std::optional<DxfError> read(const DxfStructure& structure, DxfFile& file,
                                        Database& database);
};

}  // namespace cad::db::dxf
