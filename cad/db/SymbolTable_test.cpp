// Tests of symbol tables and their records: look-up without regard to case, the refusals,
// renames, erased names, and the fields layers, linetypes and text styles write.
#include "cad/db/SymbolTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <string>
#include <vector>

#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/RegAppTableRecord.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/ViewportTableRecord.h"

namespace cad::db {
namespace {

template <class Record>
ErrorStatus addNamed(ObjectId table, std::string_view name, ObjectId& id) {
    auto record = std::make_unique<Record>();
    record->setName(name);
    return open<SymbolTable>(table, OpenMode::ForWrite)->add(std::move(record), id);
}

// The value written under `code` after the subclass marker `marker`.
std::string valueAfter(const TagRecorder& recorder, std::string_view marker, int code) {
    const auto& tags = recorder.tags();
    auto it = std::find(tags.begin(), tags.end(), RawTag{100, std::string(marker)});
    it = std::find_if(it, tags.end(), [code](const RawTag& t) { return t.code == code; });
    return it == tags.end() ? "<none>" : it->value;
}

using SymbolTableTest = testing_support::DrawingTest;

TEST_F(SymbolTableTest, LooksUpNamesWithoutRegardToCase) {
    ObjectId bom;
    ASSERT_EQ(addNamed<LayerTableRecord>(db.layerTableId(), "Bom", bom), ErrorStatus::eOk);
    auto layers = open<SymbolTable>(db.layerTableId(), OpenMode::ForRead);
    ObjectId found;
    EXPECT_EQ(layers->getAt("BOM", found), ErrorStatus::eOk);
    EXPECT_EQ(found, bom);
    EXPECT_TRUE(layers->has("bom"));
    EXPECT_TRUE(layers->has(bom));
    EXPECT_EQ(layers->getAt("BOMX", found), ErrorStatus::eKeyNotFound);
    EXPECT_TRUE(found.isNull());
    layers.close();
    ObjectId again;
    EXPECT_EQ(addNamed<LayerTableRecord>(db.layerTableId(), "BOM", again),
              ErrorStatus::eDuplicateKey);
}

TEST_F(SymbolTableTest, RefusedAddsLeaveNoId) {
    const struct {
        const char* name;
        ObjectId table;
        const char* recordName;
        ErrorStatus expected;
    } rows[] = {
        {"existing layer zero", db.layerTableId(), "0", ErrorStatus::eDuplicateKey},
        {"layer into appid table", db.regAppTableId(), "NEW", ErrorStatus::eWrongObjectType},
        {"empty name", db.layerTableId(), "", ErrorStatus::eInvalidKey},
        {"angle bracket", db.layerTableId(), "a<b", ErrorStatus::eInvalidKey},
        {"star inside", db.layerTableId(), "a*b", ErrorStatus::eInvalidKey},
    };
    for (const auto& row : rows) {
        auto record = std::make_unique<LayerTableRecord>();
        // Bypass setName's own check to see the table's.
        if (SymbolTableRecord::isValidName(row.recordName)) record->setName(row.recordName);
        ObjectId id;
        EXPECT_EQ(open<SymbolTable>(row.table, OpenMode::ForWrite)->add(std::move(record), id),
                  row.expected)
            << row.name;
        EXPECT_TRUE(id.isNull()) << row.name;
    }
}

TEST_F(SymbolTableTest, NameRulesFollowTheHost) {
    EXPECT_TRUE(SymbolTableRecord::isValidName("*Model_Space"));
    EXPECT_TRUE(SymbolTableRecord::isValidName("QRBBM2"));
    EXPECT_TRUE(SymbolTableRecord::isValidName("\xEB\xB0\xB8\xEB\xB8\x8C 1"));
    EXPECT_FALSE(SymbolTableRecord::isValidName("a\tb"));
    for (char c : std::string_view("<>/\\\":;?|,=`"))
        EXPECT_FALSE(SymbolTableRecord::isValidName(std::string("a") + c)) << c;
}

TEST_F(SymbolTableTest, ViewportsMayShareTheActiveName) {
    ObjectId first, second;
    EXPECT_EQ(addNamed<ViewportTableRecord>(db.viewportTableId(), "*ACTIVE", first),
              ErrorStatus::eOk);
    EXPECT_EQ(addNamed<ViewportTableRecord>(db.viewportTableId(), "*Active", second),
              ErrorStatus::eOk);
    auto viewports = open<SymbolTable>(db.viewportTableId(), OpenMode::ForRead);
    EXPECT_EQ(viewports->recordIds().size(), 3U);
    ObjectId found;
    viewports->getAt("*active", found);
    EXPECT_EQ(found, viewports->recordIds().front());  // the first one added
}

TEST_F(SymbolTableTest, RenamedRecordsAreFoundUnderTheirNewName) {
    ObjectId a, b;
    addNamed<LayerTableRecord>(db.layerTableId(), "A", a);
    addNamed<LayerTableRecord>(db.layerTableId(), "B", b);
    {
        auto record = open<LayerTableRecord>(a, OpenMode::ForWrite);
        EXPECT_EQ(record->setName("b"), ErrorStatus::eDuplicateKey);
        EXPECT_EQ(record->setName("Z"), ErrorStatus::eOk);
        EXPECT_EQ(record->setName("z"), ErrorStatus::eOk);  // its own name in another case
    }
    auto layers = open<SymbolTable>(db.layerTableId(), OpenMode::ForRead);
    ObjectId found;
    EXPECT_EQ(layers->getAt("A", found), ErrorStatus::eKeyNotFound);
    EXPECT_EQ(layers->getAt("Z", found), ErrorStatus::eOk);
    EXPECT_EQ(found, a);
}

TEST_F(SymbolTableTest, AnErasedRecordFreesItsName) {
    ObjectId old, fresh;
    addNamed<RegAppTableRecord>(db.regAppTableId(), "VANTOR", old);
    open<RegAppTableRecord>(old, OpenMode::ForWrite)->erase();
    {
        auto apps = open<SymbolTable>(db.regAppTableId(), OpenMode::ForRead);
        ObjectId found;
        EXPECT_EQ(apps->getAt("VANTOR", found), ErrorStatus::eKeyNotFound);
        EXPECT_EQ(apps->getAt("VANTOR", found, true), ErrorStatus::eOk);
        EXPECT_EQ(found, old);
    }
    ASSERT_EQ(addNamed<RegAppTableRecord>(db.regAppTableId(), "vantor", fresh), ErrorStatus::eOk);
    auto apps = open<SymbolTable>(db.regAppTableId(), OpenMode::ForRead);
    ObjectId found;
    apps->getAt("VANTOR", found, true);
    EXPECT_EQ(found, fresh);  // the live one wins over the erased one
    EXPECT_EQ(apps->recordIds(), (std::vector<ObjectId>{apps->recordIds().front(), fresh}));
}

TEST_F(SymbolTableTest, ManyRecordsKeepTheirOrderAndAreAllFound) {
    std::vector<ObjectId> added;
    for (int i = 999; i >= 0; --i) {
        ObjectId id;
        ASSERT_EQ(addNamed<LayerTableRecord>(db.layerTableId(), "L" + std::to_string(i), id),
                  ErrorStatus::eOk);
        added.push_back(id);
        if (i == 500) {  // a rename half way marks the index stale
            open<LayerTableRecord>(id, OpenMode::ForWrite)->setName("Renamed");
        }
    }
    auto layers = open<SymbolTable>(db.layerTableId(), OpenMode::ForRead);
    std::vector<ObjectId> ids = layers->recordIds();
    ids.erase(ids.begin());  // layer 0
    EXPECT_EQ(ids, added);
    for (int i = 0; i < 1000; ++i) {
        ObjectId found;
        const std::string name = i == 500 ? "RENAMED" : "l" + std::to_string(i);
        ASSERT_EQ(layers->getAt(name, found), ErrorStatus::eOk) << name;
        EXPECT_EQ(found, added[static_cast<std::size_t>(999 - i)]);
    }
}

TEST_F(SymbolTableTest, TableWritesItsNameAndLiveCount) {
    ObjectId gone;
    addNamed<LayerTableRecord>(db.layerTableId(), "Gone", gone);
    open<LayerTableRecord>(gone, OpenMode::ForWrite)->erase();
    TagRecorder layers;
    open<SymbolTable>(db.layerTableId(), OpenMode::ForRead)->dxfFields(layers);
    EXPECT_EQ(layers.tags(),
              (std::vector<RawTag>{{2, "LAYER"}, {100, "AcDbSymbolTable"}, {70, "1"}}));

    TagRecorder dimStyles;
    auto table = open<SymbolTable>(db.dimStyleTableId(), OpenMode::ForRead);
    table->dxfFields(dimStyles);
    const std::string standard = table->recordIds().front().handle().toHex();
    EXPECT_EQ(dimStyles.tags(), testing_support::tagsOf("2 DIMSTYLE 100 AcDbSymbolTable 70 1 100 "
                                                        "AcDbDimStyleTable 71 1 340 " +
                                                        standard));
}

TEST_F(SymbolTableTest, LayerColourCarriesTheOffState) {
    ObjectId bom;
    addNamed<LayerTableRecord>(db.layerTableId(), "BOM", bom);
    auto layer = open<LayerTableRecord>(bom, OpenMode::ForWrite);
    // Made without a linetype, a layer draws continuous lines like layer "0".
    EXPECT_EQ(layer->linetypeObjectId(), db.continuousLinetype());
    EXPECT_FALSE(layer->plotStyleNameId().isNull());
    EXPECT_EQ(layer->colorIndex(), 7);
    ASSERT_EQ(layer->setColorIndex(6), ErrorStatus::eOk);
    ASSERT_EQ(layer->setIsOff(true), ErrorStatus::eOk);
    EXPECT_EQ(layer->setColorIndex(0), ErrorStatus::eInvalidInput);
    layer->setColorIndex(3);  // stays off
    EXPECT_TRUE(layer->isOff());
    EXPECT_EQ(layer->colorIndex(), 3);
    layer->setIsFrozen(true);
    layer->setIsLocked(true);
    layer->setIsFrozen(false);
    layer->setIsPlottable(false);

    TagRecorder recorder;
    layer->dxfFields(recorder);
    const std::string marker = "AcDbLayerTableRecord";
    EXPECT_EQ(valueAfter(recorder, marker, 2), "BOM");
    EXPECT_EQ(valueAfter(recorder, marker, 70), "4");
    EXPECT_EQ(valueAfter(recorder, marker, 62), "-3");
    EXPECT_EQ(valueAfter(recorder, marker, 6), "Continuous");
    EXPECT_EQ(valueAfter(recorder, marker, 290), "0");
    EXPECT_EQ(valueAfter(recorder, marker, 370), "-3");

    TagRecorder plotted;
    layer->setIsPlottable(true);
    layer->dxfFields(plotted);
    EXPECT_EQ(valueAfter(plotted, marker, 290), "<none>");
}

TEST_F(SymbolTableTest, TextStyleGenerationFlags) {
    ObjectId id;
    addNamed<TextStyleTableRecord>(db.textStyleTableId(), "Mirror", id);
    auto style = open<TextStyleTableRecord>(id, OpenMode::ForWrite);
    style->setIsUpsideDown(true);
    style->setIsBackwards(true);
    EXPECT_EQ(style->flagBits(), 6);
    style->setIsBackwards(false);
    style->setObliquingAngle(15.0 * std::numbers::pi / 180.0);
    style->setFileName("romans.shx");
    style->setBigFontFileName("whgtxt.shx");

    TagRecorder recorder;
    style->dxfFields(recorder);
    const std::string marker = "AcDbTextStyleTableRecord";
    EXPECT_EQ(valueAfter(recorder, marker, 71), "4");
    EXPECT_EQ(std::stod(valueAfter(recorder, marker, 50)), 15.0);  // degrees in the file
    EXPECT_EQ(valueAfter(recorder, marker, 3), "romans.shx");
    EXPECT_EQ(valueAfter(recorder, marker, 4), "whgtxt.shx");
}

TEST_F(SymbolTableTest, LinetypeWritesCountBeforeLengthAndEachDash) {
    ObjectId id;
    addNamed<LinetypeTableRecord>(db.linetypeTableId(), "GAS_LINE", id);
    auto linetype = open<LinetypeTableRecord>(id, OpenMode::ForWrite);
    LinetypeTableRecord::Dash text;
    text.length = -2.5;
    text.type = LinetypeTableRecord::kText;
    text.style = db.textStyleStandard();
    text.scale = 0.1;
    text.offsetY = -0.05;
    text.text = "GAS";
    LinetypeTableRecord::Dash dash, gap;
    dash.length = 12.7;
    gap.length = -5.0;
    ASSERT_EQ(linetype->setDashes({dash, text, gap}), ErrorStatus::eOk);
    EXPECT_DOUBLE_EQ(linetype->patternLength(), 20.2);

    TagRecorder recorder;
    linetype->dxfFields(recorder);
    const auto codes = recorder.codes();
    const std::vector<int> expected = {100, 100, 2,   70, 3,  72, 73, 40, 49, 74, 49,
                                       74,  75,  340, 46, 50, 44, 45, 9,  49, 74};
    EXPECT_EQ(codes, expected);
    EXPECT_EQ(valueAfter(recorder, "AcDbLinetypeTableRecord", 73), "3");
    EXPECT_EQ(valueAfter(recorder, "AcDbLinetypeTableRecord", 340),
              db.textStyleStandard().handle().toHex());
}

}  // namespace
}  // namespace cad::db
