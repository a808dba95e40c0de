// Tests of the default drawing: every table and standard record, model and paper space tied
// to their layouts both ways, the named-objects dictionary, the header, ownership throughout,
// and the current layer.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cad/db/Dictionary.h"
#include "cad/db/DimStyleTableRecord.h"
#include "cad/db/Group.h"
#include "cad/db/Layout.h"
#include "cad/db/Line.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::db {
namespace {

using namespace testing_support;

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
    EXPECT_EQ(lookUp(db.linetypeTableId(), "BYLAYER"), db.byLayerLinetype());
    EXPECT_EQ(lookUp(db.linetypeTableId(), "BYBLOCK"), db.byBlockLinetype());
    EXPECT_EQ(lookUp(db.textStyleTableId(), "STANDARD"), db.textStyleStandard());
    EXPECT_EQ(db.clayer(), db.layerZero());

    auto zero = open<LayerTableRecord>(db.layerZero(), OpenMode::ForRead);
    EXPECT_EQ(zero->colorIndex(), 7);
    EXPECT_EQ(zero->linetypeObjectId(), db.continuousLinetype());
    EXPECT_EQ(open<LinetypeTableRecord>(db.continuousLinetype(), OpenMode::ForRead)->comments(),
              "Solid line");
    EXPECT_EQ(open<TextStyleTableRecord>(db.textStyleStandard(), OpenMode::ForRead)->fileName(),
              "txt");
    auto dimStyle =
        open<DimStyleTableRecord>(lookUp(db.dimStyleTableId(), "Standard"), OpenMode::ForRead);
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
    const ObjectId bom = addLayer(db, "BOM", 6);
    EXPECT_EQ(db.setClayer(bom), ErrorStatus::eOk);
    EXPECT_EQ(db.clayer(), bom);
    EXPECT_EQ(db.header().text("$CLAYER"), "BOM");
    EXPECT_EQ(db.setClayer(db.continuousLinetype()), ErrorStatus::eWrongObjectType);
    EXPECT_EQ(db.setClayer(ObjectId::kNull), ErrorStatus::eNullObjectId);
    Database other;
    EXPECT_EQ(db.setClayer(other.layerZero()), ErrorStatus::eWrongDatabase);
    EXPECT_EQ(db.clayer(), bom);

    const ObjectId line = append(db.modelSpaceId(), std::make_unique<Line>());
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->layerId(), bom);
    EXPECT_EQ(db.openObjectCount(), 0);
}

class DatabaseRoundTrip : public ::testing::TestWithParam<DxfVersion> {};

