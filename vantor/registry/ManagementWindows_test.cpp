// Management windows on a real data folder: the tab list made on first use, selection by the
// remembered name, add, rename, delete with the renumbering of list files, and list loading
// with its progress and tree rebuild.
#include "vantor/registry/ManagementWindows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;
using Kind = ScriptedDialogs::Kind;
using Outcome = ManagementWindows::Outcome;
using testing_support::boxesShown;

class RecordingTree : public TreeRebuilder {
public:
    void rebuildFromList(DrawingList& list) override { rebuilds.push_back(list.paths()); }
    std::vector<std::vector<std::string>> rebuilds;
};

class ManagementWindowsTest : public testing::Test {
protected:
    ManagementWindowsTest() {
        settings_.moduleFolder = temp_.path().string() + "/";
        windows_ = std::make_unique<ManagementWindows>(settings_, list_, tree_, dialogs_);
    }

    std::string data(const std::string& name) const { return temp_.file("DATA/" + name); }
    void writeTabList(const std::vector<std::string>& names) {
        std::filesystem::create_directories(temp_.path() / "DATA");
        ASSERT_TRUE(ListFile::write(data("UBTabList.dat"), names));
    }
    void writeList(int n, const std::vector<std::string>& paths) {
        ASSERT_TRUE(ListFile::write(data("UBList" + std::to_string(n) + ".dat"), paths));
    }
    std::vector<std::string> listOnDisk(int n) const {
        return ListFile::readAll(data("UBList" + std::to_string(n) + ".dat"))
            .value_or(std::vector<std::string>{"<missing>"});
    }
    std::vector<std::string> tabListOnDisk() const {
        return ListFile::readAll(data("UBTabList.dat")).value_or(std::vector<std::string>{});
    }

    cad::sys::TestTempFolder temp_;
    ModuleSettings settings_;
    DrawingList list_;
    RecordingTree tree_;
    ScriptedDialogs dialogs_;
    std::unique_ptr<ManagementWindows> windows_;
};

TEST_F(ManagementWindowsTest, FirstUseMakesTheMainWindowAndItsTabList) {
    windows_->loadTabList();
    EXPECT_EQ(windows_->names(), std::vector<std::string>{"주 관리창"});
    EXPECT_EQ(windows_->selection(), 0);
    EXPECT_EQ(tabListOnDisk(), std::vector<std::string>{"주 관리창"});
    EXPECT_EQ(windows_->dataFolder().path(), temp_.path().string() + "/DATA");

    // No list file yet: an empty list, no message, and the window becomes the current one.
    windows_->selectionChanged(0);
    EXPECT_EQ(windows_->currentIndex(), 0);
    EXPECT_EQ(settings_.curListName, "주 관리창");
    EXPECT_TRUE(list_.empty());
    EXPECT_EQ(tree_.rebuilds.size(), 1u);
    EXPECT_TRUE(dialogs_.messageBoxes().empty());
}

TEST_F(ManagementWindowsTest, TabListSelectsTheRememberedWindowOrTheFirst) {
    writeTabList({"주 관리창", "배관", "배관 부품"});
    // Exact names only: "배관 부" is no window.
    for (const auto& [remembered, selection] :
         {std::pair{"배관 부품", 2}, std::pair{"배관 부", 0}, std::pair{"옛 관리창", 0}}) {
        settings_.curListName = remembered;
        windows_->loadTabList();
        EXPECT_EQ(windows_->selection(), selection) << remembered;
    }
}

TEST_F(ManagementWindowsTest, LoadingAListShowsProgressAndRebuildsTheTree) {
    writeTabList({"주 관리창", "밸브"});
    writeList(1, {"C:\\v\\a.dwg", "C:\\v\\b.dwg", "C:\\v\\a.dwg"});
    windows_->loadTabList();
    windows_->selectionChanged(1);

    EXPECT_EQ(list_.paths(), (std::vector<std::string>{"C:\\v\\a.dwg", "C:\\v\\b.dwg"}));
    ASSERT_EQ(tree_.rebuilds.size(), 1u);
    EXPECT_EQ(tree_.rebuilds[0], list_.paths());
    EXPECT_EQ(windows_->currentIndex(), 1);
    EXPECT_EQ(settings_.curListName, "밸브");

    std::vector<std::string> texts;
    for (const auto& call : dialogs_.calls(Kind::ProgressText)) texts.push_back(call.text);
    // The duplicate is not added but still advances the bar; the last step stays below 100.
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "상태 : 리스트 형성 중...", "상태 : 리스트 형성 중... (0%)",
                         "상태 : 리스트 형성 중... (33%)", "상태 : 리스트 형성 중... (66%)"}));
    const auto range = dialogs_.calls(Kind::ProgressRange);
    ASSERT_EQ(range.size(), 1u);
    EXPECT_EQ(range[0].high, 3);
    EXPECT_EQ(dialogs_.calls().front().kind, Kind::ProgressShow);
    EXPECT_EQ(dialogs_.calls().back().kind, Kind::ProgressHide);
}

