// The registered-drawing dialog driven by its buttons: the same file chosen twice, the drive
// column, remove and optimise with their questions, and open, which hands the chosen drawings
// to the open command once the dialog has closed.
#include "vantor/registry/dialogs/DwgListDlg.h"

#include <QTest>
#include <QTreeWidget>

#include "vantor/registry/ListFile.h"
#include "vantor/registry/dialogs/TestRegistry.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using cad::app::IDCANCEL;

class RegisteredDrawings : public testing_support::RegistryTest {
protected:
    Strings saved() const { return ListFile::readAll(windows.listFile(0)).value_or(Strings{}); }
    static Strings column(const CDwgListDlg& dialog, int column) {
        Strings texts;
        for (int row = 0; row < dialog.drawings()->topLevelItemCount(); ++row)
            texts.push_back(dialog.drawings()->topLevelItem(row)->text(column).toStdString());
        return texts;
    }
    static void press(QDialog& dialog, int id) {
        testing_support::press(dialog, QStringLiteral("id%1").arg(id).toLatin1().constData());
    }
    static void selectRows(QDialog& dialog, std::initializer_list<int> rows) {
        QTreeWidget* list = static_cast<CDwgListDlg&>(dialog).drawings();
        list->clearSelection();
        for (int row : rows) list->topLevelItem(row)->setSelected(true);
    }
};

TEST_F(RegisteredDrawings, TheSameFileChosenTwiceInOneDialogIsRegisteredOnceWithOneNotice) {
    const std::string a = drawing("a.dxf");
    CDwgListDlg dialog(registration, list, settings);
    dialogs.pushPaths(Strings{a, a});
    press(dialog, CDwgListDlg::kAddId);

    const auto chosen = dialogs.calls(cad::app::ScriptedDialogs::Kind::OpenFiles);
    ASSERT_EQ(chosen.size(), 1u);
    EXPECT_EQ(chosen[0].title + " " + chosen[0].text, "도면 등록 Drawing (*.dwg *.dxf)");
    EXPECT_EQ(testing_support::boxesShown(dialogs),
              Strings{"도면 중복 알림: \"" + a + "\"\n은 이미 등록된 도면입니다. [information]"});
    EXPECT_EQ(column(dialog, 0), Strings{"a.dxf"});
    EXPECT_EQ(saved(), Strings{a});
    EXPECT_TRUE(dialog.listChanged());
}

TEST_F(RegisteredDrawings, RowsShowNameDriveOrNetworkAndFolderWithTheStateOfEachDrawing) {
    registration.addPaths({drawing("a.dxf"), "C:\\lib\\gone.dwg", "\\\\srv\\lib\\valve.dwg"});
    CDwgListDlg dialog(registration, list, settings);

    EXPECT_EQ(column(dialog, 0), (Strings{"a.dxf", "gone.dwg", "valve.dwg"}));
    // A local path from the root is no network path on a system without drives.
    EXPECT_EQ(column(dialog, 1), (Strings{"/", "C:", "Network"}));
    EXPECT_EQ(column(dialog, 2),
              (Strings{files.path().string() + "/", "\\lib\\", "\\\\srv\\lib\\"}));
    // The two missing drawings share the inactive image.
    const auto icon = [&](int row) {
        return dialog.drawings()->topLevelItem(row)->icon(0).pixmap(16).toImage();
    };
    EXPECT_NE(icon(0), icon(1));
    EXPECT_EQ(icon(1), icon(2));
}

TEST_F(RegisteredDrawings, RemoveAndOptimiseAskFirstAndShowTheListAgainWhateverTheAnswer) {
    const std::string b = drawing("b.dxf");
    registration.addPaths({drawing("a.dxf"), b});
    CDwgListDlg dialog(registration, list, settings);
    // Listed behind the dialog's back: only a refill shows it.
    list.addPath(drawing("c.dxf"), dialogs);
    dialogs.clearCalls();

    dialogs.pushAnswer(IDCANCEL);
    press(dialog, CDwgListDlg::kOptimiseId);
    EXPECT_EQ(column(dialog, 0), (Strings{"a.dxf", "b.dxf", "c.dxf"}));
    press(dialog, CDwgListDlg::kOptimiseId);  // nothing inactive: nothing goes
    EXPECT_EQ(list.size(), 3u);
    EXPECT_FALSE(dialog.listChanged());

    press(dialog, CDwgListDlg::kRemoveId);  // nothing selected: no question
    selectRows(dialog, {2, 0});
    dialogs.pushAnswer(IDCANCEL);
    press(dialog, CDwgListDlg::kRemoveId);
    EXPECT_EQ(list.size(), 3u);
    selectRows(dialog, {2, 0});
    press(dialog, CDwgListDlg::kRemoveId);
    const std::string optimise =
        "리스트 최적화: 비활성 도면들을 모두 리스트에서 제거합니다?\n실행하시겠습니까? [warning "
        "ok-cancel]";
    const std::string remove =
        "부품 도면 제거: 선택된 도면들을 리스트에서 제거합니다?\n제거하시겠습니까? [warning "
        "ok-cancel]";
    EXPECT_EQ(testing_support::boxesShown(dialogs), (Strings{optimise, optimise, remove, remove}));
    EXPECT_EQ(column(dialog, 0), Strings{"b.dxf"});
    EXPECT_EQ(saved(), Strings{b});
    EXPECT_TRUE(dialog.listChanged());
}

TEST_F(RegisteredDrawings, OpenQueuesTheChosenDrawingsThenUbloAfterTheDialogCloses) {
    const std::string a = drawing("a.dxf");
    const std::string b = drawing("b.dxf");
    const std::string c = drawing("c.dxf");
    registration.addPaths({a, b, c});
    queued();

    testing_support::whenModal([&](QDialog& dialog) {
        selectRows(dialog, {2, 0});
        press(dialog, CDwgListDlg::kOpenId);
    });
    EXPECT_TRUE(manageRegisteredDrawings(context()));
    EXPECT_EQ(settings.openQueue, (Strings{a, c}));
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});

    // A double click (after its first click, as a user makes it) opens its row alone.
    testing_support::whenModal([&](QDialog& dialog) {
        QTreeWidget* rows = static_cast<CDwgListDlg&>(dialog).drawings();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        const QPoint row = rows->visualItemRect(rows->topLevelItem(1)).center();
        QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(rows->viewport(), Qt::LeftButton, {}, row);
    });
    EXPECT_TRUE(manageRegisteredDrawings(context()));
    EXPECT_EQ(settings.openQueue, Strings{b});
    EXPECT_EQ(queued(), Strings{"_UBLO\n"});
}

}  // namespace
}  // namespace vantor
