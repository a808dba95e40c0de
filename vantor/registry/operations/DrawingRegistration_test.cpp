// Registering drawings: the folder scan over nested folders, duplicates announced one by one,
// the dialog-path repair, the explorer's register, remove, optimise, rows and the open queue.
#include "vantor/registry/operations/DrawingRegistration.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/operations/DrawingListRow.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {
namespace {

using cad::app::IDCANCEL;
using cad::app::ScriptedDialogs;
using Strings = std::vector<std::string>;

class Registration : public testing::Test {
protected:
    Registration() { windows.loadTabList(); }

    // A drawing with one part record; `library` false: a drawing without library data.
    std::string drawing(const std::string& relative, bool library = true) {
        const std::filesystem::path path = files.path() / relative;
        std::filesystem::create_directories(path.parent_path());
        cad::db::Database db;
        if (library) {
            using namespace testing_support;
            ObjectId user = addDictionary(db.namedObjectsDictionaryId(), "User data list");
            addRecord(addDictionary(user, "볼트"), "QRB_VANTORDATA-0", "육각볼트", "M10");
        }
        EXPECT_EQ(db.saveAs(path.string()), cad::ErrorStatus::eOk);
        return path.string();
    }
    Strings saved() const { return ListFile::readAll(windows.listFile(0)).value_or(Strings{}); }
    std::vector<int> activeFlags() const {
        std::vector<int> flags;
        for (const RegisteredDrawing& entry : list) flags.push_back(entry.active);
        return flags;
    }
    Strings boxes() const {
        Strings texts;
        for (const auto& box : dialogs.messageBoxes()) texts.push_back(box.title + ": " + box.text);
        return texts;
    }

