// The picture of a part's block for the preview pane: drawn by the graphics system, fitted to
// the pane with the block's base point and, when the record gives one, its BOM mark's place
// marked and named.
#pragma once

#include <QImage>
#include <optional>
#include <string>

#include "cad/ge/Point3d.h"

namespace cad::db {
class Database;
}

namespace vantor {

inline constexpr const char* kBasePointMarker = "BASE POINT";
inline constexpr const char* kBomMarkMarker = "BM MARK";

struct BlockPreviewRequest {
    std::string block;
    QSize size;
    // The BOM mark's offset from the block's base point, when the record stores one.
    std::optional<cad::ge::Point3d> bomMark;
    // The base point and the mark drawn and named; an icon goes without.
    bool markers = true;
};

// A null image when the drawing has no such block or the size is empty.
QImage drawBlockPreview(cad::db::Database& database, const BlockPreviewRequest& request);

}  // namespace vantor
