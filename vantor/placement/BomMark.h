// The BOM mark: the marker block QRBBM2 (a circle, "BM" and 14 invisible attributes) whose
// references carry a part's catalogue data in the drawings parts are placed into, on the layer
// "BOM", so a bill of materials can be taken from a drawing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

struct PartRecord;

class BomMark {
public:
    static constexpr std::string_view kBlockName = "QRBBM2";
    static constexpr std::string_view kLayerName = "BOM";
    static constexpr std::int16_t kLayerColor = 6;
    static constexpr std::string_view kLayerLinetype = "CONTINUOUS";
    static constexpr double kSize = 0.5;  // circle radius and text heights

    // The marker block with its origin at `base`, made when the drawing has none; an existing
    // one is taken as it stands. A null id after "\nError in circle drawing. " or
    // "\nError in text drawing. " on the command line; what was added before stays.
    static cad::db::ObjectId makeDefinition(cad::db::Database& db, const cad::ge::Point3d& base,
                                            cad::ed::Editor& editor);
    // The layer "BOM", made in colour 6 with CONTINUOUS (loaded from `linetypeFile` when the
    // drawing lacks it) when missing. A null id when it can be neither found nor made.
    static cad::db::ObjectId layer(cad::db::Database& db, const std::string& linetypeFile,
                                   cad::ed::Editor& editor);
    // A marker reference at `position`, turned by `rotation` (radians) with the part it marks,
    // appended to `space`, on the layer "BOM", with its attributes filled from the record. A
    // null id on failure.
    static cad::db::ObjectId placeMarker(cad::db::Database& db, cad::db::ObjectId space,
                                         const cad::ge::Point3d& position, double rotation,
                                         const PartRecord& record, const std::string& linetypeFile,
                                         cad::ed::Editor& editor);
    // The marker references among the block's own entities (one level: a marker nested in a
    // nested block belongs to that block's part) put on the layer "BOM" with their attributes
    // filled again from the record. Answers how many there were.
    static int refreshMarkers(cad::db::Database& db, cad::db::ObjectId block,
                              const PartRecord& record, const std::string& linetypeFile,
                              cad::ed::Editor& editor);
};

}  // namespace vantor
