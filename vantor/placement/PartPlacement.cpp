// The placement routine.
#include "vantor/placement/PartPlacement.h"

#include <cstdlib>
#include <memory>
#include <optional>

#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Group.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Point.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ge/Scale3d.h"
#include "vantor/placement/BlockTransfer.h"
#include "vantor/placement/BomAttributes.h"
#include "vantor/placement/BomMark.h"
#include "vantor/placement/PartLink.h"
#include "vantor/store/LibraryDrawing.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::BlockReference;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::ge::Point3d;
using cad::ge::Vector3d;

namespace {

ObjectId lookUpBlock(cad::db::Database& db, std::string_view name) {
    ObjectId id;
    if (auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForRead))
        table->getAt(name, id);
    return id;
}

// A header point variable (10/20/30 tags), or `fallback` when the header has none.
Vector3d headerVector(const cad::db::Database& db, std::string_view name, Vector3d fallback) {
    const cad::db::HeaderVariables::Variable* variable = db.header().find(name);
    if (variable == nullptr) return fallback;
    for (const cad::db::RawTag& tag : variable->tags) {
        const double value = std::strtod(tag.value.c_str(), nullptr);
        if (tag.code == 10) fallback.x = value;
        if (tag.code == 20) fallback.y = value;
        if (tag.code == 30) fallback.z = value;
    }
    return fallback;
}

// The view slot of the record that shows this block, or -1.
int viewSlotOf(const PartRecord& record, const std::string& blockName) {
    for (std::size_t i = 0; i < PartRecord::kViewCount; ++i)
        if (!blockName.empty() && record.viewBlocks[i] == blockName) return static_cast<int>(i);
    return -1;
}

}  // namespace

PartPlacement::PartPlacement(cad::db::Database& target, cad::ed::Editor& editor,
                             std::string linetypeFile)
    : db_(target), editor_(editor), linetypeFile_(std::move(linetypeFile)) {}

ObjectId PartPlacement::currentSpace() const {
    cad::ed::SysVarValue tilemode;
    const bool model = editor_.getVar("TILEMODE", tilemode) != cad::ed::RTNORM ||
                       !std::holds_alternative<int>(tilemode) || std::get<int>(tilemode) != 0;
    return model ? db_.modelSpaceId() : db_.paperSpaceId();
}

cad::ge::CoordinateSystem PartPlacement::currentUcs() const {
    const Vector3d origin = headerVector(db_, "$UCSORG", {0, 0, 0});
    return {Point3d(origin.x, origin.y, origin.z), headerVector(db_, "$UCSXDIR", Vector3d::kXAxis),
            headerVector(db_, "$UCSYDIR", Vector3d::kYAxis)};
}

std::string PartPlacement::groupDescription(const PlacementRequest& request,
                                            const std::string& comments) {
    if (request.record.loaded)
        return "품명:" + request.record.kname + ", 사양:" + request.record.spec;
    return "이름:" + request.blockName + ", 설명:" + comments;
}

ErrorStatus PartPlacement::place(const PlacementRequest& request, PlacedPart& placed) {
    placed = {};
    ObjectId block;
    // A catalogue part that is still in its library drawing as the window showed it is linked
    // to its record, so VNKSYNC can later tell whether the record changed.
    std::optional<PartLink> link;
    {
        // The side database lives for the copy only; the library window may hold the drawing
        // open at the same time, which the opening allows.
        ErrorStatus es = ErrorStatus::eOk;
        std::unique_ptr<cad::db::Database> library = openLibraryDrawing(request.libraryPath, &es);
        if (!library) return es;
        ObjectId source;
        if (auto table =
                cad::db::open<cad::db::SymbolTable>(library->blockTableId(), OpenMode::ForRead))
            table->getAt(request.blockName, source);
        auto sourceBlock = cad::db::open<cad::db::BlockTableRecord>(source, OpenMode::ForRead);
        if (!sourceBlock) return ErrorStatus::eKeyNotFound;
        placed.comments = sourceBlock->comments();
        sourceBlock.close();
        if (request.record.loaded) {
            if (std::optional<RecordLocation> found = locateRecord(*library, request.record)) {
                link = PartLink{request.libraryPath, std::move(found->groupPath),
                                std::move(found->key), found->recordId.handle(), {}};
            }
        }
        block = BlockTransfer::copyDefinition(db_, source);
        if (block.isNull()) return ErrorStatus::eUnknownError;
    }
    // A block that carries its own markers has them filled in its definition; one without
    // gets a marker beside the reference where the record puts it.
    const bool ownMarkers =
        request.record.loaded &&
        BomMark::refreshMarkers(db_, block, request.record, linetypeFile_, editor_) > 0;

    const ObjectId reference = insertReference(request, block, placed);
    if (reference.isNull()) return ErrorStatus::eUnknownError;
    placed.entities.push_back(reference);
    const std::size_t markerAt = placed.entities.size();
    if (request.record.loaded && !ownMarkers) addBomMarker(request, block, reference, placed);
    const ObjectId marker =
        placed.entities.size() > markerAt ? placed.entities[markerAt] : ObjectId{};
    if (request.options.explode) {
        if (ErrorStatus es = explode(reference, placed); es != ErrorStatus::eOk) return es;
    }
    if (link) linkPart(*link, reference, marker, placed);
    // The information point goes with the part, into its group too, so the part moves and
    // is picked as one.
    if (request.options.infoPoint)
        placed.entities.push_back(append(std::make_unique<cad::db::Point>(placed.basePoint)));
    if (request.options.group) return group(request, placed);
    return ErrorStatus::eOk;
}

