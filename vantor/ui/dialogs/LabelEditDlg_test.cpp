// The field-title dialog: edits by id and field, reset that holds whatever the answer, and OK
// that warns about the first blank title, leaves it focused and stores it anyway.
#include "vantor/ui/dialogs/LabelEditDlg.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using testing_support::boxesShown;

class LabelEdit : public ::testing::Test {
protected:
    void SetUp() override { cad::gui::testApplication(); }

    QLineEdit* edit(CLabelEditDlg& dialog, int id) {
        return dialog.findChild<QLineEdit*>(QStringLiteral("id%1").arg(id));
    }
    void press(CLabelEditDlg& dialog, int id) {
        auto* button = dialog.findChild<QPushButton*>(QStringLiteral("id%1").arg(id));
        ASSERT_NE(button, nullptr) << id;
        button->click();
    }

    ModuleSettings settings;
    cad::app::ScriptedDialogs dialogs;
};

TEST_F(LabelEdit, EditsCarryTheirFieldsIdsInThreeGroupsUnderTheDefaultTitles) {
    settings.labels[FieldLabels::Weight] = "무게";
    CLabelEditDlg dialog(settings, dialogs);
    // Ids 272 to 290 in field order: 7 general fields, 6 user fields, 6 drawing slots.
    const auto boxes = dialog.findChildren<QGroupBox*>();
    ASSERT_EQ(boxes.size(), 3);
    for (int id = 272; id <= 290; ++id) {
        const auto index = static_cast<std::size_t>(id - 272);
        QLineEdit* line = edit(dialog, id);
        ASSERT_NE(line, nullptr) << id;
        EXPECT_EQ(line->parentWidget(), boxes[id < 279 ? 0 : id < 285 ? 1 : 2]) << id;
        EXPECT_EQ(line->accessibleName().toStdString(), FieldLabels::defaultLabel(index));
        EXPECT_EQ(line->text().toStdString(), settings.labels[index]);
    }
    EXPECT_EQ(boxes[2]->title(), QString::fromUtf8("부품도면 타이틀"));
    EXPECT_EQ(edit(dialog, 276)->text(), QString::fromUtf8("무게"));
}

TEST_F(LabelEdit, ResetWritesTheDefaultsAtOnceAndCancelKeepsThem) {
    settings.labels[FieldLabels::KName] = "이름";
    settings.labels[FieldLabels::Drawing3] = "상세도";
    CLabelEditDlg dialog(settings, dialogs);
    edit(dialog, 273)->setText(QString::fromUtf8("영문 이름"));
    press(dialog, 271);
    EXPECT_EQ(settings.labels, FieldLabels::defaults());
    EXPECT_EQ(edit(dialog, 272)->text(), QString::fromUtf8("품   명(K)"));
    EXPECT_EQ(edit(dialog, 273)->text(), QString::fromUtf8("품   명(E)"));
    EXPECT_EQ(edit(dialog, 290)->text(), QString::fromUtf8("도   면3"));

    edit(dialog, 272)->setText(QString::fromUtf8("버려질 이름"));
    press(dialog, cad::app::IDCANCEL);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(settings.labels, FieldLabels::defaults());
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(LabelEdit, ABlankTitleWarnsFocusesItsEditAndIsStoredAnyway) {
    CLabelEditDlg dialog(settings, dialogs);
    dialog.show();
    edit(dialog, 272)->setText(QString::fromUtf8("부품명"));
    edit(dialog, 276)->clear();
    press(dialog, cad::app::IDOK);

    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"빈문자열 에러: 빈 문자열은 입력할 수 없습니다. [error]"});
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.focusWidget(), edit(dialog, 276));
    FieldLabels::Texts expected = FieldLabels::defaults();
    expected[FieldLabels::KName] = "부품명";
    expected[FieldLabels::Weight] = "";
    EXPECT_EQ(settings.labels, expected);
}

TEST_F(LabelEdit, OfTwoBlankTitlesOnlyTheFirstIsReportedAndSelected) {
    CLabelEditDlg dialog(settings, dialogs);
    dialog.show();
    edit(dialog, 274)->setText(QStringLiteral("   "));  // spaces only count as blank
    edit(dialog, 281)->clear();
    press(dialog, cad::app::IDOK);

    EXPECT_EQ(dialogs.messageBoxes().size(), 1u);
    EXPECT_EQ(dialog.focusWidget(), edit(dialog, 274));
    EXPECT_EQ(edit(dialog, 274)->selectedText(), QStringLiteral("   "));
    EXPECT_EQ(settings.labels[FieldLabels::Spec], "   ");
    EXPECT_EQ(settings.labels[FieldLabels::User3], "");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

}  // namespace
}  // namespace vantor
