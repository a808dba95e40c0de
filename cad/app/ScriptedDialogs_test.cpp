// Scripted dialogs: queued answers, defaults when the queue is empty, and the exact record.
#include "cad/app/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace cad::app {
namespace {

using Kind = ScriptedDialogs::Kind;

TEST(ScriptedDialogs, MessageBoxesTakeQueuedAnswersThenOk) {
    ScriptedDialogs dialogs;
    std::vector<std::string> shown;
    dialogs.setMessageSink([&](std::string_view line) { shown.emplace_back(line); });
    dialogs.pushAnswer(IDCANCEL);
    EXPECT_EQ(dialogs.messageBox("지우시겠습니까?", "삭제", MB_OKCANCEL | MB_ICONQUESTION),
              IDCANCEL);
    EXPECT_EQ(dialogs.messageBox("이미 등록된 도면입니다.", "도면 중복 에러", MB_ICONERROR), IDOK);

    const auto boxes = dialogs.messageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(std::tuple(boxes[0].text, boxes[0].title, boxes[0].icon(), boxes[0].buttons()),
              std::tuple("지우시겠습니까?", "삭제", MB_ICONQUESTION, MB_OKCANCEL));
    EXPECT_EQ(boxes[0].answer, IDCANCEL);
    EXPECT_EQ(boxes[1].icon(), MB_ICONERROR);
    EXPECT_EQ(boxes[1].answer, IDOK);  // the empty queue's answer is recorded as given
    EXPECT_EQ(shown, (std::vector<std::string>{"[삭제] 지우시겠습니까?",
                                               "[도면 중복 에러] 이미 등록된 도면입니다."}));
}

TEST(ScriptedDialogs, FileDialogsTakePathListsAndCancelWhenEmpty) {
    ScriptedDialogs dialogs;
    for (int i = 0; i < 2; ++i)
        dialogs.pushPaths(std::vector<std::string>{"/a/one.dxf", "/a/two.dxf"});
    dialogs.pushPath("/out/parts");
    dialogs.pushPath("/out/parts.txt");
    dialogs.pushPath(std::nullopt);

    EXPECT_EQ(dialogs.openFiles("Open", "Drawings (*.dxf)", "/a", true)->size(), 2u);
    EXPECT_EQ(*dialogs.openFiles("Open", "Drawings (*.dxf)", "/a", false),
              std::vector<std::string>{"/a/one.dxf"});
    EXPECT_EQ(dialogs.saveFile("Export", "CSV (*.csv)", ".csv", ""), "/out/parts.csv");
    EXPECT_EQ(dialogs.saveFile("Export", "CSV (*.csv)", ".csv", ""), "/out/parts.txt");
    EXPECT_EQ(dialogs.chooseFolder("Folder", "/"), std::nullopt);
    EXPECT_EQ(dialogs.chooseFolder("Folder", "/"), std::nullopt);  // queue exhausted

    const auto saves = dialogs.calls(Kind::SaveFile);
    ASSERT_EQ(saves.size(), 2u);
    EXPECT_EQ(std::tuple(saves[0].title, saves[0].text, saves[0].paths),
              std::tuple("Export", "CSV (*.csv)", std::vector<std::string>{"/out/parts.csv"}));
    EXPECT_TRUE(dialogs.calls(Kind::ChooseFolder)[1].cancelled);
}

TEST(ScriptedDialogs, InstalledPortReplacesTheDefaultUntilReset) {
    ScriptedDialogs mine;
    UserDialogs* before = &userDialogs();
    setUserDialogs(&mine);
    EXPECT_EQ(&userDialogs(), &mine);
    setUserDialogs(nullptr);
    EXPECT_EQ(&userDialogs(), before);
}

}  // namespace
}  // namespace cad::app
