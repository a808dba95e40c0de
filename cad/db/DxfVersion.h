// The DXF versions the engine reads, and the two it writes (R2000 by default, R14 on request).
#pragma once

#include <optional>
#include <string_view>

namespace cad::db {

enum class DxfVersion : int {
    R12 = 1009,
    R13 = 1012,
    R14 = 1014,
    R2000 = 1015,
    R2004 = 1018,
    R2007 = 1021,
    R2010 = 1024,
    R2013 = 1027,
    R2018 = 1032,
};

// "AC1015" for R2000 and so on.
std::string_view acadVer(DxfVersion version);
// Accepts every $ACADVER value from AC1006 on; versions before R12 read as R12, unknown newer
// ones as R2018 (the layout has not changed in a way we depend on).
std::optional<DxfVersion> dxfVersionFromAcadVer(std::string_view acadver);

}  // namespace cad::db
