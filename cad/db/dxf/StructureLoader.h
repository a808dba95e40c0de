// The second stage of reading a drawing: tags grouped into sections, header variables and one
// tag run per structure. Knows nothing of objects.
#pragma once

#include <optional>
#include <span>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/DxfStructure.h"
#include "cad/db/dxf/Tag.h"

namespace cad::db::dxf {

class StructureLoader {
public:
    // Reads every tag of `file` once, in order, and fills `into` with runs that
    // file.tagsOf() reads again; a tag that cannot be read is the error. Sections may be
    // missing or come alone (a file holding only its BLOCKS loads); a section without ENDSEC,
    // a file without EOF and tags outside any section are errors. `file` must outlive `into`.
    static std::optional<DxfError> load(DxfFile& file, DxfStructure& into);
    // The same over tags held in memory, which must outlive `into`: a run's start is the
    // index of its first tag. `place` says how the tags count their places.
    static std::optional<DxfError> load(std::span<const Tag> tags, DxfStructure& into,
                                        TagPlace place = TagPlace::Line);
};

}  // namespace cad::db::dxf
