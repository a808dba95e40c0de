// The data dialog offscreen: its pages' ids and titles by mode, the required fields refused
// on the general page with the focus on the field, the slots cleared, the drawing-kind choice.
#include "vantor/authoring/dialogs/DataPropertyDlg.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabWidget>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "vantor/authoring/dialogs/DrawKindDlg.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using testing_support::boxesShown;

class DataProperty : public ::testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        labels = FieldLabels::defaults();
        labels[FieldLabels::KName] = "부품명";
        labels[FieldLabels::User2] = "납기";
        labels[FieldLabels::Drawing1] = "조립도";
    }
    template <class T = QWidget>
    static T* control(QWidget& dialog, int id) {
        return dialog.findChild<T*>(QStringLiteral("id%1").arg(id));
    }
    static QString text(QWidget& dialog, int id) { return control<QLabel>(dialog, id)->text(); }

    FieldLabels::Texts labels;
    cad::app::ScriptedDialogs dialogs;
};

TEST_F(DataProperty, PagesShowTheUsersTitlesAndTheModeDecidesTitleAndModifyButton) {
    PartDataEntry entry;
    CDataPropertyDlg adding(entry, labels, dialogs);
    EXPECT_EQ(adding.windowTitle(), QString::fromUtf8("사용자 데이터 추가"));
    EXPECT_FALSE(control<QPushButton>(adding, 1)->isEnabled());
    EXPECT_TRUE(control<QPushButton>(adding, 1001)->isEnabled());
    QTabWidget* tabs = control<QTabWidget>(adding, 436);
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(2), QString::fromUtf8("도면 정보"));
    EXPECT_EQ(text(adding, 464), QString::fromUtf8("그 룹 :"));
    EXPECT_EQ(text(adding, 466), QString::fromUtf8("부품명 :"));
    EXPECT_EQ(text(adding, 477), QString::fromUtf8("비   고 :"));
    EXPECT_EQ(text(adding, 481), QString::fromUtf8("납기 :"));
    EXPECT_EQ(text(adding, 503), QString::fromUtf8("조립도 :"));
    EXPECT_EQ(control(adding, 454)->parentWidget(), tabs->widget(0));
    EXPECT_EQ(control(adding, 473)->parentWidget(), tabs->widget(1));
    EXPECT_EQ(control(adding, 462)->parentWidget(), tabs->widget(2));

    entry.mode = PartDataEntry::Mode::Modify;
    entry.record.group = "육각볼트";
    entry.record.material = "SS400";
    entry.record.user[5] = "납기 2주";
    entry.record.viewBlocks[4] = "BOLT-D2";
    CDataPropertyDlg changing(entry, labels, dialogs);
    EXPECT_EQ(changing.windowTitle(), QString::fromUtf8("사용자 데이터 수정"));
    EXPECT_TRUE(control<QPushButton>(changing, 1)->isEnabled());
    EXPECT_EQ(control<QLineEdit>(changing, 403)->text(), QString::fromUtf8("육각볼트"));
    EXPECT_EQ(control<QLineEdit>(changing, 443)->text(), QStringLiteral("SS400"));
    EXPECT_EQ(control<QLineEdit>(changing, 473)->text(), QString::fromUtf8("납기 2주"));
    EXPECT_EQ(control<QLineEdit>(changing, 414)->text(), QStringLiteral("BOLT-D2"));
    // What is typed comes back in the record's own fields.
    control<QLineEdit>(changing, 445)->setText(QStringLiteral("0.5"));
    control<QLineEdit>(changing, 463)->setText(QStringLiteral("A"));
    const PartDataEntry back = changing.entry();
    EXPECT_EQ(back.record.weight, "0.5");
    EXPECT_EQ(back.record.user[0], "A");
    EXPECT_EQ(back.record.material, "SS400");
}

