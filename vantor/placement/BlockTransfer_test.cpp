// Copying a block into a drawing that has it already, and capturing entities as a block with
// the update question.
#include "vantor/placement/BlockTransfer.h"

#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ScriptInputSource.h"
#include "vantor/placement/PlacementTestDrawing.h"

namespace vantor {
namespace {

using namespace testing_support;
using cad::db::BlockTableRecord;
using cad::db::Database;

class BlockTransferTest : public ::testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(library.openObjectCount(), 0);
        EXPECT_EQ(target.openObjectCount(), 0);
    }
    Database library;
    Database target;
};

TEST_F(BlockTransferTest, CopyIntoExistingBlockKeepsRecordReferencesAndLayerColours) {
    const ObjectId source = addBlock(library, "PART", {1, 2, 0});
    addLine(source, addLayer(library, "EDGE", 1), {0, 0, 0}, {10, 0, 0});
    append(source,
           std::make_unique<cad::db::Circle>(cad::ge::Point3d{}, cad::ge::Vector3d::kZAxis, 3));

    const ObjectId edge = addLayer(target, "EDGE", 5);
    const ObjectId existing = addBlock(target, "PART");
    addLine(existing, edge, {0, 0, 0}, {0, 99, 0});
    cad::db::open<BlockTableRecord>(existing, OpenMode::ForWrite)->setPreviewIcon("old icon");
    const ObjectId reference =
        append(target.modelSpaceId(),
               std::make_unique<cad::db::BlockReference>(cad::ge::Point3d(50, 50, 0), existing));

    ASSERT_EQ(BlockTransfer::copyDefinition(target, source), existing);
    auto block = cad::db::open<BlockTableRecord>(existing, OpenMode::ForRead);
    EXPECT_EQ(block->entityIds().size(), 2u);
    EXPECT_TRUE(block->origin().isEqualTo({1, 2, 0}));
    EXPECT_FALSE(block->hasPreviewIcon());
    block.close();
    EXPECT_EQ(
        cad::db::open<cad::db::BlockReference>(reference, OpenMode::ForRead)->blockTableRecord(),
        existing);
    auto line = cad::db::open<cad::db::Line>(entitiesOf(existing).front(), OpenMode::ForRead);
    EXPECT_EQ(line->layerId(), edge);
    EXPECT_TRUE(line->endPoint().isEqualTo({10, 0, 0}));
    line.close();
    EXPECT_EQ(cad::db::open<cad::db::LayerTableRecord>(edge, OpenMode::ForRead)->colorIndex(), 5);
}

struct CaptureCase {
    const char* name;
    bool exists;
    int answer;  // to the update question
    bool sameDatabase;
    bool made;
};

class Capture : public BlockTransferTest, public ::testing::WithParamInterface<CaptureCase> {};

TEST_P(Capture, AsksBeforeReplacingAndClonesByDatabase) {
    const CaptureCase& row = GetParam();
    Database& source = row.sameDatabase ? target : library;
    const ObjectId line = addLine(source.modelSpaceId(), source.layerZero(), {0, 0, 0}, {4, 4, 0});
    ObjectId existing;
    if (row.exists) {
        existing = addBlock(target, "WASHER");
        addLine(existing, target.layerZero(), {0, 0, 0}, {1, 0, 0});
        addLine(existing, target.layerZero(), {0, 0, 0}, {0, 1, 0});
    }
    cad::ed::Editor editor;
    cad::ed::ScriptInputSource script({"WASHER", "2,3"});
    editor.setInputSource(&script);
    cad::app::ScriptedDialogs dialogs;
    dialogs.pushAnswer(row.answer);

    const ObjectId made = BlockTransfer::capture({line}, target, row.sameDatabase, editor, dialogs);
    ASSERT_EQ(dialogs.messageBoxes().size(), row.exists ? 1u : 0u);
    if (row.exists) {
        EXPECT_EQ(dialogs.messageBoxes()[0].text, BlockTransfer::kUpdateQuestion);
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "블록 갱신");
        EXPECT_EQ(dialogs.messageBoxes()[0].flags,
                  cad::app::MB_OKCANCEL | cad::app::MB_ICONWARNING);
    }
    const ObjectId block = lookUp(target.blockTableId(), "WASHER");
    if (!row.made) {
        EXPECT_TRUE(made.isNull());
        EXPECT_EQ(entitiesOf(block).size(), 2u);  // untouched
        return;
    }
    ASSERT_EQ(made, block);
    if (row.exists) {
        EXPECT_EQ(made, existing);
    }
    ASSERT_EQ(entitiesOf(block).size(), 1u);
    EXPECT_NE(entitiesOf(block)[0], line);
    EXPECT_TRUE(
        cad::db::open<BlockTableRecord>(block, OpenMode::ForRead)->origin().isEqualTo({2, 3, 0}));
    EXPECT_EQ(entitiesOf(source.modelSpaceId()).size(), 1u);  // the selection stays
}

INSTANTIATE_TEST_SUITE_P(
    BlockTransfer, Capture,
    ::testing::Values(
        CaptureCase{"new_block_from_another_drawing", false, cad::app::IDOK, false, true},
        CaptureCase{"new_block_in_the_same_drawing", false, cad::app::IDOK, true, true},
        CaptureCase{"existing_block_updated_on_ok", true, cad::app::IDOK, false, true},
        CaptureCase{"existing_block_kept_on_cancel", true, cad::app::IDCANCEL, true, false}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vantor
