// The header variables of an R13 to R2000 DWG file: the ones the engine uses (units, limits
// and extents, scales, point style, the current layer and styles), and the handles that name
// the drawing's root objects. The section stores every variable in a fixed order, so reading
// must walk all that precede the last one wanted.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/db/dwg/DwgRecord.h"

namespace cad::db::dwg {

struct DwgHeaderVariable {
    std::string name;  // "$LTSCALE"
    std::vector<DwgTag> tags;
};

struct DwgHeaderVariables {
    std::vector<DwgHeaderVariable> variables;
    std::uint64_t handseed = 0;
    std::uint64_t namedObjects = 0;  // the root dictionary
    bool complete = false;           // false: the section did not read and nothing was kept
};

// Reads the variables from the section the layout located. A section that does not read is
// left out whole (the DXF reader's defaults stand) rather than taken in part.
DwgHeaderVariables readHeaderVariables(std::string_view file, const DwgFileLayout& layout);

}  // namespace cad::db::dwg
