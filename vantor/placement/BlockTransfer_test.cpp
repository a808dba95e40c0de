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
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using namespace testing_support;
using cad::db::BlockTableRecord;
using cad::db::Database;

TEST(BlockTransfer, CopyIntoExistingBlockKeepsRecordReferencesAndLayerColours) {
    Database library, target;
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
    EXPECT_EQ(library.openObjectCount() + target.openObjectCount(), 0);
}

TEST(BlockTransfer, CaptureAsksBeforeReplacingAndClonesByDatabase) {
    const struct {
        const char* name;
        bool exists;
        int answer;  // to the update question
        bool sameDatabase, made;
    } rows[] = {
        {"new block from another drawing", false, cad::app::IDOK, false, true},
        {"new block in the same drawing", false, cad::app::IDOK, true, true},
        {"existing block updated on OK", true, cad::app::IDOK, false, true},
        {"existing block kept on cancel", true, cad::app::IDCANCEL, true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Database library, target;
        Database& source = row.sameDatabase ? target : library;
        const ObjectId line =
            addLine(source.modelSpaceId(), source.layerZero(), {0, 0, 0}, {4, 4, 0});
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

        const ObjectId made =
            BlockTransfer::capture({line}, target, row.sameDatabase, editor, dialogs);
        EXPECT_EQ(boxesShown(dialogs),
                  row.exists
                      ? std::vector<std::string>{"블록 갱신: " +
                                                 std::string(BlockTransfer::kUpdateQuestion) +
                                                 " [warning ok-cancel]"}
                      : std::vector<std::string>{});
        const ObjectId block = lookUp(target.blockTableId(), "WASHER");
        if (!row.made) {
            EXPECT_TRUE(made.isNull());
            EXPECT_EQ(entitiesOf(block).size(), 2u);  // untouched
        } else {
            ASSERT_EQ(made, block);
            EXPECT_TRUE(!row.exists || made == existing);
            ASSERT_EQ(entitiesOf(block).size(), 1u);
            EXPECT_NE(entitiesOf(block)[0], line);
            EXPECT_TRUE(cad::db::open<BlockTableRecord>(block, OpenMode::ForRead)
                            ->origin()
                            .isEqualTo({2, 3, 0}));
            EXPECT_EQ(entitiesOf(source.modelSpaceId()).size(), 1u);  // the selection stays
        }
        EXPECT_EQ(library.openObjectCount() + target.openObjectCount(), 0);
    }
}

}  // namespace
}  // namespace vantor