TEST_F(ManagementWindowsTest, SwitchingLoadsOnlyANewPositionWhenNotBusy) {
    writeTabList({"주 관리창", "밸브"});
    windows_->loadTabList();
    windows_->selectionChanged(0);
    windows_->selectionChanged(0);
    EXPECT_EQ(tree_.rebuilds.size(), 1u);

    windows_->setBusy(true);
    windows_->selectionChanged(1);
    EXPECT_EQ(tree_.rebuilds.size(), 1u);
    EXPECT_EQ(windows_->currentIndex(), 0);

    windows_->setBusy(false);
    windows_->selectionChanged(1);
    EXPECT_EQ(tree_.rebuilds.size(), 2u);
    EXPECT_EQ(windows_->currentIndex(), 1);
}

TEST_F(ManagementWindowsTest, AddAppendsTheNameWithoutMovingOrWritingAList) {
    windows_->loadTabList();
    windows_->selectionChanged(0);
    dialogs_.pushText("배관 부품");
    EXPECT_EQ(windows_->addWindow(), Outcome::Done);
    EXPECT_EQ(windows_->names(), (std::vector<std::string>{"주 관리창", "배관 부품"}));
    EXPECT_EQ(tabListOnDisk(), windows_->names());
    EXPECT_EQ(windows_->selection(), 0);
    EXPECT_FALSE(cad::sys::fileExists(data("UBList1.dat")));
    const auto asks = dialogs_.calls(Kind::AskText);
    ASSERT_EQ(asks.size(), 1u);
    EXPECT_EQ(asks[0].title, "관리창 추가하기");

    dialogs_.pushText(std::nullopt);
    EXPECT_EQ(windows_->addWindow(), Outcome::Cancelled);
    // A name the tab list could not read back is refused.
    dialogs_.pushText(std::string(260, 'n'));
    EXPECT_EQ(windows_->addWindow(), Outcome::Refused);
    EXPECT_EQ(windows_->names().size(), 2u);
    ASSERT_EQ(dialogs_.messageBoxes().size(), 1u);
    EXPECT_EQ(dialogs_.messageBoxes()[0].icon(), cad::app::MB_ICONERROR);
}

TEST_F(ManagementWindowsTest, MainWindowCanBeRenamedButNotDeleted) {
    writeTabList({"주 관리창", "밸브"});
    writeList(0, {"C:\\v.dwg"});
    windows_->loadTabList();
    windows_->selectionChanged(0);
    dialogs_.pushText("기본");
    EXPECT_EQ(windows_->renameWindow(), Outcome::Done);
    const auto asks = dialogs_.calls(Kind::AskText);
    ASSERT_EQ(asks.size(), 1u);
    EXPECT_EQ(asks[0].title, "관리창 이름 바꾸기");
    EXPECT_EQ(asks[0].detail, "주 관리창");
    EXPECT_EQ(listOnDisk(0), std::vector<std::string>{"C:\\v.dwg"});

    EXPECT_EQ(windows_->deleteWindow(), Outcome::Refused);
    EXPECT_EQ(boxesShown(dialogs_),
              std::vector<std::string>{"삭제 에러: 기본 관리창은 삭제할 수 없습니다. [error]"});
    EXPECT_EQ(tabListOnDisk(), (std::vector<std::string>{"기본", "밸브"}));
}

TEST_F(ManagementWindowsTest, DeletingWindowTwoOfFourRenumbersTheFilesBehind) {
    writeTabList({"주 관리창", "하나", "둘", "셋"});
    writeList(1, {"C:\\1.dwg"});
    writeList(2, {"C:\\2.dwg"});
    writeList(3, {"C:\\3.dwg"});
    windows_->loadTabList();
    windows_->selectionChanged(2);
    dialogs_.pushAnswer(cad::app::IDCANCEL);
    EXPECT_EQ(windows_->deleteWindow(), Outcome::Cancelled);
    EXPECT_EQ(tabListOnDisk().size(), 4u);
    dialogs_.clearCalls();

    EXPECT_EQ(windows_->deleteWindow(), Outcome::Done);
    EXPECT_EQ(boxesShown(dialogs_),
              std::vector<std::string>{
                  "리스트 삭제: 리스트를 정말로 삭제하시겠습니까? [warning ok-cancel]"});

    EXPECT_EQ(tabListOnDisk(), (std::vector<std::string>{"주 관리창", "하나", "셋"}));
    EXPECT_EQ(listOnDisk(1), std::vector<std::string>{"C:\\1.dwg"});
    EXPECT_EQ(listOnDisk(2), std::vector<std::string>{"C:\\3.dwg"});
    EXPECT_FALSE(cad::sys::fileExists(data("UBList3.dat")));

    EXPECT_EQ(windows_->currentIndex(), 1);
    EXPECT_EQ(settings_.curListName, "하나");
    EXPECT_EQ(list_.paths(), std::vector<std::string>{"C:\\1.dwg"});
}

}  // namespace
}  // namespace vantor