// What the module keeps in a library drawing (catalogue dictionaries and records, part blocks
// with previews, the BOM layer, groups) survives saving and reading back.
TEST_P(DatabaseRoundTrip, ModuleObjectsSurviveSaveAndRead) {
    const bool r2000 = GetParam() == DxfVersion::R2000;
    const std::string korean = "\xEB\xB0\xB8\xEB\xB8\x8C";  // a category name in Korean
    const std::string preview("BM\x1A\x00\xFF", 5);
    auto chainFor = [&](ObjectId library) {
        return ResBufChain{
            {2, std::string("PART")},  {10, ge::Point3d{1.5, -2, 0.25}}, {1, korean},
            {90, std::int32_t{18134}}, {310, BinaryChunk{preview}},      {340, library}};
    };
    sys::TestTempFolder folder;
    const std::string path = folder.file("library.dxf");
    {
        Database db;
        ObjectId library, category, record, line, group;
        open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite)
            ->setAt("Adv data list", std::make_unique<Dictionary>(), library);
        open<Dictionary>(library, OpenMode::ForWrite)
            ->setAt(korean, std::make_unique<Dictionary>(), category);
        auto xrecord = std::make_unique<Xrecord>();
        xrecord->setFromRbChain(chainFor(library));
        open<Dictionary>(category, OpenMode::ForWrite)
            ->setAt("QRB_VANTORDATA-0", std::move(xrecord), record);

        const ObjectId part = addBlock(db, "PART", {10, 20, 0});
        {
            auto block = open<BlockTableRecord>(part, OpenMode::ForWrite);
            block->setComments("gate valve");
            block->setPreviewIcon(preview);
        }
        line = append(part, std::make_unique<Line>(ge::Point3d{}, ge::Point3d{5, 5, 0}));
        {
            auto bom = open<LayerTableRecord>(addLayer(db, "BOM", 6), OpenMode::ForWrite);
            bom->setIsOff(true);
            bom->setIsLocked(true);
        }
        auto textStyle = std::make_unique<TextStyleTableRecord>();
        textStyle->setIsUpsideDown(true);
        textStyle->setFileName("txt");
        addRecord(db.textStyleTableId(), std::move(textStyle), "MIRROR");

        auto made = std::make_unique<Group>("pump set");
        made->append(line);
        ASSERT_EQ(addGroup(db, std::move(made), "*", group), ErrorStatus::eOk);
        ASSERT_EQ(db.saveAs(path, GetParam()), ErrorStatus::eOk) << db.lastErrorMessage();
        EXPECT_EQ(db.openObjectCount(), 0);
    }

    Database db(false);
    ASSERT_EQ(db.readDwgFile(path), ErrorStatus::eOk) << db.lastErrorMessage();
    ObjectId library, category, record;
    ASSERT_EQ(open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead)
                  ->getAt("ADV DATA LIST", library),
              ErrorStatus::eOk);
    ASSERT_EQ(open<Dictionary>(library, OpenMode::ForRead)->getAt(korean, category),
              ErrorStatus::eOk);
    ASSERT_EQ(open<Dictionary>(category, OpenMode::ForRead)->getAt("qrb_vantordata-0", record),
              ErrorStatus::eOk);
    {
        auto xrecord = open<Xrecord>(record, OpenMode::ForRead);
        ASSERT_TRUE(xrecord);
        const ResBufChain expected = chainFor(library);
        ASSERT_EQ(xrecord->rbChain().size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(xrecord->rbChain()[i].code, expected[i].code);
            EXPECT_EQ(xrecord->rbChain()[i].value, expected[i].value) << i;
        }
    }
    {
        auto part = open<BlockTableRecord>(lookUp(db.blockTableId(), "part"), OpenMode::ForRead);
        ASSERT_TRUE(part);
        EXPECT_TRUE(part->origin().isEqualTo({10, 20, 0}));
        EXPECT_EQ(part->entityIds().size(), 1U);
        EXPECT_EQ(part->comments(), r2000 ? "gate valve" : "");
        EXPECT_EQ(part->previewIcon(), r2000 ? preview : "");
    }
    {
        auto bom = open<LayerTableRecord>(lookUp(db.layerTableId(), "BOM"), OpenMode::ForRead);
        ASSERT_TRUE(bom);
        EXPECT_EQ(bom->colorIndex(), 6);
        EXPECT_TRUE(bom->isOff());
        EXPECT_TRUE(bom->isLocked());
        auto style =
            open<TextStyleTableRecord>(lookUp(db.textStyleTableId(), "MIRROR"), OpenMode::ForRead);
        EXPECT_TRUE(style->isUpsideDown());
    }
    {
        auto groups = open<Dictionary>(db.groupDictionaryId(), OpenMode::ForRead);
        ObjectId groupId;
        ASSERT_EQ(groups->getAt("*A0", groupId), ErrorStatus::eOk);
        auto group = open<Group>(groupId, OpenMode::ForRead);
        EXPECT_TRUE(group->isAnonymous());
        EXPECT_EQ(group->description(), "pump set");
        ASSERT_EQ(group->numEntities(), 1U);
        auto member = open<Line>(group->allEntityIds().front(), OpenMode::ForRead);
        EXPECT_EQ(member->persistentReactors(), std::vector<ObjectId>{groupId});
    }
    EXPECT_EQ(db.openObjectCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Versions, DatabaseRoundTrip,
                         ::testing::Values(DxfVersion::R2000, DxfVersion::R14),
                         [](const auto& row) {
                             return row.param == DxfVersion::R14 ? "R14" : "R2000";
                         });

}  // namespace
}  // namespace cad::db
