// The authoring flows on a library drawing on disk: a part added and read back, a part changed
// under its key, a block captured in the dialog that reaches the file only with OK, a failed
// save that leaves the file as it was.
#include "vantor/authoring/dialogs/PartDataFlow.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <chrono>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"
#include "cad/ed/ScriptInputSource.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/FileLock.h"
#include "cad/sys/TestTempFolder.h"
#include "cad/sys/WriteFaults.h"
#include "vantor/authoring/BlockCapture.h"
#include "vantor/placement/PlacementTestDrawing.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using testing_support::boxesShown;
using testing_support::press;
using testing_support::whenModal;

class PartDataFlow : public ::testing::Test {
protected:
    PartDataFlow() : library(folder.file("parts.dxf")) {
        cad::gui::testApplication();
        // The user's drawing, holding one line to capture.
        cad::db::Database drawing;
        line = cad::db::testing_support::append(
                   drawing.modelSpaceId(),
                   std::make_unique<cad::db::Line>(cad::ge::Point3d(0, 0, 0),
                                                   cad::ge::Point3d(30, 0, 0)))
                   .handle()
                   .toHex();
        EXPECT_EQ(drawing.saveAs(folder.file("work.dxf")), cad::ErrorStatus::eOk);
        EXPECT_EQ(app.documentManager().appContextOpenDocument(folder.file("work.dxf")),
                  cad::ErrorStatus::eOk);
        app.editor().setInputSource(&script);
        auto db = openLibraryDrawing(library.path);
        group = dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"}).asOldId();
        record = readGroupRecords(dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"}))
                     .records.at(0)
                     .recordId.asOldId();
    }
    ~PartDataFlow() override {
        app.editor().setInputSource(nullptr);
        cad::sys::WriteFaults::reset();
    }

    // The group's records as the file holds them; their ids name nothing once this returns.
    GroupRecords storedRecords() {
        auto db = openLibraryDrawing(library.path);
        return readGroupRecords(dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"}));
    }
    // Their handles, taken while the drawing is open.
    std::vector<std::int64_t> storedHandles() {
        auto db = openLibraryDrawing(library.path);
        std::vector<std::int64_t> handles;
        for (const PartRecord& stored :
             readGroupRecords(dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"})).records)
            handles.push_back(stored.recordId.asOldId());
        return handles;
    }
    static void type(QDialog& dialog, int id, const char* text) {
        auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("id%1").arg(id));
        ASSERT_NE(edit, nullptr) << id;
        edit->setText(QString::fromUtf8(text));
    }

    cad::sys::TestTempFolder folder;
    testing_support::SampleLibrary library;
    cad::app::Application app;
    cad::app::ScriptedDialogs dialogs;
    cad::ed::ScriptInputSource script;
    BlockCapture capture{app.editor(), app.documentManager(), dialogs};
    ModuleSettings settings;
    std::string line;
    std::int64_t group = 0;
    std::int64_t record = 0;
};

TEST_F(PartDataFlow, APartAddedWithACapturedBlockIsReadBackFromTheFile) {
    script = cad::ed::ScriptInputSource({line, "", "PLATE", "0,0", "<pick> 10,2"});
    whenModal([&](QDialog& dialog) {
        type(dialog, 403, "육각볼트");
        type(dialog, 438, "평와셔");
        type(dialog, 448, "M10");
        type(dialog, 469, "KS");
        press(dialog, "id437");  // capture into the front view
        press(dialog, "id476");  // and its BOM mark's point
        EXPECT_EQ(dialog.findChild<QLineEdit*>("id408")->text(), QStringLiteral("PLATE"));
        EXPECT_TRUE(dialog.isVisible());
        press(dialog, "id1001");
    });
    EXPECT_TRUE(addPartData(nullptr, library.path, group, settings, capture));
    EXPECT_TRUE(dialogs.calls().empty());

    const GroupRecords stored = storedRecords();
    ASSERT_EQ(stored.records.size(), 2u);
    const PartRecord& added = stored.records[1];
    EXPECT_EQ(added.key, "QRB_VANTORDATA-1");
    EXPECT_EQ(added.group, "육각볼트");
    EXPECT_EQ(added.kname, "평와셔");
    EXPECT_EQ(added.spec, "M10");
    EXPECT_EQ(added.user[3], "KS");
    EXPECT_EQ(added.viewBlocks[0], "PLATE");
    EXPECT_TRUE(added.viewPoints[0].isEqualTo({10, 2, 0}));
    auto db = openLibraryDrawing(library.path);
    EXPECT_FALSE(cad::db::testing_support::lookUp(db->blockTableId(), "PLATE").isNull());
}

TEST_F(PartDataFlow, ModifyKeepsTheKeyAndAddFromModifyStoresACopy) {
    whenModal([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QString::fromUtf8("사용자 데이터 수정"));
        EXPECT_EQ(dialog.findChild<QLineEdit*>("id448")->text(), QStringLiteral("M10x40"));
        type(dialog, 448, "M12x40");
        press(dialog, "id1");
    });
    EXPECT_TRUE(modifyPartData(nullptr, library.path, record, settings, capture));
    GroupRecords stored = storedRecords();
    ASSERT_EQ(stored.records.size(), 1u);
    EXPECT_EQ(storedHandles().at(0), record);
    EXPECT_EQ(stored.records[0].key, "QRB_VANTORDATA-0");
    EXPECT_EQ(stored.records[0].spec, "M12x40");
    EXPECT_EQ(stored.records[0].viewBlocks[0], "BOLT-F");

    whenModal([&](QDialog& dialog) {
        type(dialog, 448, "M16x40");
        press(dialog, "id1001");
    });
    EXPECT_TRUE(modifyPartData(nullptr, library.path, record, settings, capture));
    stored = storedRecords();
    ASSERT_EQ(stored.records.size(), 2u);
    EXPECT_EQ(stored.records[0].spec, "M12x40");
    EXPECT_EQ(stored.records[1].spec, "M16x40");
    EXPECT_EQ(stored.records[1].key, "QRB_VANTORDATA-1");

    SCOPED_TRACE("a record that is gone");
    EXPECT_FALSE(modifyPartData(nullptr, library.path, 0x7FFFFF, settings, capture));
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"수정 에러: 데이터를 수정할 수 없습니다. [error]"});
}