    using ObjectId = cad::db::ObjectId;
    cad::sys::TestTempFolder module;
    cad::sys::TestTempFolder files;
    // Set before the windows take their data folder from it.
    ModuleSettings settings = [this] {
        ModuleSettings inModule;
        inModule.moduleFolder = module.path().string() + "/";
        return inModule;
    }();
    ScriptedDialogs dialogs;
    DrawingList list;
    CVNTreeBase tree{dialogs};
    ManagementWindows windows{settings, list, tree, dialogs};
    DrawingRegistration registration{list, tree, windows, dialogs};
};

TEST_F(Registration, FolderScanKeepsTheReadableDrawingsSubfoldersFirst) {
    const std::string top = drawing("lib/b.dxf");
    const std::string upper = drawing("lib/A.DXF");
    drawing("lib/plain.dxf", false);
    const std::string nested = drawing("lib/sub1/deep/d.dxf");
    files.writeBytes("lib/sub1/e.dwg", "0\nSECTION\n");
    const std::string second = drawing("lib/sub2/c.dxf");
    files.writeBytes("lib/notes.txt", "not a drawing");
    registration.addPaths({drawing("old.dxf")});
    dialogs.clearCalls();

    EXPECT_FALSE(registration.scanFolder());  // no folder chosen
    dialogs.pushPath(files.file("lib"));
    dialogs.pushAnswer(IDCANCEL);
    EXPECT_FALSE(registration.scanFolder());
    dialogs.pushPath(files.file("lib"));
    ASSERT_TRUE(registration.scanFolder());

    // The damaged e.dwg and plain.dxf, readable but holding no library data, were listed,
    // then dropped.
    const Strings expected = {nested, second, upper, top};
    EXPECT_EQ(list.paths(), expected);
    EXPECT_EQ(saved(), expected);
    EXPECT_EQ(activeFlags(), std::vector<int>(4, 1));
    Strings shown;
    for (const auto& root : tree.roots()) shown.push_back(root->drawingPath);
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(boxes(), Strings(2, "폴더 SCAN: 기존의 리스트가 사라집니다.\n그래도 하시겠습니까?"));
    const std::string building = "상태 : 리스트 형성 중...";
    Strings progress;
    for (const auto& call : dialogs.calls(ScriptedDialogs::Kind::ProgressText)) {
        if (call.text.starts_with(building)) progress.push_back(call.text);
    }
    Strings expectedProgress = {building};
    for (const char* percent : {"0", "16", "33", "50", "66", "83"})
        expectedProgress.push_back(building + " (" + percent + "%)");
    EXPECT_EQ(progress, expectedProgress);

    std::filesystem::create_directory(files.path() / "empty");
    dialogs.pushPath(files.file("empty"));
    EXPECT_TRUE(registration.scanFolder());
    EXPECT_EQ(saved(), Strings{});
}

TEST_F(Registration, AddingAnnouncesEachDuplicateAndReadsEachNewDrawing) {
    const std::string library = drawing("a.dxf");
    const std::string missing = files.file("gone.dxf");
    files.writeBytes("bad.dxf", "0\nSECTION\n");
    dialogs.pushPaths(Strings{library, files.file("bad.dxf"), library, missing, "C:\\v\\x.dwg",
                              "C:\\v\\\\x.dwg"});
    ASSERT_TRUE(registration.addThroughDialog());
    EXPECT_FALSE(registration.addThroughDialog());  // cancelled

    EXPECT_EQ(list.paths(), (Strings{library, files.file("bad.dxf"), missing, "C:\\v\\x.dwg"}));
    EXPECT_EQ(activeFlags(), (std::vector<int>{1, 0, 0, 0}));
    EXPECT_EQ(saved(), list.paths());
    EXPECT_EQ(boxes(), (Strings{"도면 중복 알림: \"" + library + "\"\n은 이미 등록된 도면입니다.",
                                "도면 중복 알림: \"C:\\v\\\\x.dwg\"\n은 이미 등록된 도면입니다."}));
}

TEST_F(Registration, ExplorerRegistersOnceThenRefusesTheDuplicate) {
    const std::string library = drawing("a.dxf");
    EXPECT_TRUE(registration.registerDrawing(library));
    EXPECT_FALSE(registration.registerDrawing(library));
    EXPECT_EQ(saved(), Strings{library});
    EXPECT_EQ(activeFlags(), std::vector<int>{1});
    EXPECT_EQ(boxes(), (Strings{"추가 완료: 정상적으로 등록되었습니다.",
                                "도면 중복 에러: 이미 등록된 도면입니다."}));
    EXPECT_EQ(dialogs.messageBoxes()[1].icon(), cad::app::MB_ICONERROR);
}

TEST(DialogPathRepair, DropsIndexThreeOnlyAfterADoubledBackslashAtIndexOne) {
    const std::pair<const char*, const char*> rows[] = {
        {"C\\\\xy", "C\\\\y"},
        {"C\\\\x", "C\\\\x"},                      // four bytes
        {"C:\\\\a.dwg", "C:\\\\a.dwg"},            // doubled at 2
        {"\\\\srv\\a.dwg", "\\\\srv\\a.dwg"},  // network
        {"C\\a\\\\b.dwg", "C\\a\\\\b.dwg"},    // first doubled later
    };
    for (const auto& [given, repaired] : rows)
        EXPECT_EQ(DrawingRegistration::repairDialogPath(given), repaired) << given;
}

TEST_F(Registration, RemoveOptimiseAndTheOpenQueue) {
    const std::string a = drawing("a.dxf");
    registration.addPaths({a, "C:\\lib\\gone.dwg", "\\\\srv\\lib\\valve.dwg", drawing("b.dxf")});
    // What the rows show is pinned with the dialog; here they are what the operations take.
    auto rows = DrawingListRow::rowsOf(list);
    ASSERT_EQ(rows.size(), 4u);

    settings.openQueueBusy = true;
    EXPECT_FALSE(registration.queueForOpening({rows[0].entry}, settings));
    settings.openQueueBusy = false;
    EXPECT_TRUE(registration.queueForOpening({rows[0].entry, rows[3].entry}, settings));
    EXPECT_EQ(settings.openQueue, (Strings{a, rows[3].entry->path}));

    dialogs.clearCalls();
    EXPECT_FALSE(registration.removeSelected({}));  // nothing selected: no question
    dialogs.pushAnswer(IDCANCEL);
    EXPECT_FALSE(registration.removeSelected({rows[3].entry}));
    EXPECT_TRUE(registration.removeSelected({rows[3].entry}));
    dialogs.pushAnswer(IDCANCEL);
    EXPECT_EQ(registration.optimise(), 0);
    EXPECT_EQ(registration.optimise(), 2);
    EXPECT_EQ(registration.optimise(), 0);
    EXPECT_EQ(list.paths(), Strings{a});
    const std::string remove =
        "부품 도면 제거: 선택된 도면들을 리스트에서 제거합니다?\n제거하시겠습니까?";
    const std::string optimise =
        "리스트 최적화: 비활성 도면들을 모두 리스트에서 제거합니다?\n실행하시겠습니까?";
    EXPECT_EQ(boxes(), (Strings{remove, remove, optimise, optimise, optimise}));

    registration.dialogClosed(true, false);  // saves the changed list
    EXPECT_EQ(saved(), Strings{a});
}

}  // namespace
}  // namespace vantor
