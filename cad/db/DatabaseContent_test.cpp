// Tests of the default drawing: every table and standard record, model and paper space tied
// to their layouts both ways, the named-objects dictionary, the header, ownership throughout,
// and the current layer.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/DimStyleTableRecord.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Layout.h"
#include "cad/db/Line.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/TextStyleTableRecord.h"

namespace cad::db {
namespace {

ObjectId recordOf(ObjectId table, std::string_view name) {
    ObjectId id;
    open<SymbolTable>(table, OpenMode::ForRead)->getAt(name, id);
    return id;
}

TEST(DatabaseContent, HasEveryTableWithItsStandardRecords) {
    Database db;
    const struct {
        ObjectId table;
        SymbolTableKind kind;
        std::vector<std::string> names;
    } expected[] = {
        {db.blockTableId(), SymbolTableKind::BlockRecord, {"*Model_Space", "*Paper_Space"}},
        {db.layerTableId(), SymbolTableKind::Layer, {"0"}},
        {db.linetypeTableId(), SymbolTableKind::Linetype, {"ByBlock", "ByLayer", "Continuous"}},
        {db.textStyleTableId(), SymbolTableKind::TextStyle, {"Standard"}},
        {db.viewTableId(), SymbolTableKind::View, {}},
        {db.ucsTableId(), SymbolTableKind::Ucs, {}},
        {db.viewportTableId(), SymbolTableKind::Viewport, {"*Active"}},
        {db.regAppTableId(), SymbolTableKind::RegApp, {"ACAD"}},
        {db.dimStyleTableId(), SymbolTableKind::DimStyle, {"Standard"}},
    };
    for (const auto& table : expected) {
        auto t = open<SymbolTable>(table.table, OpenMode::ForRead);
        ASSERT_TRUE(t) << tableName(table.kind);
        EXPECT_EQ(t->kind(), table.kind);
        std::vector<std::string> names;
        for (ObjectId id : t->recordIds())
            names.push_back(open<SymbolTableRecord>(id, OpenMode::ForRead)->name());
        EXPECT_EQ(names, table.names) << tableName(table.kind);
    }
    EXPECT_EQ(recordOf(db.linetypeTableId(), "BYLAYER"), db.byLayerLinetype());
    EXPECT_EQ(recordOf(db.linetypeTableId(), "BYBLOCK"), db.byBlockLinetype());
    EXPECT_EQ(recordOf(db.textStyleTableId(), "STANDARD"), db.textStyleStandard());
    EXPECT_EQ(db.clayer(), db.layerZero());

    auto zero = open<LayerTableRecord>(db.layerZero(), OpenMode::ForRead);
    EXPECT_EQ(zero->colorIndex(), 7);
    EXPECT_EQ(zero->linetypeObjectId(), db.continuousLinetype());
    EXPECT_EQ(open<LinetypeTableRecord>(db.continuousLinetype(), OpenMode::ForRead)->comments(),
              "Solid line");
    EXPECT_EQ(open<TextStyleTableRecord>(db.textStyleStandard(), OpenMode::ForRead)->fileName(),
              "txt");
    auto dimStyle =
        open<DimStyleTableRecord>(recordOf(db.dimStyleTableId(), "Standard"), OpenMode::ForRead);
    EXPECT_EQ(dimStyle->dimtxsty(), db.textStyleStandard());
    EXPECT_EQ(db.header().text("$CLAYER"), "0");
    EXPECT_EQ(db.header().text("$DWGCODEPAGE"), "ANSI_949");
    EXPECT_EQ(db.header().text("$ACADVER"), "AC1015");
}

TEST(DatabaseContent, SpacesAndLayoutsPointAtEachOther) {
    Database db;
    auto layouts = open<Dictionary>(db.layoutDictionaryId(), OpenMode::ForRead);
    ASSERT_TRUE(layouts);
    EXPECT_EQ(layouts->numEntries(), 2U);
    const struct {
        const char* layout;
        ObjectId space;
        std::int16_t tab;
    } links[] = {{"Model", db.modelSpaceId(), 0}, {"Layout1", db.paperSpaceId(), 1}};
    for (const auto& link : links) {
        ObjectId layoutId;
        ASSERT_EQ(layouts->getAt(link.layout, layoutId), ErrorStatus::eOk);
        auto layout = open<Layout>(layoutId, OpenMode::ForRead);
        auto space = open<BlockTableRecord>(link.space, OpenMode::ForRead);
        EXPECT_EQ(layout->layoutName(), link.layout);
        EXPECT_EQ(layout->tabOrder(), link.tab);
        EXPECT_EQ(layout->blockTableRecordId(), link.space);
        EXPECT_EQ(space->layoutId(), layoutId);
        EXPECT_TRUE(space->isLayout());
        EXPECT_TRUE(open<DbObject>(space->blockBeginId(), OpenMode::ForRead));
        EXPECT_TRUE(open<DbObject>(space->blockEndId(), OpenMode::ForRead));
    }
    const ObjectId model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)->layoutId();
    EXPECT_TRUE(open<Layout>(model, OpenMode::ForRead)->isModelLayout());
}

TEST(DatabaseContent, NamedObjectsDictionaryHasTheHostsEntries) {
    Database db;
    auto root = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead);
    std::vector<std::string> keys;
    for (const auto& entry : root->entries()) keys.push_back(entry.key);
    EXPECT_EQ(keys, (std::vector<std::string>{"ACAD_GROUP", "ACAD_LAYOUT", "ACAD_MLINESTYLE",
                                              "ACAD_PLOTSETTINGS", "ACAD_PLOTSTYLENAME"}));
    ObjectId groups;
    root->getAt("ACAD_GROUP", groups);
    EXPECT_EQ(groups, db.groupDictionaryId());
    ObjectId plotStyles;
    root->getAt("ACAD_PLOTSTYLENAME", plotStyles);
    // Layer "0" names the "Normal" plot style, which the plot style dictionary owns.
    const ObjectId normal =
        open<LayerTableRecord>(db.layerZero(), OpenMode::ForRead)->plotStyleNameId();
    auto placeholder = open<DbObject>(normal, OpenMode::ForRead);
    ASSERT_TRUE(placeholder);
    EXPECT_EQ(placeholder->dxfName(), "ACDBPLACEHOLDER");
    EXPECT_EQ(placeholder->ownerId(), plotStyles);
}

