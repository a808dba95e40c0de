// Headless dialogs answered by the input's next line: which lines answer which dialog, what
// cancels, and that the command line's own lines are left alone.
#include "ScriptLineDialogs.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vantorcad {
namespace {

using namespace cad::app;

class ScriptLineDialogsTest : public testing::Test {
protected:
    void feed(const std::string& lines) { in_.str(lines); }
    std::string nextCommandLine() {
        cad::ed::InputEvent event = input_.next({});
        return event.kind == cad::ed::InputEvent::Kind::Text ? event.text : "<event>";
    }

    std::istringstream in_;
    ScriptLineSource input_{in_};
    std::string printed_;
    ScriptLineDialogs dialogs_{input_, [this](std::string_view text) { printed_ += text; }};
};

TEST_F(ScriptLineDialogsTest, QuestionLinesAnswerTheBoxOrCancelIt) {
    const struct {
        const char* line;
        unsigned flags;
        int answer;
    } rows[] = {
        // clang-format off
        {"OK", MB_OKCANCEL, IDOK}, {"cancel", MB_OKCANCEL, IDCANCEL}, {"Yes", MB_YESNO, IDYES},
        {"No", MB_YESNOCANCEL, IDNO}, {"<esc>", MB_YESNOCANCEL, IDCANCEL},
        {"^C", MB_YESNO, IDNO},          // a yes-no box has no cancel
        {"Yes", MB_OKCANCEL, IDCANCEL},  // the word of another box
        // clang-format on
    };
    for (const auto& row : rows) {
        feed(std::string(row.line) + "\nNEXT\n");
        EXPECT_EQ(dialogs_.messageBox("text", "title", row.flags), row.answer) << row.line;
        EXPECT_EQ(nextCommandLine(), "NEXT") << row.line;
    }
}

TEST_F(ScriptLineDialogsTest, AnOkOnlyBoxTakesAnOkLineButNothingElse) {
    feed("OK\nVNK\n");
    EXPECT_EQ(dialogs_.messageBox("첫째", "알림", MB_OK | MB_ICONINFORMATION), IDOK);
    EXPECT_EQ(dialogs_.messageBox("둘째", "알림", MB_OK), IDOK);
    EXPECT_EQ(nextCommandLine(), "VNK");
    EXPECT_EQ(printed_, "\n[알림] 첫째\n[알림] 둘째");
}

TEST_F(ScriptLineDialogsTest, FileFolderAndNameDialogsTakeTheirLine) {
    feed("/a/one.dxf;/b/two.dxf\n/out/list\n/data\nCancel\n\n새 관리창\n");
    EXPECT_EQ(dialogs_.openFiles("Open", "*.dxf", "/", true),
              (std::vector<std::string>{"/a/one.dxf", "/b/two.dxf"}));
    EXPECT_EQ(dialogs_.saveFile("Save", "*.csv", ".csv", ""), "/out/list.csv");
    EXPECT_EQ(dialogs_.chooseFolder("Folder", "/"), "/data");
    EXPECT_EQ(dialogs_.askText("Name", "이름", ""), std::nullopt);
    EXPECT_EQ(dialogs_.askText("Name", "이름", ""), "");  // an empty name is the user's answer
    EXPECT_EQ(dialogs_.askText("Name", "이름", ""), "새 관리창");
    EXPECT_EQ(dialogs_.chooseFolder("Folder", "/"), std::nullopt);  // the input ended
    feed("\n");
    EXPECT_EQ(dialogs_.openFiles("Open", "*.dxf", "/", false), std::nullopt) << "empty line";
}

}  // namespace
}  // namespace vantorcad
