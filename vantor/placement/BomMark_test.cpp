// The BOM marker block, its layer with the linetype file, and the attribute rule by tag.
#include "vantor/placement/BomMark.h"

#include <gtest/gtest.h>

#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/ed/Editor.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/placement/BomAttributes.h"
#include "vantor/placement/LinetypeFile.h"
#include "vantor/placement/PlacementTestDrawing.h"

namespace vantor {
namespace {

using namespace testing_support;
using cad::db::AttributeDefinition;
using cad::db::Database;

const std::string kShippedLinetypes = std::string(VANTOR_SOURCE_DIR) + "/data/acadiso.lin";

class BomMarkTest : public cad::db::testing_support::DrawingTest {
protected:
    cad::ed::Editor editor;
};

TEST_F(BomMarkTest, DefinitionHoldsCircleTextAndFourteenInvisibleAttributes) {
    const ObjectId block = BomMark::makeDefinition(db, {10, 20, 0}, editor);
    ASSERT_FALSE(block.isNull());
    EXPECT_EQ(BomMark::makeDefinition(db, {0, 0, 0}, editor), block);  // reused as it is
    const std::vector<ObjectId> entities = entitiesOf(block);
    ASSERT_EQ(entities.size(), 16u);
    auto text = cad::db::open<cad::db::Text>(entities[1], OpenMode::ForRead);
    EXPECT_EQ(text->textString(), "BM");
    EXPECT_EQ(text->horizontalMode(), cad::db::TextHorzMode::kTextMid);
    EXPECT_FALSE(text->isMirroredInX());
    text.close();
    for (std::size_t k = 1; k <= BomAttributes::kTagCount; ++k) {
        auto definition = cad::db::open<AttributeDefinition>(entities[k + 1], OpenMode::ForRead);
        ASSERT_TRUE(definition);
        EXPECT_EQ(definition->tag(), BomAttributes::tags()[k - 1]);
        EXPECT_EQ(definition->prompt(), definition->tag());
        EXPECT_TRUE(definition->position().isEqualTo({10, 20.0 - k, 0}));
        EXPECT_TRUE(definition->isInvisible());
        EXPECT_FALSE(definition->isConstant() || definition->isVerifiable() ||
                     definition->isPreset());
        EXPECT_EQ(definition->fieldLength(), 25);
    }
    // The quantity fills the one row no field takes; USER6 is the lowest, 14 below the base.
    const std::array<std::string_view, BomAttributes::kTagCount> order = {
        "NAME",   "ENAME", "SPEC",  "MATERIAL", "QTY",   "WEIGHT", "PRICE",
        "REMARK", "USER1", "USER2", "USER3",    "USER4", "USER5",  "USER6"};
    EXPECT_EQ(BomAttributes::tags(), order);
}

TEST_F(BomMarkTest, UpsideDownStyleMirrorsTheTextBothWays) {
    cad::db::open<cad::db::TextStyleTableRecord>(db.textStyleStandard(), OpenMode::ForWrite)
        ->setIsUpsideDown(true);
    const ObjectId block = BomMark::makeDefinition(db, {}, editor);
    auto text = cad::db::open<cad::db::Text>(entitiesOf(block)[1], OpenMode::ForRead);
    EXPECT_TRUE(text->isMirroredInX());
    EXPECT_TRUE(text->isMirroredInY());
}

TEST_F(BomMarkTest, LayerLoadsContinuousFromTheLinetypeFileWhenMissing) {
    cad::db::open<cad::db::LinetypeTableRecord>(db.continuousLinetype(), OpenMode::ForWrite)
        ->erase();
    EXPECT_TRUE(BomMark::layer(db, "/no/such/acadiso.lin", editor).isNull());
    EXPECT_NE(editor.commandLine().text().find("eFileNotFound"), std::string::npos);

    const ObjectId layer = BomMark::layer(db, kShippedLinetypes, editor);
    ASSERT_FALSE(layer.isNull());
    auto record = cad::db::open<cad::db::LayerTableRecord>(layer, OpenMode::ForRead);
    EXPECT_EQ(record->name(), "BOM");
    EXPECT_EQ(record->colorIndex(), 6);
    EXPECT_EQ(record->linetypeObjectId(), lookUp(db.linetypeTableId(), "CONTINUOUS"));
    EXPECT_FALSE(record->linetypeObjectId().isNull());
}

TEST(LinetypeFile, ShippedFileParsesAndFaultsNameTheirLine) {
    std::vector<LinetypeDefinition> definitions;
    std::string error;
    ASSERT_EQ(LinetypeFile::read(kShippedLinetypes, definitions, error), cad::ErrorStatus::eOk)
        << error;
    ASSERT_GE(definitions.size(), 6u);
    EXPECT_EQ(definitions[0].name, "CONTINUOUS");
    EXPECT_TRUE(definitions[0].dashes.empty());
    definitions.clear();
    EXPECT_FALSE(LinetypeFile::parse("*DASHED,Dashed\nA,12,x\n", "t.lin", definitions, error));
    EXPECT_EQ(error, "t.lin:2: expected lengths separated by commas");
    EXPECT_FALSE(LinetypeFile::parse(";; c\n*DOT,Dot\n", "t.lin", definitions, error));
    EXPECT_EQ(error, "t.lin:2: expected the pattern line of the last linetype");
}

TEST(BomAttributes, TextOfATagIsTheRecordFieldOrTheTagItself) {
    PartRecord record;
    record.kname = "육각볼트";
    record.ename = "Hex bolt";
    record.price = "120";
    record.user[5] = "납기 2주";
    const std::pair<const char*, const char*> rows[] = {
        {"NAME", "육각볼트"}, {"QTY", "1"},   {"USER6", "납기 2주"},
        {"name", "name"},     {"DWG", "DWG"},  // lower case is unknown too
    };
    for (const auto& [tag, text] : rows)
        EXPECT_EQ(BomAttributes::textFor(tag, record), text) << tag;
}

}  // namespace
}  // namespace vantor
