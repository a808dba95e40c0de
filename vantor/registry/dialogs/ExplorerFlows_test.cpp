// The drawing explorer's operations and the folder scan as the frame runs them: open behind
// the guard with the read-only notice, the R14 copy refused for an open drawing before its
// save dialog, register, a new drawing that overwrites nothing, and the folder dialog's start.
#include "vantor/registry/dialogs/ExplorerFlows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/dialogs/FolderDialog.h"
#include "vantor/registry/dialogs/NewDrawing.h"
#include "vantor/registry/dialogs/RegistrationFlows.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using Kind = cad::app::ScriptedDialogs::Kind;
using testing_support::boxesShown;
using Strings = std::vector<std::string>;

class ExplorerOperations : public testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        cad::app::setUserDialogs(&dialogs);
        windows.loadTabList();
    }
    void TearDown() override { cad::app::setUserDialogs(nullptr); }

    std::string drawing(const std::string& name, bool library = true) {
        cad::db::Database db;
        if (library) {
            using namespace testing_support;
            addRecord(addDictionary(addDictionary(db.namedObjectsDictionaryId(), "User data list"),
                                    "볼트"),
                      "QRB_VANTORDATA-0", "육각볼트", "M10");
        }
        const std::filesystem::path path = files.path() / name;
        std::filesystem::create_directories(path.parent_path());
        EXPECT_EQ(db.saveAs(path.string()), cad::ErrorStatus::eOk);
        return path.string();
    }
    cad::app::DocumentManager& documents() { return app.documentManager(); }
    void openInHost(const std::string& path) {
        ASSERT_EQ(documents().appContextOpenDocument(path), cad::ErrorStatus::eOk);
    }
    bool open(const std::string& path) {
        return openExplorerDrawing(QString::fromStdString(path), settings, documents(), dialogs,
                                   nullptr);
    }
    Strings queued() {
        Strings texts;
        std::string text;
        bool echo = false;
        while (documents().popQueuedString(text, echo)) texts.push_back(text);
        return texts;
    }
    RegistryFlowContext context() { return {list, tree, windows, settings, dialogs, nullptr}; }

    cad::sys::TestTempFolder module;
    cad::sys::TestTempFolder files;
    ModuleSettings settings = [this] {
        ModuleSettings inModule;
        inModule.moduleFolder = module.path().string() + "/";
        return inModule;
    }();
    cad::app::Application app;
    cad::app::ScriptedDialogs dialogs;
    DrawingList list;
    CVNTreeBase tree{dialogs};
    ManagementWindows windows{settings, list, tree, dialogs};
};

TEST_F(ExplorerOperations, OpenQueuesUbloBehindTheGuardAndTellsOfADrawingAlreadyOpen) {
    const std::string shown = drawing("shown.dxf");
    const std::string other = drawing("other.dxf");
    openInHost(shown);
    queued();

    EXPECT_TRUE(open(other));
    EXPECT_TRUE(dialogs.calls().empty());
    EXPECT_EQ(settings.openQueue, Strings{other});
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});

    EXPECT_TRUE(open(shown));
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"읽기전용모드: 이 도면은 이미 열려있으므로,\n읽기 전용 모드로 열립니다. "
                      "[information]"});
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});

    // A command running: refused first, without the read-only notice; an insertion running:
    // the guard's own refusal, and the queue emptied.
    dialogs.clearCalls();
    documents().commandStarted(documents().curDocument());
    EXPECT_FALSE(open(shown));
    documents().commandFinished(documents().curDocument());
    settings.commandBusy = true;
    EXPECT_FALSE(open(other));
    EXPECT_EQ(boxesShown(dialogs),
              (Strings{"명령 중첩 에러: AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 "
                       "종료하신 후 다시 시도해 주십시오. [error]",
                       "INSERT PROCESSING: 현재 명령실행 중입니다. [error]"}));
    EXPECT_TRUE(settings.openQueue.empty());
    EXPECT_TRUE(queued().empty());
}