TEST(DatabaseContent, EveryObjectButTheRootsIsOwnedByItsOwner) {
    Database db;
    const std::vector<ObjectId> roots = {db.blockTableId(),    db.layerTableId(),
                                         db.linetypeTableId(), db.textStyleTableId(),
                                         db.viewTableId(),     db.ucsTableId(),
                                         db.viewportTableId(), db.regAppTableId(),
                                         db.dimStyleTableId(), db.namedObjectsDictionaryId()};
    for (ObjectId id : db.objectIds()) {
        const DbObject& object = *id.slot()->object;
        if (std::find(roots.begin(), roots.end(), id) != roots.end()) {
            EXPECT_TRUE(object.ownerId().isNull()) << object.dxfName();
            continue;
        }
        ASSERT_TRUE(object.ownerId().isValid()) << object.dxfName() << " " << id.handle().toHex();
        std::vector<ObjectId> owned;
        object.ownerId().slot()->object->ownedObjects(owned);
        EXPECT_NE(std::find(owned.begin(), owned.end(), id), owned.end())
            << object.dxfName() << " " << id.handle().toHex();
    }
    EXPECT_EQ(db.openObjectCount(), 0);
    EXPECT_FALSE(db.header().text("$HANDSEED")->empty());
}

TEST(DatabaseContent, AnEmptyDatabaseHasNothing) {
    Database db(false);
    EXPECT_TRUE(db.objectIds().empty());
    EXPECT_TRUE(db.blockTableId().isNull());
    EXPECT_TRUE(db.clayer().isNull());
    EXPECT_TRUE(db.header().variables().empty());
}

TEST(DatabaseContent, NewEntitiesGoOnTheCurrentLayer) {
    Database db;
    ObjectId bom;
    {
        auto layer = std::make_unique<LayerTableRecord>();
        layer->setName("BOM");
        layer->setColorIndex(6);
        open<SymbolTable>(db.layerTableId(), OpenMode::ForWrite)->add(std::move(layer), bom);
    }
    EXPECT_EQ(db.setClayer(bom), ErrorStatus::eOk);
    EXPECT_EQ(db.clayer(), bom);
    EXPECT_EQ(db.header().text("$CLAYER"), "BOM");
    EXPECT_EQ(db.setClayer(db.continuousLinetype()), ErrorStatus::eWrongObjectType);
    EXPECT_EQ(db.setClayer(ObjectId::kNull), ErrorStatus::eNullObjectId);
    Database other;
    EXPECT_EQ(db.setClayer(other.layerZero()), ErrorStatus::eWrongDatabase);
    EXPECT_EQ(db.clayer(), bom);

    ObjectId line;
    open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite)
        ->appendEntity(std::make_unique<Line>(), line);
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->layerId(), bom);
    EXPECT_EQ(db.openObjectCount(), 0);
}

}  // namespace
}  // namespace cad::db
