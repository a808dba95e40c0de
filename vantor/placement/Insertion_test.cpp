// UBLI's placement end to end in the engine: a part of a library drawing placed into a drawing
// and dragged with typed input, every ending of the drag, the filter and the drawing options.
// The files such placements write are read back by ezdxf in the command line's tests.
#include "vantor/placement/Insertion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/Point.h"
#include "cad/ed/DragPreview.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ScriptInputSource.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/placement/BomMark.h"
#include "vantor/placement/InsertionFilter.h"
#include "vantor/placement/PartPlacement.h"
#include "vantor/placement/PlacementTestDrawing.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {
namespace {

using namespace testing_support;
using cad::db::BlockReference;
using cad::ge::Point3d;

constexpr int kInfoLines = DrawingOptions::kShowCoordinates | DrawingOptions::kShowSpecification;

struct CountingPreview : cad::ed::DragPreview {
    int redraws = 0;
    void dragImageChanged(const cad::db::Entity*) override { ++redraws; }
    void dragEnded() override {}
};

class InsertionTest : public ::testing::Test {
protected:
    InsertionTest() {
        settings.moduleFolder = std::string(VANTOR_SOURCE_DIR) + "/data/";
        settings.option = kInfoLines;
        state.libraryPath = library.path;
        state.blockName = "BOLT-F";
        state.record = library.record;
        state.insertMode = 0;
        state.outcome = InsertionState::kOutcomeCancelled;  // as UBLI starts insert mode 0
        editor.setDragPreview(&preview);
    }
    void TearDown() override { EXPECT_EQ(target.openObjectCount(), 0); }

    void run(std::vector<std::string> lines) {
        script = cad::ed::ScriptInputSource(std::move(lines));
        editor.setInputSource(&script);
        Insertion(editor, dialogs, settings).run(target, state);
    }
    // The live entities of model space, of one block when named.
    std::vector<ObjectId> inModelSpace(std::string_view block = {}) {
        std::vector<ObjectId> found;
        const ObjectId wanted = block.empty() ? ObjectId{} : lookUp(target.blockTableId(), block);
        for (ObjectId id : entitiesOf(target.modelSpaceId())) {
            auto reference = cad::db::open<BlockReference>(id, OpenMode::ForRead);
            if (block.empty() || (reference && reference->blockTableRecord() == wanted))
                found.push_back(id);
        }
        return found;
    }
    std::map<std::string, std::string> attributesOf(ObjectId referenceId) {
        std::map<std::string, std::string> texts;
        auto reference = cad::db::open<BlockReference>(referenceId, OpenMode::ForRead);
        for (ObjectId id : reference->attributeIds()) {
            auto attribute = cad::db::open<cad::db::Attribute>(id, OpenMode::ForRead);
            if (attribute) texts[attribute->tag()] = attribute->textString();
        }
        return texts;
    }

