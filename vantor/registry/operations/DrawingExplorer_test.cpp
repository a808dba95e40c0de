// The drawing explorer: the drawing-information messages for a missing, damaged and shared
// drawing, and the R14 copy with its extension rule, its refusal for a drawing open in the
// host and its failures.
#include "vantor/registry/operations/DrawingExplorer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "cad/app/Application.h"
#include "cad/app/DocumentManager.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/SharedFile.h"
#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;
using Selection = DrawingExplorer::Selection;
using Copy = DrawingExplorer::Copy;
using Strings = std::vector<std::string>;

class Explorer : public testing::Test {
protected:
    Explorer() {
        cad::db::Database db;
        EXPECT_EQ(db.saveAs(folder.file("part.dxf")), cad::ErrorStatus::eOk);
        folder.writeBytes("broken.dxf", "0\nSECTION\n2\nHEADER\n");
    }

    cad::sys::TestTempFolder folder;
    cad::app::Application host;
    ScriptedDialogs dialogs;
    DrawingExplorer explorer{host.documentManager(), dialogs};
};

TEST_F(Explorer, DrawingInformationReadsOrSaysWhyNot) {
    const struct {
        const char* name;
        const char* file;
        bool heldByAnotherProgram;
        Selection selection;
        const char* message;  // "title: text"; empty for none
    } rows[] = {
        {"readable", "part.dxf", false, Selection::Shown, ""},
        {"missing (76)", "gone.dxf", false, Selection::Missing,
         "도면정보: 이 도면은 존재하지 않습니다.\n'F5' 키를 눌러 리스트를 갱신하십시오."},
        {"damaged (190)", "broken.dxf", false, Selection::Damaged,
         "도면정보: 이 도면은 손상되었습니다.\n도면을 복구하십시오."},
        {"held elsewhere, read shared", "part.dxf", true, Selection::ReadOnly,
         "읽기전용모드: (주의) 이 도면은 다른 프로그램에서 이미 사용되고 있으므로,\n수정작업은 "
         "하실 수 없습니다. (읽기 전용)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        dialogs.clearCalls();
        cad::sys::SharedFile other;
        if (row.heldByAnotherProgram) {
            ASSERT_EQ(other.open(folder.file(row.file), cad::sys::ShareMode::DenyWrite),
                      cad::ErrorStatus::eOk);
        }
        DrawingExplorer fresh{host.documentManager(), dialogs};
        EXPECT_EQ(fresh.selectDrawing(folder.file(row.file)), row.selection);
        const bool read = row.selection == Selection::Shown || row.selection == Selection::ReadOnly;
        EXPECT_EQ(fresh.selectedDatabase() != nullptr, read);
        Strings boxes;
        for (const auto& box : dialogs.messageBoxes()) boxes.push_back(box.title + ": " + box.text);
        EXPECT_EQ(boxes, *row.message ? Strings{row.message} : Strings{});
    }
}

TEST(R14CopyPath, EndsInDwg) {
    EXPECT_EQ(DrawingExplorer::r14CopyPath("/out/copy"), "/out/copy.dwg");
    EXPECT_EQ(DrawingExplorer::r14CopyPath("/out/COPY.DWG"), "/out/COPY.DWG");
    EXPECT_EQ(DrawingExplorer::r14CopyPath("/out/copy.dxf"), "/out/copy.dxf.dwg");
    EXPECT_EQ(DrawingExplorer::r14CopyPath("/out.v2/copy"), "/out.v2/copy.dwg");
}

TEST_F(Explorer, R14CopyIsWrittenRefusedOrTold) {
    ASSERT_EQ(explorer.selectDrawing(folder.file("part.dxf")), Selection::Shown);
    dialogs.pushPath(folder.file("copy"));
    EXPECT_EQ(explorer.writeR14Copy(), Copy::Written);
    cad::db::Database copy(false, true);
    ASSERT_EQ(copy.readDwgFile(folder.file("copy.dwg")), cad::ErrorStatus::eOk);
    EXPECT_EQ(copy.originalFileVersion(), cad::db::DxfVersion::R14);
    EXPECT_EQ(folder.readBytes("copy.dwg").substr(0, 6), "AC1014");  // a DWG of release 14
    // The selected drawing stays the one the views work on.
    EXPECT_EQ(explorer.selectedDatabase()->fileName(), folder.file("part.dxf"));

    dialogs.pushPath(std::nullopt);
    EXPECT_EQ(explorer.writeR14Copy(), Copy::Cancelled);
    dialogs.pushPath(folder.file("no-such-folder/copy.dwg"));
    EXPECT_EQ(explorer.writeR14Copy(), Copy::Failed);

    // Open in the host: refused before the save dialog is shown.
    ASSERT_EQ(host.documentManager().appContextOpenDocument(folder.file("part.dxf")),
              cad::ErrorStatus::eOk);
    EXPECT_EQ(explorer.writeR14Copy(), Copy::Refused);
    EXPECT_EQ(dialogs.calls(ScriptedDialogs::Kind::SaveFile).size(), 3u);

    // The selected drawing is gone by the time it is converted.
    std::filesystem::copy_file(folder.file("part.dxf"), folder.file("other.dxf"));
    explorer.selectDrawing(folder.file("other.dxf"));
    std::filesystem::remove(folder.file("other.dxf"));
    dialogs.pushPath(folder.file("copy2.dwg"));
    EXPECT_EQ(explorer.writeR14Copy(), Copy::Failed);

    Strings boxes;
    for (const auto& box : dialogs.messageBoxes()) {
        EXPECT_EQ(box.flags, cad::app::MB_OK | cad::app::MB_ICONERROR);
        boxes.push_back(box.title + ": " + box.text);
    }
    EXPECT_EQ(boxes,
              (Strings{"파일 변환 에러: 파일을 엑세스할 수 없습니다.",
                       "파일 변환 에러: 파일을 변환할 수 없습니다. (열린도면).",
                       "파일 변환 에러: 알수없는 문제로 인하여 변환하는데 실패하였습니다."}));
}

}  // namespace
}  // namespace vantor