TEST_F(PartDataFlow, APartOfADrawingAnotherUserIsChangingIsShownReadOnly) {
    // Another user's session: a lock excludes another of the same process as it does another
    // process's.
    cad::sys::FileLock other;
    ASSERT_EQ(other.acquire(library.path), cad::ErrorStatus::eOk);
    const auto wait = cad::sys::FileLock::defaultWait();
    cad::sys::FileLock::setDefaultWait(std::chrono::milliseconds(50));
    const std::string before = folder.readBytes("parts.dxf");
    whenModal([&](QDialog& dialog) {
        auto* notice = dialog.findChild<QLabel*>("readOnlyNotice");
        ASSERT_NE(notice, nullptr);
        EXPECT_TRUE(notice->isVisible());
        EXPECT_TRUE(notice->text().contains(QString::fromUtf8("부터 고치고 있습니다.")));
        EXPECT_EQ(dialog.findChild<QLineEdit*>("id448")->text(), QStringLiteral("M10x40"));
        EXPECT_TRUE(dialog.findChild<QLineEdit*>("id448")->isReadOnly());
        for (const char* id : {"id1", "id1001", "id437"})
            EXPECT_FALSE(dialog.findChild<QPushButton*>(id)->isEnabled()) << id;
        EXPECT_TRUE(dialog.findChild<QPushButton*>("id2")->isEnabled());
        press(dialog, "id2");
    });
    EXPECT_FALSE(modifyPartData(nullptr, library.path, record, settings, capture));
    ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
    EXPECT_EQ(dialogs.messageBoxes()[0].title, "읽기 전용");

    SCOPED_TRACE("a new part has nothing to show: refused, naming the holder");
    EXPECT_FALSE(addPartData(nullptr, library.path, group, settings, capture));
    ASSERT_EQ(dialogs.messageBoxes().size(), 2u);
    EXPECT_EQ(dialogs.messageBoxes()[1].title, "파일 사용 중");
    EXPECT_EQ(folder.readBytes("parts.dxf"), before);
    cad::sys::FileLock::setDefaultWait(wait);
}

TEST_F(PartDataFlow, NothingReachesTheFileWithoutOkOrWhenTheSaveFails) {
    const std::string before = folder.readBytes("parts.dxf");

    script = cad::ed::ScriptInputSource({line, "", "PLATE", "0,0"});
    whenModal([&](QDialog& dialog) {
        type(dialog, 403, "육각볼트");
        type(dialog, 438, "평와셔");
        press(dialog, "id437");
        press(dialog, "id2");
    });
    EXPECT_FALSE(addPartData(nullptr, library.path, group, settings, capture));
    EXPECT_EQ(folder.readBytes("parts.dxf"), before);

    whenModal([&](QDialog& dialog) {
        type(dialog, 403, "육각볼트");
        type(dialog, 438, "평와셔");
        cad::sys::WriteFaults::failStep(0, ENOSPC);
        press(dialog, "id1001");
        EXPECT_TRUE(dialog.isVisible());  // for another try or a cancel
        ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "저장 에러");
        cad::sys::WriteFaults::reset();
        press(dialog, "id1001");  // the second try stores the record once
    });
    EXPECT_TRUE(addPartData(nullptr, library.path, group, settings, capture));
    EXPECT_EQ(storedRecords().records.size(), 2u);
}

TEST_F(PartDataFlow, BlockListCaptureSavesTheDrawingAtOnce) {
    script = cad::ed::ScriptInputSource({line, "", "RAIL", "5,0"});
    EXPECT_TRUE(captureBlock(nullptr, library.path, false, capture));
    auto db = openLibraryDrawing(library.path);
    EXPECT_FALSE(cad::db::testing_support::lookUp(db->blockTableId(), "RAIL").isNull());

    script = cad::ed::ScriptInputSource({"<esc>"});
    const std::string before = folder.readBytes("parts.dxf");
    EXPECT_FALSE(captureBlock(nullptr, library.path, false, capture));
    EXPECT_EQ(folder.readBytes("parts.dxf"), before);
}

}  // namespace
}  // namespace vantor
