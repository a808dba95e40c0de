// The registered-drawing dialog driven by its buttons: the same file chosen twice, the drive
// column, remove and optimise with their questions, and open, which hands the chosen drawings
// to the open command behind the command guard.
#include "vantor/registry/dialogs/DwgListDlg.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/dialogs/RegistrationFlows.h"
#include "vantor/registry/operations/DrawingRegistration.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using cad::app::IDCANCEL;
using cad::app::IDOK;
using testing_support::boxesShown;
using Strings = std::vector<std::string>;

constexpr const char* kCommandRunning =
    "명령 중첩 에러: AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 종료하신 후 다시 "
    "시도해 주십시오. [error]";

class RegisteredDrawings : public testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        cad::app::setUserDialogs(&dialogs);
        app.documentManager().appContextNewDocument();
        windows.loadTabList();
    }
    void TearDown() override { cad::app::setUserDialogs(nullptr); }

    // A drawing holding one part record, so that reading it makes its entry active.
    std::string drawing(const std::string& name) {
        cad::db::Database db;
        using namespace testing_support;
        addRecord(
            addDictionary(addDictionary(db.namedObjectsDictionaryId(), "User data list"), "볼트"),
            "QRB_VANTORDATA-0", "육각볼트", "M10");
        const std::string path = files.file(name);
        EXPECT_EQ(db.saveAs(path), cad::ErrorStatus::eOk);
        return path;
    }
    Strings saved() const { return ListFile::readAll(windows.listFile(0)).value_or(Strings{}); }
    Strings column(const CDwgListDlg& dialog, int column) const {
        Strings texts;
        for (int row = 0; row < dialog.drawings()->topLevelItemCount(); ++row)
            texts.push_back(dialog.drawings()->topLevelItem(row)->text(column).toStdString());
        return texts;
    }
    static void press(QDialog& dialog, int id) {
        testing_support::press(dialog, QStringLiteral("id%1").arg(id).toLatin1().constData());
    }
    static void selectRows(const CDwgListDlg& dialog, std::initializer_list<int> rows) {
        dialog.drawings()->clearSelection();
        for (int row : rows) dialog.drawings()->topLevelItem(row)->setSelected(true);
    }
    // What the current document was given to run, in order.
    Strings queued() {
        Strings texts;
        std::string text;
        bool echo = false;
        while (app.documentManager().popQueuedString(text, echo)) texts.push_back(text);
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
    DrawingRegistration registration{list, tree, windows, dialogs};
};

TEST_F(RegisteredDrawings, TheSameFileChosenTwiceInOneDialogIsRegisteredOnceWithOneNotice) {
    const std::string a = drawing("a.dxf");
    CDwgListDlg dialog(registration, list, settings);
    EXPECT_EQ(dialog.windowTitle().toStdString(), "등록된 부품도면 리스트");
    dialogs.pushPaths(Strings{a, a});
    press(dialog, CDwgListDlg::kAddId);

    const auto chosen = dialogs.calls(cad::app::ScriptedDialogs::Kind::OpenFiles);
    ASSERT_EQ(chosen.size(), 1u);
    EXPECT_EQ(chosen[0].title, "도면 등록");
    // Both formats the engine reads are offered.
    EXPECT_NE(chosen[0].text.find("*.dwg"), std::string::npos);
    EXPECT_NE(chosen[0].text.find("*.dxf"), std::string::npos);
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"도면 중복 알림: \"" + a + "\"\n은 이미 등록된 도면입니다. [information]"});
    EXPECT_EQ(column(dialog, 0), Strings{"a.dxf"});
    EXPECT_EQ(saved(), Strings{a});
    EXPECT_TRUE(dialog.listChanged());
}

TEST_F(RegisteredDrawings, RowsShowNameDriveOrNetworkAndFolderWithTheStateOfEachDrawing) {
    const std::string a = drawing("a.dxf");
    registration.addPaths({a, "C:\\lib\\gone.dwg", "\\\\srv\\lib\\valve.dwg"});
    CDwgListDlg dialog(registration, list, settings);

    EXPECT_EQ(column(dialog, 0), (Strings{"a.dxf", "gone.dwg", "valve.dwg"}));
    // A local path from the root is no network path on a system without drives.
    EXPECT_EQ(column(dialog, 1), (Strings{"/", "C:", "Network"}));
    EXPECT_EQ(column(dialog, 2),
              (Strings{files.path().string() + "/", "\\lib\\", "\\\\srv\\lib\\"}));
    // Readable library data or not: the two missing drawings share the inactive image.
    const auto icon = [&](int row) {
        return dialog.drawings()->topLevelItem(row)->icon(0).pixmap(16).toImage();
    };
    EXPECT_NE(icon(0), icon(1));
    EXPECT_EQ(icon(1), icon(2));

    for (auto [id, text] : {std::pair{CDwgListDlg::kAddId, "추   가"},
                            {CDwgListDlg::kRemoveId, "제   거"},
                            {CDwgListDlg::kOptimiseId, "최적화"},
                            {CDwgListDlg::kOpenId, "도면 열기"},
                            {IDCANCEL, "닫   기"}}) {
        auto* button = dialog.findChild<QPushButton*>(QStringLiteral("id%1").arg(id));
        ASSERT_NE(button, nullptr) << id;
        EXPECT_EQ(button->accessibleName().toStdString(), text);
    }
    EXPECT_NE(dialog.findChild<QTreeWidget*>(QStringLiteral("id415")), nullptr);
}

