// The insertion dialog's rules: the angle picked in the drawing, the range checks with their
// messages, and OK handing the chosen part to the insertion state.
#include "vantor/placement/InsertionInput.h"

#include <gtest/gtest.h>

#include <numbers>

#include "cad/app/ScriptedDialogs.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ScriptInputSource.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/placement/PlacementTestDrawing.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using Field = InsertionInput::Field;

TEST(InsertionInput, AngleTextInDegreesWithThreeDecimals) {
    EXPECT_EQ(InsertionInput::angleText(0.0), "0.000");
    EXPECT_EQ(InsertionInput::angleText(std::numbers::pi / 2), "90.000");
    EXPECT_EQ(InsertionInput::angleText(1.0), "57.296");
    EXPECT_EQ(InsertionInput::angleText(-std::numbers::pi / 6), "-30.000");
}

TEST(InsertionInput, PickedAngleOrTheStoredOneOnCancel) {
    ModuleSettings settings;
    settings.drawAngle = "12.50";
    for (auto [line, expected] : {std::pair{"45", "45.000"}, std::pair{"<esc>", "12.50"}}) {
        cad::ed::Editor editor;
        cad::ed::ScriptInputSource script({line});
        editor.setInputSource(&script);
        EXPECT_EQ(InsertionInput::pickAngle(editor, settings), expected);
        EXPECT_NE(editor.commandLine().text().find("Angle: "), std::string::npos);
    }
}

TEST(InsertionInput, RefusesOutOfRangeWithItsMessage) {
    const std::string scale = "입력 에러: Sorry, Range = 0.00000001 to 100000000.0 [error]";
    const struct {
        const char* name;
        double scale, angle;
        Field field;
        std::vector<std::string> boxes;
    } rows[] = {
        {"scale zero", 0.0, 0.0, Field::Scale, {scale}},
        {"angle 400", 1.0, 400.0, Field::Angle, {"입력 에러: Sorry, Range = -360 to 360 [error]"}},
        {"scale checked first", 0.0, 400.0, Field::Scale, {scale}},
        {"upper bounds accepted", 100000000.0, 360.0, Field::None, {}},
    };
    for (const auto& row : rows) {
        cad::app::ScriptedDialogs dialogs;
        EXPECT_EQ(InsertionInput::validate(row.scale, row.angle, dialogs), row.field) << row.name;
        EXPECT_EQ(testing_support::boxesShown(dialogs), row.boxes) << row.name;
    }
}

TEST(InsertionInput, OkStoresTheAngleAndHandsOverTheViewBlock) {
    cad::db::Database library;
    testing_support::addBlock(library, "BOLT-F");
    ModuleSettings settings;
    InsertionState state;
    cad::app::ScriptedDialogs dialogs;
    InsertionInput::Choice choice;
    choice.libraryPath = "/lib/parts.dxf";
    choice.record.kname = "육각볼트";
    choice.record.viewBlocks[2] = "BOLT-F";
    choice.view = 2;
    choice.angle = "30.000";
    choice.scale = 2.5;

    ASSERT_TRUE(InsertionInput::accept(choice, library, settings, state, dialogs));
    EXPECT_EQ(settings.drawAngle, "30.000");
    EXPECT_EQ(state.libraryPath, "/lib/parts.dxf");
    EXPECT_EQ(state.blockName, "BOLT-F");
    EXPECT_EQ(state.record.kname, "육각볼트");
    EXPECT_EQ(state.scale, 2.5);

    choice.view = 0;  // a slot without a block
    state = {};
    EXPECT_FALSE(InsertionInput::accept(choice, library, settings, state, dialogs));
    EXPECT_EQ(testing_support::boxesShown(dialogs),
              std::vector<std::string>{
                  "블록 삽입 에러: 도면 내에 해당 블록이 존재하지 않습니다. [error]"});
    EXPECT_TRUE(state.blockName.empty());
    EXPECT_EQ(library.openObjectCount(), 0);
}

}  // namespace
}  // namespace vantor