ObjectId PartPlacement::append(std::unique_ptr<cad::db::Entity> entity) {
    auto space = cad::db::open<cad::db::BlockTableRecord>(currentSpace(), OpenMode::ForWrite);
    ObjectId id;
    if (space) space->appendEntity(std::move(entity), id);
    return id;
}

ObjectId PartPlacement::insertReference(const PlacementRequest& request, ObjectId block,
                                        PlacedPart& placed) {
    const cad::ge::CoordinateSystem ucs = currentUcs();
    placed.basePoint = ucs.ucsToWorld(request.insertionPoint);
    // A mirror is a negative factor on its axis.
    cad::ge::Scale3d scale(request.scale);
    if (request.options.mirrorX || request.options.mirrorY)
        scale.set(request.options.mirrorX ? -request.scale : request.scale,
                  request.options.mirrorY ? -request.scale : request.scale, request.scale);
    auto reference = std::make_unique<BlockReference>(placed.basePoint, block);
    reference->setDatabaseDefaults(db_);
    if (reference->setScaleFactors(scale) != ErrorStatus::eOk) return {};
    reference->setNormal(ucs.zAxis());
    reference->setRotation(ucs.angleToWorld(request.rotation));
    const ObjectId id = append(std::move(reference));
    if (id.isNull() || BomAttributes::fill(id, request.record.loaded ? &request.record : nullptr) !=
                           ErrorStatus::eOk)
        return {};
    return id;
}

// The record keeps the BOM mark's place per view as an offset from the block's insertion
// point. An offset of zero means the author never picked a place, and no marker is made.
void PartPlacement::addBomMarker(const PlacementRequest& request, ObjectId block,
                                 ObjectId reference, PlacedPart& placed) {
    const int slot = viewSlotOf(request.record, request.blockName);
    if (slot < 0) return;
    const Vector3d offset = request.record.viewPoints[static_cast<std::size_t>(slot)].asVector();
    if (offset.isZeroLength()) return;
    Point3d origin;
    if (auto opened = cad::db::open<cad::db::BlockTableRecord>(block, OpenMode::ForRead))
        origin = opened->origin();
    auto opened = cad::db::open<BlockReference>(reference, OpenMode::ForRead);
    if (!opened) return;
    const Point3d position = opened->blockTransform() * (origin + offset);
    const double rotation = opened->rotation();
    opened.close();
    const ObjectId marker = BomMark::placeMarker(db_, currentSpace(), position, rotation,
                                                 request.record, linetypeFile_, editor_);
    if (!marker.isNull()) placed.entities.push_back(marker);
}

// The reference carries the link, naming the marker beside it; an exploded part has no
// reference left, so each BOM marker among its pieces carries the link on its own.
void PartPlacement::linkPart(PartLink link, ObjectId reference, ObjectId marker,
                             const PlacedPart& placed) {
    if (!reference.isErased()) {
        if (!marker.isNull()) link.companions.push_back(marker.handle());
        attachPartLink(reference, link);
        return;
    }
    const ObjectId markerBlock = lookUpBlock(db_, BomMark::kBlockName);
    if (markerBlock.isNull()) return;
    for (ObjectId id : placed.entities) {
        auto opened = cad::db::open<BlockReference>(id, OpenMode::ForRead);
        if (!opened || opened->blockTableRecord() != markerBlock) continue;
        opened.close();
        attachPartLink(id, link);
    }
}

ErrorStatus PartPlacement::explode(ObjectId reference, PlacedPart& placed) {
    std::vector<std::unique_ptr<cad::db::Entity>> pieces;
    {
        auto opened = cad::db::open<BlockReference>(reference, OpenMode::ForWrite);
        if (!opened) return opened.openStatus();
        if (ErrorStatus es = opened->explode(pieces); es != ErrorStatus::eOk) return es;
        opened->erase();
    }
    // The pieces stand where the reference stood in the list, before the marker.
    std::vector<ObjectId> ids;
    for (auto& piece : pieces) ids.push_back(append(std::move(piece)));
    placed.entities.erase(placed.entities.begin());
    placed.entities.insert(placed.entities.begin(), ids.begin(), ids.end());
    return ErrorStatus::eOk;
}

ErrorStatus PartPlacement::group(const PlacementRequest& request, PlacedPart& placed) {
    auto group = std::make_unique<cad::db::Group>(groupDescription(request, placed.comments));
    for (ObjectId id : placed.entities)
        if (ErrorStatus es = group->append(id); es != ErrorStatus::eOk) return es;
    return cad::db::addGroup(db_, std::move(group), "*", placed.group);
}

}  // namespace vantor