TEST_F(DataProperty, ABlankRequiredFieldIsRefusedOnTheGeneralPageWithItsEditSelected) {
    const struct {
        const char* name;
        const char* group;
        const char* kname;
        const char* ename;
        int focused;
        const char* message;
    } rows[] = {
        {"group of spaces", "   ", "육각볼트", "", 403,
         "빈문자열 에러: \"그 룹\"을(를) 반드시 입력하십시오. [error]"},
        {"Korean name empty, English set", "볼트", "", "Bolt", 438,
         "빈문자열 에러: \"부품명\"을(를) 반드시 입력하십시오. [error]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        dialogs.clearCalls();
        int stored = 0;
        CDataPropertyDlg dialog(PartDataEntry{}, labels, dialogs);
        dialog.setStoreHandler([&](CDataPropertyDlg::StoreAction, const PartRecord&) {
            ++stored;
            return true;
        });
        dialog.show();
        control<QLineEdit>(dialog, 403)->setText(QString::fromUtf8(row.group));
        control<QLineEdit>(dialog, 438)->setText(QString::fromUtf8(row.kname));
        control<QLineEdit>(dialog, 441)->setText(QString::fromUtf8(row.ename));
        dialog.tabs()->setCurrentIndex(2);
        control<QPushButton>(dialog, 1001)->click();

        EXPECT_EQ(boxesShown(dialogs), std::vector<std::string>{row.message});
        EXPECT_EQ(stored, 0);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.tabs()->currentIndex(), 0);
        auto* focused = control<QLineEdit>(dialog, row.focused);
        EXPECT_EQ(dialog.focusWidget(), focused);
        EXPECT_EQ(focused->selectedText(), focused->text());
    }
}

TEST_F(DataProperty, AStoreThatFailsKeepsTheDialogOpenAndXEmptiesASlot) {
    PartDataEntry entry;
    entry.mode = PartDataEntry::Mode::Modify;
    entry.record.group = "볼트";
    entry.record.kname = "볼트";
    entry.record.viewBlocks[1] = "BOLT-S";
    entry.record.viewPoints[1] = {5, 1, 0};
    entry.basePoints[1] = {2, 2, 0};
    CDataPropertyDlg dialog(entry, labels, dialogs);
    std::vector<CDataPropertyDlg::StoreAction> asked;
    dialog.setStoreHandler([&](CDataPropertyDlg::StoreAction action, const PartRecord&) {
        asked.push_back(action);
        return false;
    });
    dialog.show();
    // Hidden for a capture and back, the dialog is still running.
    QSignalSpy finished(&dialog, &QDialog::finished);
    const CallerWindow caller = dialog.callerWindow();
    caller.hide();
    EXPECT_FALSE(dialog.isVisible());
    caller.show();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(finished.count(), 0);
    control<QPushButton>(dialog, 452)->click();  // the front view holds nothing: no change
    EXPECT_EQ(dialog.entry().record.viewBlocks, entry.record.viewBlocks);
    control<QPushButton>(dialog, 455)->click();
    const PartDataEntry cleared = dialog.entry();
    EXPECT_EQ(cleared.record.viewBlocks[1], "");
    EXPECT_TRUE(cleared.record.viewPoints[1].isEqualTo({0, 0, 0}));
    EXPECT_TRUE(cleared.basePoints[1].isEqualTo({0, 0, 0}));
    EXPECT_EQ(control<QLineEdit>(dialog, 409)->text(), QString());

    control<QPushButton>(dialog, 1)->click();
    control<QPushButton>(dialog, 1001)->click();
    EXPECT_EQ(asked, (std::vector{CDataPropertyDlg::StoreAction::Modify,
                                  CDataPropertyDlg::StoreAction::Add}));
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(DataProperty, DrawKindDialogAnswersTheSlotChosenOrNothing) {
    testing_support::whenModal([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QString::fromUtf8("도면 형태 지정"));
        auto* planView = control<QRadioButton>(dialog, 431);
        EXPECT_TRUE(planView->isChecked());  // the slot it was opened with
        control<QRadioButton>(dialog, 434)->click();
        testing_support::press(dialog, "id1");
    });
    EXPECT_EQ(CDrawKindDlg::choose(nullptr, 2), std::optional<std::size_t>(4));

    testing_support::whenModal([](QDialog& dialog) {
        EXPECT_EQ(control<QRadioButton>(dialog, 427)->text(), QString::fromUtf8("정면도"));
        testing_support::press(dialog, "id2");
    });
    EXPECT_EQ(CDrawKindDlg::choose(nullptr), std::nullopt);
}

}  // namespace
}  // namespace vantor
