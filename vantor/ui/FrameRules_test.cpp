// The library window's rules without a widget: pane sizes from the settings, column widths,
// which tool buttons a side shows, and the command table's pairs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "vantor/ui/ColumnWidths.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/FrameLayout.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/ToolbarStates.h"

namespace vantor {
namespace {

TEST(FrameLayout, PaneSizesTakeTheirFloorsExceptThePreviewRow) {
    struct Row {
        const char* name;
        std::array<const char*, 4> texts;  // left width, tree, preview, list
        PaneSizes expected;
    };
    for (const Row& row : {
             Row{"stored", {"300", "250", "200", "180"}, {300, 250, 200, 180}},
             Row{"zero", {"0", "0", "0", "0"}, {240, 100, 0, 100}},
             Row{"missing", {"", "", "", ""}, {240, 100, 0, 100}},
             Row{"below the floors", {"100", "50", "30", "99"}, {240, 100, 30, 100}},
             Row{"not a number", {"wide", "x", "12px", "-5"}, {240, 100, 12, 100}},
         }) {
        ModuleSettings settings;
        settings.geometry[ModuleSettings::kLeftWidth] = row.texts[0];
        settings.geometry[ModuleSettings::kSubTreePos] = row.texts[1];
        settings.geometry[ModuleSettings::kSubPreviewPos] = row.texts[2];
        settings.geometry[ModuleSettings::kSubListPos] = row.texts[3];
        const PaneSizes sizes = PaneSizes::fromSettings(settings);
        EXPECT_EQ(sizes.leftWidth, row.expected.leftWidth) << row.name;
        EXPECT_EQ(sizes.subTree, row.expected.subTree) << row.name;
        EXPECT_EQ(sizes.subPreview, row.expected.subPreview) << row.name;
        EXPECT_EQ(sizes.subList, row.expected.subList) << row.name;
    }
}

TEST(FrameLayout, GeometryIsWrittenAsDecimalTexts) {
    ModuleSettings settings;
    FrameGeometry{-20, 35, 1024, 768}.store(settings);
    EXPECT_EQ(settings.geometry[ModuleSettings::kPosX], "-20");
    EXPECT_EQ(settings.geometry[ModuleSettings::kPosY], "35");
    EXPECT_EQ(settings.geometry[ModuleSettings::kWidth], "1024");
    EXPECT_EQ(settings.geometry[ModuleSettings::kHeight], "768");
    storePaneSizes(settings, {260, 120, 0, 140});
    EXPECT_EQ(PaneSizes::fromSettings(settings).subPreview, 0);
    EXPECT_EQ(settings.geometry[ModuleSettings::kLeftWidth], "260");
}

TEST(ColumnWidths, EachListKeepsItsOwnWidthsAndOtherCountsStoreNothing) {
    ModuleSettings settings;
    const auto blocks = settings.blockWidths;
    const auto records = settings.recordWidths;
    std::vector<int> thirteen(13, 77);
    storeColumnWidths(settings, ListOwner::PartList, thirteen);
    EXPECT_EQ(settings.recordWidths[12], 77);
    EXPECT_EQ(settings.blockWidths, blocks);  // the part list touches only its own

    settings.recordWidths = records;
    storeColumnWidths(settings, ListOwner::BlockList, thirteen);
    EXPECT_EQ(settings.blockWidths[12], 77);
    EXPECT_EQ(settings.blockWidths[13], blocks[13]);
    EXPECT_EQ(settings.recordWidths, records);  // a dialog's record view keeps the block widths

    storeColumnWidths(settings, ListOwner::BlockList, std::vector<int>{11, 22});
    EXPECT_EQ(settings.blockWidths[13], 11);
    EXPECT_EQ(settings.blockWidths[14], 22);

    const auto before = settings;
    storeColumnWidths(settings, ListOwner::PartList, std::vector<int>{1, 2});  // no block columns
    storeColumnWidths(settings, ListOwner::BlockList, std::vector<int>(5, 9));
    storeColumnWidths(settings, ListOwner::PartList, std::vector<int>(14, 9));
    EXPECT_EQ(settings.blockWidths, before.blockWidths);
    EXPECT_EQ(settings.recordWidths, before.recordWidths);

    EXPECT_THAT(columnWidths(settings, ListOwner::BlockList, 2), ::testing::ElementsAre(11, 22));
    EXPECT_TRUE(columnWidths(settings, ListOwner::PartList, 3).empty());
}

TEST(ToolbarStates, DrawingButtonsWaitForASideThenFollowTheSelection) {
    for (int id = 1203; id <= 1211; ++id) {
        const ButtonState state = buttonState(id, {});
        EXPECT_FALSE(state.visible) << id;
        EXPECT_FALSE(state.enabled) << id;
    }
    EXPECT_TRUE(buttonState(1200, {}).enabled);
    EXPECT_TRUE(buttonState(1214, {}).visible);

    const ToolbarSelection tree{LeftPane::DrawingTree, false, false};
    EXPECT_FALSE(buttonState(1203, tree).enabled);  // the data pane belongs to the explorer
    EXPECT_TRUE(buttonState(1203, tree).visible);
    EXPECT_FALSE(buttonState(1209, tree).enabled);
    EXPECT_TRUE(buttonState(1204, tree).enabled);

    const ToolbarSelection explored{LeftPane::Explorer, true, false};
    EXPECT_TRUE(buttonState(1203, explored).enabled);
    EXPECT_TRUE(buttonState(1209, explored).enabled);
    EXPECT_TRUE(buttonState(1210, explored).enabled);
    EXPECT_FALSE(buttonState(1207, explored).enabled);  // read only: no block goes in
    EXPECT_TRUE(buttonState(1207, {LeftPane::Explorer, true, true}).enabled);
}

TEST(FrameCommands, PairedIdsRunOneActionAndEveryToolButtonHasAPromptAndAShortText) {
    for (auto [first, second] : {std::pair{1204, 1804}, {1205, 1805}, {1206, 1806}, {1209, 1601},
                                 {1103, 1212}, {1104, 1213}, {1101, 1214}, {1404, 1502},
                                 {1501, 1807}, {1800, 1302}, {1801, 1303}, {1802, 1304},
                                 {1803, 1305}}) {
        ASSERT_NE(frameCommand(first), nullptr) << first;
        ASSERT_NE(frameCommand(second), nullptr) << second;
        EXPECT_EQ(frameCommand(first)->action, frameCommand(second)->action) << first << " " << second;
    }
    std::set<int> ids;
    for (const FrameCommand& command : frameCommands())
        EXPECT_TRUE(ids.insert(command.id).second) << "twice: " << command.id;
    for (int id : mainToolBar()) {
        if (id == 0) continue;
        const FrameCommand* command = frameCommand(id);
        ASSERT_NE(command, nullptr) << id;
        // A prompt and a short text, joined by "-".
        EXPECT_LT(commandPrompt(*command).size(), command->entry.size() - 1) << id;
    }
    EXPECT_EQ(commandPrompt(*frameCommand(1206)),
              "폴더를 검색하여-찾은 부품도면을 관리창에 자동으로 등록합니다");
    EXPECT_EQ(commandPrompt(*frameCommand(1204)), "현재 선택되어진 관리창에 부품도면을 추가합니다");
    EXPECT_EQ(frameCommand(4242), nullptr);
}

}  // namespace
}  // namespace vantor
