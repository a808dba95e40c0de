// Making the BOM marker block, its layer and its references.
#include "vantor/placement/BomMark.h"

#include <memory>
#include <vector>

#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/ed/Editor.h"
#include "vantor/placement/BomAttributes.h"
#include "vantor/placement/LinetypeFile.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::Database;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::ge::Point3d;

namespace {

ObjectId recordNamed(ObjectId table, std::string_view name) {
    ObjectId id;
    if (auto opened = cad::db::open<cad::db::SymbolTable>(table, OpenMode::ForRead))
        opened->getAt(name, id);
    return id;
}

// The text style new texts take: the header's current style, else STANDARD.
ObjectId currentTextStyle(const Database& db) {
    if (auto name = db.header().text("$TEXTSTYLE")) {
        ObjectId id = recordNamed(db.textStyleTableId(), *name);
        if (!id.isNull()) return id;
    }
    return db.textStyleStandard();
}

// Layer "0", colour and linetype by layer, whatever the drawing's current settings are.
void onLayerZero(const Database& db, cad::db::Entity& entity) {
    entity.setLayer(db.layerZero());
    entity.setColorIndex(cad::db::kColorByLayer);
    entity.setLinetype(db.byLayerLinetype());
}

}  // namespace

ObjectId BomMark::makeDefinition(Database& db, const Point3d& base, cad::ed::Editor& editor) {
    ObjectId blockId = recordNamed(db.blockTableId(), kBlockName);
    if (!blockId.isNull()) return blockId;
    {
        auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForWrite);
        if (!table) return {};
        auto record = std::make_unique<cad::db::BlockTableRecord>();
        record->setName(kBlockName);
        record->setOrigin(base);
        if (table->add(std::move(record), blockId) != ErrorStatus::eOk) return {};
    }
    auto block = cad::db::open<cad::db::BlockTableRecord>(blockId, OpenMode::ForWrite);
    if (!block) return {};
    ObjectId added;

    auto circle = std::make_unique<cad::db::Circle>(base, cad::ge::Vector3d::kZAxis, kSize);
    onLayerZero(db, *circle);
    if (block->appendEntity(std::move(circle), added) != ErrorStatus::eOk) {
        editor.print("\nError in circle drawing. ");
        return {};
    }

    const ObjectId style = currentTextStyle(db);
    auto text = std::make_unique<cad::db::Text>(base, "BM", style, kSize);
    onLayerZero(db, *text);
    text->setHorizontalMode(cad::db::TextHorzMode::kTextMid);
    text->setAlignmentPoint(base);
    // A style that draws upside down would turn "BM" over; mirrored both ways it reads upright
    // again, the way the marker is meant to be read.
    if (auto styleRecord = cad::db::open<cad::db::TextStyleTableRecord>(style, OpenMode::ForRead);
        styleRecord && styleRecord->isUpsideDown()) {
        text->mirrorInX(true);
        text->mirrorInY(true);
    }
    if (block->appendEntity(std::move(text), added) != ErrorStatus::eOk) {
        editor.print("\nError in text drawing. ");
        return {};
    }

    double below = 0.0;
    for (std::string_view tag : BomAttributes::tags()) {
        below += 1.0;
        auto definition = std::make_unique<cad::db::AttributeDefinition>(
            Point3d(base.x, base.y - below, base.z), "", std::string(tag), std::string(tag), style);
        onLayerZero(db, *definition);
        definition->setHeight(kSize);
        definition->setInvisible(true);
        definition->setFieldLength(25);
        if (block->appendEntity(std::move(definition), added) != ErrorStatus::eOk) return {};
    }
    return blockId;
}

ObjectId BomMark::layer(Database& db, const std::string& linetypeFile, cad::ed::Editor& editor) {
    ObjectId layerId = recordNamed(db.layerTableId(), kLayerName);
    if (!layerId.isNull()) return layerId;
    ObjectId linetype;
    if (loadLinetype(db, kLayerLinetype, linetypeFile, linetype, editor) != ErrorStatus::eOk)
        return {};
    auto table = cad::db::open<cad::db::SymbolTable>(db.layerTableId(), OpenMode::ForWrite);
    if (!table) return {};
    auto record = std::make_unique<cad::db::LayerTableRecord>();
    record->setName(kLayerName);
    record->setColorIndex(kLayerColor);
    record->setLinetypeObjectId(linetype);
    if (table->add(std::move(record), layerId) != ErrorStatus::eOk) return {};
    return layerId;
}

ObjectId BomMark::placeMarker(Database& db, ObjectId space, const Point3d& position,
                              double rotation, const PartRecord& record,
                              const std::string& linetypeFile, cad::ed::Editor& editor) {
    const ObjectId layerId = layer(db, linetypeFile, editor);
    const ObjectId blockId = makeDefinition(db, Point3d::kOrigin, editor);
    if (layerId.isNull() || blockId.isNull()) return {};
    auto reference = std::make_unique<cad::db::BlockReference>(position, blockId);
    reference->setDatabaseDefaults(db);
    reference->setLayer(layerId);
    reference->setRotation(rotation);
    ObjectId referenceId;
    {
        auto target = cad::db::open<cad::db::BlockTableRecord>(space, OpenMode::ForWrite);
        if (!target || target->appendEntity(std::move(reference), referenceId) != ErrorStatus::eOk)
            return {};
    }
    if (BomAttributes::fill(referenceId, &record) != ErrorStatus::eOk) return {};
    return referenceId;
}

int BomMark::refreshMarkers(Database& db, ObjectId block, const PartRecord& record,
                            const std::string& linetypeFile, cad::ed::Editor& editor) {
    const ObjectId markerBlock = recordNamed(db.blockTableId(), kBlockName);
    if (markerBlock.isNull()) return 0;
    std::vector<ObjectId> markers;
    if (auto opened = cad::db::open<cad::db::BlockTableRecord>(block, OpenMode::ForRead)) {
        for (ObjectId id : opened->entityIds()) {
            auto reference = cad::db::open<cad::db::BlockReference>(id, OpenMode::ForRead);
            if (reference && reference->blockTableRecord() == markerBlock) markers.push_back(id);
        }
    }
    if (markers.empty()) return 0;
    const ObjectId layerId = layer(db, linetypeFile, editor);
    for (ObjectId id : markers) {
        if (auto reference = cad::db::open<cad::db::BlockReference>(id, OpenMode::ForWrite);
            reference && !layerId.isNull())
            reference->setLayer(layerId);
        BomAttributes::fill(id, &record);
    }
    return static_cast<int>(markers.size());
}

}  // namespace vantor
