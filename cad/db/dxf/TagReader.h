// The first stage of reading a drawing: a whole DXF file's bytes, text or binary, split into
// tags. Knows nothing of sections or objects.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/Tag.h"
#include "cad/db/dxf/TextArena.h"

namespace cad::db::dxf {

class TagReader {
public:
    // Appends the tags of `bytes` to `tags`, up to and including 0/EOF; what follows EOF is
    // ignored. Comments (999) are dropped. Values view into `bytes`, or for binary files into
    // `arena`; both must outlive the tags. On failure returns the error and `tags` holds the
    // tags read before it.
    static std::optional<DxfError> read(std::string_view bytes, std::vector<Tag>& tags,
                                        TextArena& arena);

    // The sentinel that opens a binary DXF file.
    static bool isBinaryDxf(std::string_view bytes);
    // The version magic that opens a DWG file ("AC1015" ...).
    static bool isDwg(std::string_view bytes);
};

}  // namespace cad::db::dxf
