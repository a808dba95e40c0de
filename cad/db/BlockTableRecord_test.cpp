// Tests of block table records: appending and iterating entities, the BLOCK and ENDBLK made
// with a new block and written from it, references to a block, layouts and previews.
#include "cad/db/BlockTableRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"

namespace cad::db {
namespace {

using testing_support::append;
using testing_support::tagsOf;

class BlockTableRecordTest : public testing_support::DrawingTest {
protected:
    ObjectId addBlock(std::string_view name) { return testing_support::addBlock(db, name); }
};

TEST_F(BlockTableRecordTest, AppendedEntitiesComeBackInOrderWithoutErasedOnes) {
    const ObjectId block = addBlock("QRBBM2");
    std::vector<ObjectId> lines;
    for (int i = 0; i < 3; ++i)
        lines.push_back(append(
            block, std::make_unique<Line>(ge::Point3d{0, 0, 0}, ge::Point3d{1.0 * i, 1, 0})));
    open<Line>(lines[1], OpenMode::ForWrite)->erase();

    auto record = open<BlockTableRecord>(block, OpenMode::ForRead);
    EXPECT_EQ(record->entityIds(), (std::vector<ObjectId>{lines[0], lines[2]}));
    EXPECT_EQ(record->allEntityIds(), lines);
    auto line = open<Line>(lines[0], OpenMode::ForRead);
    EXPECT_EQ(line->ownerId(), block);
    EXPECT_EQ(line->layerId(), db.layerZero());  // the database's defaults
    EXPECT_EQ(line->linetypeId(), db.byLayerLinetype());
}

TEST_F(BlockTableRecordTest, ANewBlockGetsItsBlockAndEndblk) {
    const ObjectId block = addBlock("PART-1");
    ObjectId begin, end;
    {
        auto record = open<BlockTableRecord>(block, OpenMode::ForWrite);
        begin = record->blockBeginId();
        end = record->blockEndId();
        record->setOrigin({10, 20, 0});
        record->setComments("gate valve");
    }
    auto blockBegin = open<BlockBegin>(begin, OpenMode::ForRead);
    ASSERT_TRUE(blockBegin);
    ASSERT_TRUE(open<BlockEnd>(end, OpenMode::ForRead));
    EXPECT_EQ(blockBegin->ownerId(), block);
    EXPECT_EQ(blockBegin->layerId(), db.layerZero());

    // The BLOCK writes what its record holds now, name twice.
    TagRecorder recorder;
    blockBegin->dxfFields(recorder);
    const auto& tags = recorder.tags();
    auto it = std::find(tags.begin(), tags.end(), RawTag{100, "AcDbBlockBegin"});
    ASSERT_NE(it, tags.end());
    std::vector<RawTag> expected = tagsOf("2 PART-1 70 0 10 10 20 20 30 0 3 PART-1");
    expected.insert(expected.end(), {{1, ""}, {4, "gate valve"}});
    EXPECT_EQ(std::vector<RawTag>(it + 1, tags.end()), expected);
    // Erasing the block takes the entities and the frame along.
    blockBegin.close();
    const ObjectId line = append(block, std::make_unique<Line>());
    open<BlockTableRecord>(block, OpenMode::ForWrite)->erase();
    EXPECT_TRUE(begin.isErased());
    EXPECT_TRUE(end.isErased());
    EXPECT_TRUE(line.isErased());
}

TEST_F(BlockTableRecordTest, FlagsAndKindsOfBlocks) {
    const ObjectId part = addBlock("PART");
    {
        auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead);
        EXPECT_TRUE(model->isLayout());
        EXPECT_FALSE(model->isAnonymous());
    }
    auto record = open<BlockTableRecord>(part, OpenMode::ForWrite);
    EXPECT_FALSE(record->isLayout());
    EXPECT_FALSE(record->hasAttributeDefinitions());
    record->setFlags(BlockTableRecord::kAnonymous);
    EXPECT_TRUE(record->isAnonymous());
    ObjectId attdef;
    record->appendEntity(
        std::make_unique<AttributeDefinition>(ge::Point3d{0, -1, 0}, "", "NAME", "NAME"), attdef);
    EXPECT_TRUE(record->hasAttributeDefinitions());
}

TEST_F(BlockTableRecordTest, FindsTheLiveReferencesOfABlock) {
    const ObjectId part = addBlock("PART");
    const ObjectId other = addBlock("OTHER");
    const ObjectId inModel =
        append(db.modelSpaceId(), std::make_unique<BlockReference>(ge::Point3d{}, part));
    const ObjectId inPaper =
        append(db.paperSpaceId(), std::make_unique<BlockReference>(ge::Point3d{5, 5, 0}, part));
    const ObjectId nested = append(other, std::make_unique<BlockReference>(ge::Point3d{}, part));
    const ObjectId erased =
        append(db.modelSpaceId(), std::make_unique<BlockReference>(ge::Point3d{}, part));
    append(db.modelSpaceId(), std::make_unique<BlockReference>(ge::Point3d{}, other));
    open<BlockReference>(erased, OpenMode::ForWrite)->erase();

    std::vector<ObjectId> ids;
    ASSERT_EQ(open<BlockTableRecord>(part, OpenMode::ForRead)->getBlockReferenceIds(ids),
              ErrorStatus::eOk);
    std::sort(ids.begin(), ids.end());
    std::vector<ObjectId> expected = {inModel, inPaper, nested};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(ids, expected);
}

TEST_F(BlockTableRecordTest, WritesLayoutAndPreviewOnlyWhenItHasThem) {
    const ObjectId part = addBlock("PART");
    auto record = open<BlockTableRecord>(part, OpenMode::ForWrite);
    TagRecorder plain;
    record->dxfFields(plain);
    EXPECT_EQ(plain.tags(), tagsOf("100 AcDbSymbolTableRecord 100 AcDbBlockTableRecord 2 PART "
                                   "70 0 280 1 281 0"));
    ASSERT_EQ(record->setPreviewIcon(std::string("BM\x00\x01", 4)), ErrorStatus::eOk);
    record->setInsertUnits(4);
    TagRecorder withPreview;
    record->dxfFields(withPreview);
    EXPECT_EQ(withPreview.tags().back(), (RawTag{310, "424D0001"}));
    EXPECT_EQ(withPreview.tags()[3], (RawTag{70, "4"}));

    TagRecorder model;
    auto modelSpace = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead);
    modelSpace->dxfFields(model);
    EXPECT_EQ(model.tags()[3], (RawTag{340, modelSpace->layoutId().handle().toHex()}));
    // R14 records carry the name only.
    TagRecorder r14(DxfVersion::R14);
    record->dxfFields(r14);
    EXPECT_EQ(r14.codes(), (std::vector<int>{100, 100, 2}));
}

TEST_F(BlockTableRecordTest, AppendingNeedsTheRecordOpenForWriteAndInADatabase) {
    ObjectId id;
    EXPECT_EQ(open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)
                  ->appendEntity(std::make_unique<Line>(), id),
              ErrorStatus::eWasNotOpenedForWrite);
    BlockTableRecord loose;
    EXPECT_EQ(loose.appendEntity(std::make_unique<Line>(), id), ErrorStatus::eNotInDatabase);
    EXPECT_EQ(
        open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite)->appendEntity(db.layerZero()),
        ErrorStatus::eWrongObjectType);
}

}  // namespace
}  // namespace cad::db