    cad::sys::TestTempFolder folder;
    SampleLibrary library{folder.file("library.dxf")};
    cad::db::Database target;
    cad::ed::Editor editor;
    cad::ed::ScriptInputSource script;
    CountingPreview preview;
    cad::app::ScriptedDialogs dialogs;
    ModuleSettings settings;
    InsertionState state;
};

struct DragCase {
    const char* name;
    std::vector<std::string> lines;
    int options;
    bool placed;
    int outcome;
    Point3d at;
    double degrees;
};

class DragEnding : public InsertionTest, public ::testing::WithParamInterface<DragCase> {};

TEST_P(DragEnding, PlacesOrLeavesNoTrace) {
    const DragCase& row = GetParam();
    settings.option = kInfoLines | row.options;
    run(row.lines);
    EXPECT_EQ(state.outcome, row.outcome);
    const std::string shown = editor.commandLine().text();
    EXPECT_NE(shown.find("사양설정(S)/작도취소(X)/<삽입점>: "), std::string::npos);
    EXPECT_EQ(shown.find("명령취소(U)/작도취소(X)/각도 <0.0000>") != std::string::npos,
              (row.options & DrawingOptions::kFixedAngle) == 0 && row.lines.size() > 1);
    EXPECT_EQ(cad::db::open<cad::db::Dictionary>(target.groupDictionaryId(), OpenMode::ForRead)
                  ->numEntries(),
              0u);
    if (!row.placed) {
        EXPECT_TRUE(inModelSpace().empty());
        return;
    }
    ASSERT_EQ(inModelSpace().size(), 2u);  // the part and its BOM marker
    const std::vector<ObjectId> parts = inModelSpace("BOLT-F");
    ASSERT_EQ(parts.size(), 1u);
    auto part = cad::db::open<BlockReference>(parts[0], OpenMode::ForRead);
    EXPECT_TRUE(part->isVisible());
    EXPECT_TRUE(part->position().isEqualTo(row.at))
        << part->position().x << "," << part->position().y;
    const double turn = std::remainder(part->rotation() - row.degrees * std::numbers::pi / 180,
                                       2 * std::numbers::pi);
    EXPECT_NEAR(turn, 0.0, 1e-9);
    part.close();
    EXPECT_NE(shown.find("\n  품명: 육각볼트\n  사양: M10x40\n  위치: X("), std::string::npos);
}

constexpr int kFixed = DrawingOptions::kFixedAngle;

INSTANTIATE_TEST_SUITE_P(
    Insertion, DragEnding,
    ::testing::Values(
        // clang-format off
        DragCase{"point_then_angle", {"100,50", "90"}, 0, true, 1, {100, 50, 0}, 90},
        DragCase{"enter_at_angle_is_a_full_turn", {"100,50", ""}, 0, true, 1, {100, 50, 0}, 0},
        DragCase{"fixed_angle_skips_the_angle", {"100,50"}, kFixed, true, 1, {100, 50, 0}, 0},
        DragCase{"undo_drags_again_from_the_point", {"100,50", "U", "<pick> 30,40", "45"}, 0, true, 1, {30, 40, 0}, 45},
        DragCase{"escape_at_the_point", {"<esc>"}, 0, false, 1, {}, 0},
        DragCase{"exit_at_the_angle", {"100,50", "X"}, 0, false, 1, {}, 0},
        DragCase{"enter_at_the_point_asks_for_settings", {""}, 0, false, 0, {}, 0},
        DragCase{"setting_keyword", {"s"}, 0, false, 0, {}, 0}),
    // clang-format on
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(InsertionTest, PartBringsItsBlockLayersAndFilledBomMarker) {
    settings.drawAngle = "90";
    run({"100,50", "<pick> 100,60"});  // the rubber band points up: another quarter turn
    const ObjectId bolt = inModelSpace("BOLT-F").at(0);
    EXPECT_NEAR(cad::db::open<BlockReference>(bolt, OpenMode::ForRead)->rotation(),
                std::numbers::pi, 1e-9);
    EXPECT_EQ(attributesOf(bolt),
              (std::map<std::string, std::string>{{"DWG", "DWG"}, {"SPEC", "M10x40"}}));
    auto layer = cad::db::open<cad::db::LayerTableRecord>(lookUp(target.layerTableId(), "PART"),
                                                          OpenMode::ForRead);
    ASSERT_TRUE(layer);
    EXPECT_EQ(layer->colorIndex(), 1);
    layer.close();

    const std::vector<ObjectId> markers = inModelSpace(BomMark::kBlockName);
    ASSERT_EQ(markers.size(), 1u);
    auto marker = cad::db::open<BlockReference>(markers[0], OpenMode::ForRead);
    EXPECT_EQ(marker->layerId(), lookUp(target.layerTableId(), "BOM"));
    EXPECT_TRUE(marker->position().isEqualTo({95, 50, 0}));  // 5 to the right, turned over
    marker.close();
    const auto texts = attributesOf(markers[0]);
    EXPECT_EQ(texts.size(), 14u);
    EXPECT_EQ(texts.at("QTY"), "1");
    EXPECT_EQ(texts.at("NAME"), "육각볼트");
    EXPECT_EQ(texts.at("WEIGHT"), "0.033");
    EXPECT_EQ(texts.at("USER6"), "납기 2주");
}

TEST_F(InsertionTest, StillMouseDoesNotRedrawAndShiftRereadsTheDroppedPart) {
    InsertionFilter::setDragDrop(true);
    state.outcome = InsertionState::kOutcomeSetting;  // insert mode 1
    run({"<move> 5,5", "<move> 5,5", "<move> 6,5", "<key> shift", "<key> shift", "<esc>"});
    InsertionFilter::setDragDrop(false);
    // Two moves, then the part placed again once and drawn at once.
    EXPECT_EQ(preview.redraws, 3);
    EXPECT_EQ(state.outcome, 0);  // Esc after Shift writes no outcome
    EXPECT_TRUE(inModelSpace().empty());
    // The rereading placed a second copy; both are gone.
    EXPECT_EQ(cad::db::open<cad::db::BlockTableRecord>(target.modelSpaceId(), OpenMode::ForRead)
                  ->allEntityIds()
                  .size(),
              4u);
}

TEST(InsertionFilter, DropTakesTheSavedMouseAndNudgesSampleOnce) {
    using cad::ed::WindowMessage;
    cad::ed::Editor editor;
    ASSERT_TRUE(InsertionFilter::begin(editor));
    InsertionFilter::setMouseCapture(false, true);
    InsertionFilter::setSavedMouse(30 | (40ul << 16), {7, 8, 0});
    WindowMessage move{cad::ed::WM_MOUSEMOVE, 0, 1, 2, false, false, {1, 2, 0}};
    WindowMessage rightClick{cad::ed::WM_RBUTTONDOWN, 0, 1, 2, false, false, {1, 2, 0}};
    EXPECT_FALSE(InsertionFilter::filter(&move));
    EXPECT_FALSE(InsertionFilter::filter(&rightClick));
    EXPECT_EQ(move.x, 30);
    EXPECT_EQ(move.y, 40);
    EXPECT_TRUE(move.point.isEqualTo({7, 8, 0}));
    EXPECT_EQ(rightClick.x, 1);
    InsertionFilter::setMouseCapture(false, false);

    // The nudge goes through the filter too, and must not post another.
    InsertionFilter::setDragDrop(true);
    InsertionFilter::setNudge(true);
    WindowMessage key{cad::ed::WM_KEYDOWN, 'A', 10, 20, false, false, {}};
    InsertionFilter::filter(&key);
    const cad::ed::InputRequest request(cad::ed::InputRequest::Kind::Drag, "");
    const cad::ed::InputEvent nudged = editor.nextInput(request);
    EXPECT_EQ(nudged.kind, cad::ed::InputEvent::Kind::Move);
    EXPECT_EQ(nudged.message.x, 9);
    EXPECT_EQ(editor.nextInput(request).kind, cad::ed::InputEvent::Kind::End);
    InsertionFilter::setNudge(false);
    InsertionFilter::setDragDrop(false);
    InsertionFilter::end(editor);
}

struct OptionCase {
    const char* name;
    int options;
    bool withRecord;
};

class DrawingOption : public InsertionTest, public ::testing::WithParamInterface<OptionCase> {};

TEST_P(DrawingOption, ShapesWhatThePlacementMakes) {
    const OptionCase& row = GetParam();
    state.scale = 2.0;
    PlacementRequest request = Insertion(editor, dialogs, settings).request(state);
    request.options = DrawingOptions::fromBits(row.options);
    request.insertionPoint = {10, 20, 0};
    if (!row.withRecord) request.record = {};
    PartPlacement placement(target, editor, settings.moduleFolder + "acadiso.lin");
    PlacedPart placed;
    ASSERT_EQ(placement.place(request, placed), cad::ErrorStatus::eOk);
    EXPECT_EQ(placed.comments, "육각볼트 정면도");
    std::vector<ObjectId> made = placed.entities;
    std::vector<ObjectId> present = entitiesOf(target.modelSpaceId());
    std::sort(made.begin(), made.end());
    std::sort(present.begin(), present.end());
    EXPECT_EQ(made, present);

    const std::vector<ObjectId> parts = inModelSpace("BOLT-F");
    if (request.options.explode) {
        EXPECT_TRUE(parts.empty());
        auto line = cad::db::open<cad::db::Line>(placed.entities[0], OpenMode::ForRead);
        ASSERT_TRUE(line);
        EXPECT_TRUE(line->endPoint().isEqualTo({10, -60, 0}));
    } else {
        ASSERT_EQ(parts.size(), 1u);
        const cad::ge::Scale3d scale =
            cad::db::open<BlockReference>(parts[0], OpenMode::ForRead)->scaleFactors();
        EXPECT_DOUBLE_EQ(scale.sx, request.options.mirrorX ? -2.0 : 2.0);
        EXPECT_DOUBLE_EQ(scale.sy, request.options.mirrorY ? -2.0 : 2.0);
        EXPECT_DOUBLE_EQ(scale.sz, 2.0);
        EXPECT_EQ(attributesOf(parts[0]).at("SPEC"), row.withRecord ? "M10x40" : "?");
    }
    EXPECT_EQ(inModelSpace(BomMark::kBlockName).size(), row.withRecord ? 1u : 0u);
    auto info = cad::db::open<cad::db::Point>(placed.entities.back(), OpenMode::ForRead);
    EXPECT_EQ(static_cast<bool>(info), request.options.infoPoint);
    if (info) {
        EXPECT_TRUE(info->position().isEqualTo({10, 20, 0}));
    }
    info.close();

    auto group = cad::db::open<cad::db::Group>(placed.group, OpenMode::ForRead);
    ASSERT_EQ(static_cast<bool>(group), request.options.group);
    if (!group) return;
    EXPECT_TRUE(group->isAnonymous());
    EXPECT_EQ(group->allEntityIds(), placed.entities);
    EXPECT_EQ(group->description(),
              row.withRecord ? "품명:육각볼트, 사양:M10x40" : "이름:BOLT-F, 설명:육각볼트 정면도");
}

INSTANTIATE_TEST_SUITE_P(
    Insertion, DrawingOption,
    ::testing::Values(OptionCase{"plain", 0, true},
                      OptionCase{"mirror_x", DrawingOptions::kMirrorX, true},
                      OptionCase{"exploded", DrawingOptions::kExplode, true},
                      OptionCase{"grouped_catalogue_part",
                                 DrawingOptions::kGroup | DrawingOptions::kInfoPoint, true},
                      OptionCase{"grouped_ordinary_block",
                                 DrawingOptions::kGroup | DrawingOptions::kExplode, false}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vantor
