// Writing a database as an ASCII DXF file: R2000 (AC1015) by default, R14 (AC1014) on request,
// in the section layout the commercial host writes and expects.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/DxfVersion.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db::dxf {

class DxfDatabaseWriter {
public:
    // Writes `database` (no object may be open for write) into `text`. Only R2000 and R14 are
    // written; other versions answer eVersionNotSupported. What R14 cannot hold (names longer
    // than 31 bytes or with characters it refuses, block previews) is listed in `messages`
    // and written unchanged or left out, never silently altered.
    static ErrorStatus write(Database& database, DxfVersion version, std::string& text,
                             std::vector<std::string>& messages);
    // The same, handing the text to `sink` in pieces of about a megabyte as it is made, so a
    // large drawing is never held whole; the pieces are only complete on eOk.
    static ErrorStatus write(Database& database, DxfVersion version,
                             const std::function<void(std::string_view)>& sink,
                             std::vector<std::string>& messages);
};

}  // namespace cad::db::dxf
