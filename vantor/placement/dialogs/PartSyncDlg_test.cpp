// The part synchronisation list: its rows from the plain list, its buttons' answers, and an
// update that cannot be chosen when only gone records are listed.
#include "vantor/placement/dialogs/PartSyncDlg.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include "cad/gui/TestApplication.h"

namespace vantor {
namespace {

PartSyncList sampleList() {
    PartSyncList list;
    list.linked = 5;
    list.changed = 1;
    list.gone = 1;
    list.rows.push_back({"2F", "BOLT-F", "육각볼트", "library.dxf", "육각볼트", "변경됨",
                         "SPEC: M10x40 → M10x45", true});
    list.rows.push_back(
        {"31", "NUT-F", "육각너트", "nuts.dxf", "너트", "레코드 삭제됨", "", false});
    return list;
}

QPushButton* button(QDialog& dialog, const char* accessibleName) {
    for (QPushButton* found : dialog.findChildren<QPushButton*>())
        if (found->accessibleName() == QString::fromUtf8(accessibleName)) return found;
    return nullptr;
}

class PartSyncDialog : public ::testing::Test {
protected:
    void SetUp() override { cad::gui::testApplication(); }
};

TEST_F(PartSyncDialog, ShowsEveryRowAndNamesEveryControl) {
    CPartSyncDlg dialog(sampleList());
    dialog.show();
    auto* table = dialog.findChild<QTableWidget*>();
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->rowCount(), 2);
    EXPECT_EQ(table->item(0, 0)->text(), QStringLiteral("2F"));
    EXPECT_EQ(table->item(0, 1)->text(), QString::fromUtf8("육각볼트"));
    EXPECT_EQ(table->item(0, 3)->text(), QString::fromUtf8("library.dxf / 육각볼트"));
    EXPECT_EQ(table->item(0, 5)->text(), QString::fromUtf8("SPEC: M10x40 → M10x45"));
    EXPECT_EQ(table->item(1, 4)->text(), QString::fromUtf8("레코드 삭제됨"));
    EXPECT_EQ(dialog.windowTitle(), QString::fromUtf8("부품 동기화"));
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (qobject_cast<QLabel*>(widget) || qobject_cast<QPushButton*>(widget) ||
            qobject_cast<QTableWidget*>(widget)) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
        }
    }
    EXPECT_TRUE(
        dialog.findChild<QLabel*>()->text().contains(QString::fromUtf8("변경 1개, 없어짐 1개")));
}

TEST_F(PartSyncDialog, UpdateAcceptsCloseRejectsAndOnlyGoneRowsLeaveNothingToUpdate) {
    {
        CPartSyncDlg dialog(sampleList());
        dialog.show();
        QTest::mouseClick(button(dialog, "BOM 속성 갱신"), Qt::LeftButton);
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
    }
    {
        CPartSyncDlg dialog(sampleList());
        dialog.show();
        QTest::mouseClick(button(dialog, "닫기"), Qt::LeftButton);
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
    }
    PartSyncList gone = sampleList();
    gone.rows.erase(gone.rows.begin());
    gone.changed = 0;
    CPartSyncDlg dialog(gone);
    EXPECT_FALSE(button(dialog, "BOM 속성 갱신")->isEnabled());
}

}  // namespace
}  // namespace vantor
