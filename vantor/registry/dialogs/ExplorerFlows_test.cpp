// The drawing explorer's operations and the folder scan as the frame runs them: open behind
// the guard with the read-only notice, the R14 copy refused for an open drawing before its
// save dialog, a new drawing that overwrites nothing, and where the folder dialog starts.
#include "vantor/registry/dialogs/ExplorerFlows.h"

#include "vantor/registry/dialogs/FolderDialog.h"
#include "vantor/registry/dialogs/TestRegistry.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using Kind = cad::app::ScriptedDialogs::Kind;
using testing_support::boxesShown;

class ExplorerOperations : public testing_support::RegistryTest {
protected:
    void openInHost(const std::string& path) {
        ASSERT_EQ(documents().appContextOpenDocument(path), cad::ErrorStatus::eOk);
        queued();
    }
    bool open(const std::string& path) {
        return openExplorerDrawing(QString::fromStdString(path), settings, documents(), dialogs,
                                   nullptr);
    }
};

TEST_F(ExplorerOperations, OpenQueuesUbloBehindTheGuardAndTellsOfADrawingAlreadyOpen) {
    const std::string shown = drawing("shown.dxf");
    const std::string other = drawing("other.dxf");
    openInHost(shown);

    EXPECT_TRUE(open(other));
    EXPECT_EQ(settings.openQueue, Strings{other});
    EXPECT_TRUE(open(shown));
    EXPECT_EQ(settings.openQueue, Strings{shown});
    EXPECT_EQ(queued(), (Strings{"_UBLO\n", "_UBLO\n"}));

    // A command running: refused first, without the read-only notice; an insertion running:
    // the guard's own refusal. Neither replaces the queue an earlier open command reads.
    documents().commandStarted(documents().curDocument());
    EXPECT_FALSE(open(other));
    documents().commandFinished(documents().curDocument());
    settings.commandBusy = true;
    EXPECT_FALSE(open(shown));
    EXPECT_EQ(boxesShown(dialogs),
              (Strings{"읽기전용모드: 이 도면은 이미 열려있으므로,\n읽기 전용 모드로 열립니다. "
                       "[information]",
                       kCommandRunning, "INSERT PROCESSING: 현재 명령실행 중입니다. [error]"}));
    EXPECT_EQ(settings.openQueue, Strings{shown});
    EXPECT_TRUE(queued().empty());
}

TEST_F(ExplorerOperations, ConvertingADrawingOpenInTheHostIsRefusedBeforeTheSaveDialog) {
    const std::string shown = drawing("shown.dxf");
    openInHost(shown);
    DrawingExplorer explorer(documents(), dialogs);

    EXPECT_EQ(writeExplorerR14Copy(explorer, QString::fromStdString(shown)),
              DrawingExplorer::Copy::Refused);
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"파일 변환 에러: 파일을 변환할 수 없습니다. (열린도면). [error]"});
    EXPECT_TRUE(dialogs.calls(Kind::SaveFile).empty());

    // Another drawing becomes the selected one and is copied where the user says.
    const std::string closed = drawing("closed.dxf");
    dialogs.pushPath(files.file("copy"));
    EXPECT_EQ(writeExplorerR14Copy(explorer, QString::fromStdString(closed)),
              DrawingExplorer::Copy::Written);
    EXPECT_EQ(explorer.selectedPath(), closed);
    EXPECT_TRUE(std::filesystem::exists(files.file("copy.dwg")));
}

TEST_F(ExplorerOperations, ANewDrawingTakesTheFirstFreeNameAndOverwritesNothing) {
    files.writeBytes("새도면1.dxf", "kept");
    files.writeBytes("새도면2.DWG", "kept too");
    const QString folder = QString::fromStdString(files.path().string());

    const QString made = makeNewDrawing(folder, dialogs);
    EXPECT_EQ(made.toStdString(), files.file("새도면3.dxf"));
    EXPECT_EQ(files.readBytes("새도면1.dxf") + files.readBytes("새도면2.DWG"), "keptkept too");
    cad::db::Database drawn(false, true);
    EXPECT_EQ(drawn.readDwgFile(made.toStdString()), cad::ErrorStatus::eOk);
    EXPECT_EQ(makeNewDrawing(folder, dialogs).toStdString(), files.file("새도면4.dxf"));

    EXPECT_TRUE(makeNewDrawing(folder + "/없는 폴더", dialogs).isEmpty());
    EXPECT_EQ(boxesShown(dialogs), Strings{"새도면 생성 에러: 새도면을 생성하지 못했습니다.\n" +
                                           files.path().string() + "/없는 폴더 [error]"});
}

TEST_F(ExplorerOperations, TheFolderScanStartsAtTheListsFolderThenWhereTheUserChoseLast) {
    registration.addPaths({drawing("old/a.dxf")});
    const std::string kept = drawing("lib/sub/b.dxf");
    drawing("lib/plain.dxf", false);

    EXPECT_FALSE(scanFolderForDrawings(context()));  // no folder chosen
    dialogs.pushPath(files.file("lib") + "/");
    EXPECT_TRUE(scanFolderForDrawings(context()));
    EXPECT_EQ(list.paths(), Strings{kept});
    scanFolderForDrawings(context());

    std::vector<std::string> starts;
    for (const auto& call : dialogs.calls(Kind::ChooseFolder)) starts.push_back(call.detail);
    EXPECT_EQ(starts,
              (Strings{files.file("old") + "/", files.file("old") + "/", files.file("lib")}));
    EXPECT_EQ(CFolderDialog::lastFolder(), files.file("lib"));
}

}  // namespace
}  // namespace vantor
