// Turns an R13 to R2000 DWG file into the DXF structure of the same drawing, which the DXF
// reader then loads: so a DWG drawing fills the same object model, through the same checks and
// repairs, as a DXF one. Objects of types the decoder does not know are counted by type and
// left out; they are reported, never dropped silently.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/dwg/DwgFileLayout.h"

namespace cad::db::dwg {

struct DwgTranslation {
    std::string dxf;  // the drawing as DXF text, in the drawing's code page
    DwgFileLayout layout;
    // Objects by type ("LINE", "BLOCK_HEADER", "VERTEX_2D", class names), as read and as left
    // out.
    std::map<std::string, int> read;
    std::map<std::string, int> notRead;
    // Records whose fields did not read (each also counted in notRead), the first few with
    // their place.
    int unreadable = 0;
    std::vector<std::string> unreadableMessages;
    int checkValueMismatches = 0;  // objects whose check value did not match
};

class DwgTranslator {
public:
    // Fills `out` from the bytes of a DWG file. A file that cannot be read (a version that is
    // not read, a damaged frame, an object outside the file) is the error, with its offset.
    static std::optional<DwgError> translate(std::string_view bytes, DwgTranslation& out);
};

}  // namespace cad::db::dwg