TEST_F(RegisteredDrawings, OptimisingWithoutInactiveDrawingsChangesNothingButRefillsTheRows) {
    registration.addPaths({drawing("a.dxf"), drawing("b.dxf")});
    CDwgListDlg dialog(registration, list, settings);
    // Listed behind the dialog's back: only a refill shows it.
    list.addPath(drawing("c.dxf"), dialogs);
    dialogs.clearCalls();

    dialogs.pushAnswer(IDCANCEL);
    press(dialog, CDwgListDlg::kOptimiseId);
    EXPECT_EQ(column(dialog, 0), (Strings{"a.dxf", "b.dxf", "c.dxf"}));
    press(dialog, CDwgListDlg::kOptimiseId);
    EXPECT_EQ(column(dialog, 0), (Strings{"a.dxf", "b.dxf", "c.dxf"}));
    const std::string question =
        "리스트 최적화: 비활성 도면들을 모두 리스트에서 제거합니다?\n실행하시겠습니까? [warning "
        "ok-cancel]";
    EXPECT_EQ(boxesShown(dialogs), (Strings{question, question}));
    EXPECT_FALSE(dialog.listChanged());
}

TEST_F(RegisteredDrawings, RemoveAsksFirstThenDropsTheSelectedRows) {
    const std::string b = drawing("b.dxf");
    registration.addPaths({drawing("a.dxf"), b, drawing("c.dxf")});
    CDwgListDlg dialog(registration, list, settings);
    dialogs.clearCalls();

    press(dialog, CDwgListDlg::kRemoveId);  // nothing selected: no question
    EXPECT_TRUE(dialogs.calls().empty());
    selectRows(dialog, {2, 0});
    dialogs.pushAnswer(IDCANCEL);
    press(dialog, CDwgListDlg::kRemoveId);
    EXPECT_EQ(list.size(), 3u);
    EXPECT_FALSE(dialog.listChanged());
    selectRows(dialog, {2, 0});
    press(dialog, CDwgListDlg::kRemoveId);
    EXPECT_EQ(boxesShown(dialogs),
              Strings(2,
                      "부품 도면 제거: 선택된 도면들을 리스트에서 제거합니다?\n제거하시겠습니까? "
                      "[warning ok-cancel]"));
    EXPECT_EQ(column(dialog, 0), Strings{"b.dxf"});
    EXPECT_EQ(saved(), Strings{b});
    EXPECT_TRUE(dialog.listChanged());
}

TEST_F(RegisteredDrawings, OpenQueuesTheChosenDrawingsAndUbloBehindTheGuard) {
    const std::string a = drawing("a.dxf");
    const std::string b = drawing("b.dxf");
    const std::string c = drawing("c.dxf");
    registration.addPaths({a, b, c});
    dialogs.clearCalls();

    // A batch still being opened: the dialog stays and the queue is kept.
    settings.openQueueBusy = true;
    settings.openQueue = {"earlier.dxf"};
    testing_support::whenModal([&](QDialog& dialog) {
        selectRows(static_cast<CDwgListDlg&>(dialog), {0});
        press(dialog, CDwgListDlg::kOpenId);
        EXPECT_TRUE(dialog.isVisible());
    });
    EXPECT_FALSE(manageRegisteredDrawings(context()));
    EXPECT_EQ(settings.openQueue, Strings{"earlier.dxf"});
    EXPECT_TRUE(queued().empty());
    settings.openQueueBusy = false;

    testing_support::whenModal([&](QDialog& dialog) {
        selectRows(static_cast<CDwgListDlg&>(dialog), {2, 0});
        press(dialog, CDwgListDlg::kOpenId);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_TRUE(manageRegisteredDrawings(context()));
    EXPECT_EQ(settings.openQueue, (Strings{a, c}));
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});

    // A double click opens its row alone.
    testing_support::whenModal([&](QDialog& dialog) {
        QTreeWidget* rows = static_cast<CDwgListDlg&>(dialog).drawings();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        const QRect row = rows->visualItemRect(rows->topLevelItem(1));
        // A double click comes after the first click of it, as a user makes it.
        QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, row.center());
        QTest::mouseDClick(rows->viewport(), Qt::LeftButton, {}, row.center());
    });
    EXPECT_TRUE(manageRegisteredDrawings(context()));
    EXPECT_EQ(settings.openQueue, Strings{b});
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});

    // A command running in the drawing refuses the open command, and the refused queue is not
    // left for a later one.
    cad::app::Document* document = app.documentManager().curDocument();
    app.documentManager().commandStarted(document);
    testing_support::whenModal([&](QDialog& dialog) {
        selectRows(static_cast<CDwgListDlg&>(dialog), {0});
        press(dialog, CDwgListDlg::kOpenId);
    });
    EXPECT_TRUE(manageRegisteredDrawings(context()));
    app.documentManager().commandFinished(document);
    EXPECT_EQ(boxesShown(dialogs), Strings{kCommandRunning});
    EXPECT_TRUE(settings.openQueue.empty());
    EXPECT_TRUE(queued().empty());
}

}  // namespace
}  // namespace vantor