TEST_F(ExplorerOperations, ConvertingADrawingOpenInTheHostIsRefusedBeforeTheSaveDialog) {
    const std::string shown = drawing("shown.dxf");
    const std::string closed = drawing("closed.dxf");
    openInHost(shown);
    DrawingExplorer explorer(documents(), dialogs);

    EXPECT_EQ(writeExplorerR14Copy(explorer, QString::fromStdString(shown)),
              DrawingExplorer::Copy::Refused);
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"파일 변환 에러: 파일을 변환할 수 없습니다. (열린도면). [error]"});
    EXPECT_TRUE(dialogs.calls(Kind::SaveFile).empty());

    // Another drawing becomes the selected one and is written where the user says.
    dialogs.clearCalls();
    dialogs.pushPath(files.file("copy"));
    EXPECT_EQ(writeExplorerR14Copy(explorer, QString::fromStdString(closed)),
              DrawingExplorer::Copy::Written);
    EXPECT_EQ(explorer.selectedPath(), closed);
    EXPECT_EQ(dialogs.calls(Kind::SaveFile).size(), 1u);
    cad::db::Database copy(false, true);
    EXPECT_EQ(copy.readDwgFile(files.file("copy.dxf")), cad::ErrorStatus::eOk);
}

TEST_F(ExplorerOperations, RegisteringTwiceGivesTheDuplicateErrorTheSecondTime) {
    const QString path = QString::fromStdString(drawing("lib.dxf"));
    EXPECT_TRUE(registerExplorerDrawing(path, context()));
    EXPECT_FALSE(registerExplorerDrawing(path, context()));
    EXPECT_EQ(boxesShown(dialogs), (Strings{"추가 완료: 정상적으로 등록되었습니다. [information]",
                                            "도면 중복 에러: 이미 등록된 도면입니다. [error]"}));
    EXPECT_EQ(list.paths(), Strings{path.toStdString()});
}

TEST_F(ExplorerOperations, ANewDrawingTakesTheFirstFreeNameAndOverwritesNothing) {
    files.writeBytes("새도면1.dxf", "kept");
    files.writeBytes("새도면2.DWG", "kept too");
    const QString folder = QString::fromStdString(files.path().string());

    const QString made = makeNewDrawing(folder, dialogs);
    EXPECT_EQ(made.toStdString(), files.file("새도면3.dxf"));
    EXPECT_EQ(files.readBytes("새도면1.dxf"), "kept");
    EXPECT_EQ(files.readBytes("새도면2.DWG"), "kept too");
    cad::db::Database drawn(false, true);
    EXPECT_EQ(drawn.readDwgFile(made.toStdString()), cad::ErrorStatus::eOk);
    EXPECT_EQ(makeNewDrawing(folder, dialogs).toStdString(), files.file("새도면4.dxf"));
    EXPECT_EQ(NewDrawing::freeName(files.path().string()), files.file("새도면5.dxf"));

    EXPECT_TRUE(makeNewDrawing(folder + "/없는 폴더", dialogs).isEmpty());
    EXPECT_EQ(boxesShown(dialogs), Strings{"새도면 생성 에러: 새도면을 생성하지 못했습니다.\n" +
                                           files.path().string() + "/없는 폴더 [error]"});
}

TEST_F(ExplorerOperations, FolderScanStartsAtTheListsFolderAndReplacesTheList) {
    const std::string old = drawing("old/a.dxf");
    const std::string kept = drawing("lib/sub/b.dxf");
    drawing("lib/plain.dxf", false);
    const RegistryFlowContext flow = context();
    registerDrawingsThroughDialog(flow);  // cancelled
    dialogs.pushPaths(Strings{old});
    EXPECT_TRUE(registerDrawingsThroughDialog(flow));
    dialogs.clearCalls();

    EXPECT_FALSE(scanFolderForDrawings(flow));  // no folder chosen
    dialogs.pushPath(files.file("lib") + "/");
    EXPECT_TRUE(scanFolderForDrawings(flow));

    const auto folders = dialogs.calls(Kind::ChooseFolder);
    ASSERT_EQ(folders.size(), 2u);
    EXPECT_EQ(folders[0].title, "폴더 선택");
    EXPECT_EQ(folders[0].detail, files.file("old") + "/");
    EXPECT_EQ(CFolderDialog::lastFolder(), files.file("lib"));
    EXPECT_EQ(folders[1].detail, files.file("old") + "/");
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"폴더 SCAN: 기존의 리스트가 사라집니다.\n그래도 하시겠습니까? [warning "
                      "ok-cancel]"});
    EXPECT_FALSE(dialogs.calls(Kind::ProgressShow).empty());
    EXPECT_EQ(list.paths(), Strings{kept});

    // The next scan starts where this one was chosen.
    dialogs.clearCalls();
    scanFolderForDrawings(flow);
    EXPECT_EQ(dialogs.calls(Kind::ChooseFolder).at(0).detail, files.file("lib"));
}

}  // namespace
}  // namespace vantor
