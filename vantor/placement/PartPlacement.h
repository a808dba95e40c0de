// Putting a part into a drawing: its block copied from the library drawing, a reference of it
// with its attributes, its BOM marker, and by the drawing options exploded, grouped and given
// an information point. UBLI runs it before the drag; the command line runs it alone.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/CoordinateSystem.h"
#include "cad/ge/Point3d.h"
#include "cad/sys/ErrorStatus.h"
#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/PartLink.h"
#include "vantor/store/PartRecord.h"

namespace cad::db {
class Database;
class Entity;
}  // namespace cad::db
namespace cad::ed {
class Editor;
}

namespace vantor {

struct PlacementRequest {
    std::string libraryPath;
    std::string blockName;
    PartRecord record;  // record.loaded is false for a block without a catalogue record
    cad::ge::Point3d insertionPoint;  // in the drawing's current user coordinate system
    double scale = 1.0;
    double rotation = 0.0;  // radians, in the user coordinate system
    DrawingOptions options;
};

struct PlacedPart {
    // What the placement made in the current space: the reference (or, exploded, its
    // entities), then the BOM marker and the information point when made.
    std::vector<cad::db::ObjectId> entities;
    cad::ge::Point3d basePoint;  // the insertion point in world coordinates
    std::string comments;        // the block's description
    cad::db::ObjectId group;     // null unless grouped
};

class PartPlacement {
public:
    // `linetypeFile` is where CONTINUOUS comes from for the BOM layer of a drawing lacking it.
    PartPlacement(cad::db::Database& target, cad::ed::Editor& editor, std::string linetypeFile);

    // eFileNotFound, eFileAccessErr, eBadDwgFile when the library drawing cannot be read;
    // eKeyNotFound when it has no such block; another status when the copy fails.
    cad::ErrorStatus place(const PlacementRequest& request, PlacedPart& placed);

    // Where new entities go: model space while the model layout is current (TILEMODE 1), else
    // paper space.
    cad::db::ObjectId currentSpace() const;
    // The user coordinate system the header keeps ($UCSORG, $UCSXDIR, $UCSYDIR).
    cad::ge::CoordinateSystem currentUcs() const;
    // The group's description: "품명:<name>, 사양:<spec>" for a catalogue part, else
    // "이름:<block>, 설명:<description>".
    static std::string groupDescription(const PlacementRequest& request,
                                        const std::string& comments);

private:
    cad::db::ObjectId insertReference(const PlacementRequest& request, cad::db::ObjectId block,
                                      PlacedPart& placed);
    void addBomMarker(const PlacementRequest& request, cad::db::ObjectId block,
                      cad::db::ObjectId reference, PlacedPart& placed);
    void linkPart(PartLink link, cad::db::ObjectId reference, cad::db::ObjectId marker,
                  const PlacedPart& placed);
    cad::ErrorStatus explode(cad::db::ObjectId reference, PlacedPart& placed);
    cad::ErrorStatus group(const PlacementRequest& request, PlacedPart& placed);
    cad::db::ObjectId append(std::unique_ptr<cad::db::Entity> entity);

    cad::db::Database& db_;
    cad::ed::Editor& editor_;
    std::string linetypeFile_;
};

}  // namespace vantor
