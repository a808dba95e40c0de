// The second stage of reading a drawing: tags grouped into sections, header variables and one
// tag span per structure. Knows nothing of objects.
#pragma once

#include <optional>
#include <span>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfStructure.h"
#include "cad/db/dxf/Tag.h"

namespace cad::db::dxf {

class StructureLoader {
public:
    // Fills `into` from `tags`, which must outlive it. Sections may be missing or come alone
    // (a file holding only its BLOCKS loads); a section without ENDSEC, a file without EOF and
    // tags outside any section are errors. `place` says how the tags count their places.
    static std::optional<DxfError> load(std::span<const Tag> tags, DxfStructure& into,
                                        TagPlace place = TagPlace::Line);
};

}  // namespace cad::db::dxf
