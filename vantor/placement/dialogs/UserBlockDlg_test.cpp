// The insertion dialog driven through its widgets: the cascade through the real lists, the
// English names, the angle's range and pick, OK over the sample library, the missing block,
// the two ways out and the options dialog it opens.
#include "vantor/placement/dialogs/UserBlockDlg.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/PartPicture.h"
#include "vantor/placement/dialogs/PlacementDialogsTest.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using testing_support::boxesShown;
using testing_support::idName;

PartRecord part(std::string kname, std::string ename, std::string spec, std::string material,
                std::string block) {
    PartRecord record;
    record.loaded = true;
    record.kname = std::move(kname);
    record.ename = std::move(ename);
    record.spec = std::move(spec);
    record.material = std::move(material);
    record.viewBlocks[0] = block + "-F";
    record.viewBlocks[2] = block + "-P";
    record.viewPoints[2] = {4.0, 1.5, 0.0};
    return record;
}

QStringList itemsOf(const QComboBox* list) {
    QStringList items;
    for (int i = 0; i < list->count(); ++i) items << list->itemText(i);
    return items;
}

class UserBlock : public testing_support::PlacementDialogs {
protected:
    UserBlockInput handMade() {
        UserBlockInput input;
        input.libraryPath = "/lib/parts.dxf";
        input.records = {part("볼트", "Bolt", "M6", "SS400", "B6"),
                         part("볼트", "Bolt", "M8", "SS400", "B8"),
                         part("볼트", "Bolt", "M8", "SUS304", "B8S"),
                         part("너트", "Nut", "M10", "SS400", "N10")};
        input.lastChosen = 2;
        input.library = &emptyLibrary_;  // no blocks: "No preview", and OK finds none
        return input;
    }
    cad::db::Database emptyLibrary_;
    QPushButton* button(QWidget& dialog, int id) {
        return dialog.findChild<QPushButton*>(idName(id));
    }
};

TEST_F(UserBlock, EveryGroupIdAndTextWithCaptionsFromTheFieldTitles) {
    settings_.labels[FieldLabels::Weight] = "무  게";
    CUserBlockDlg dialog(handMade(), context_);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Vantor Library"));
    for (std::size_t k = 0; k < ChoiceCascade::kListCount; ++k) {
        auto* list = dialog.findChild<QComboBox*>(idName(491 + static_cast<int>(k)));
        ASSERT_EQ(list, dialog.list(k)) << k;
        EXPECT_EQ(list->accessibleName(), dialog.caption(k)->text());
    }
    EXPECT_EQ(dialog.caption(0)->text(), QString::fromUtf8("품   명(K) :"));
    EXPECT_EQ(dialog.caption(3)->text(), QString::fromUtf8("무  게 :"));
    EXPECT_EQ(dialog.caption(11)->text(), QStringLiteral("USER6 :"));
    EXPECT_EQ(dialog.findChild<QGroupBox*>(idName(459))->title(), QString::fromUtf8("추가 사양 선택"));
    EXPECT_EQ(dialog.list(6)->parentWidget(), dialog.findChild<QGroupBox*>(idName(459)));
    const std::pair<int, const char*> buttons[] = {{407, "데이터 보기"}, {430, "각 도 <"},
                                                   {9, "옵션설정"},      {1, "확  인"},
                                                   {8, "취   소"},        {2, "작도취소"}};
    for (auto [id, text] : buttons) {
        ASSERT_NE(button(dialog, id), nullptr) << id;
        EXPECT_EQ(button(dialog, id)->text(), QString::fromUtf8(text));
        EXPECT_EQ(button(dialog, id)->accessibleName(), QString::fromUtf8(text));
    }
    EXPECT_EQ(dialog.findChild<QCheckBox*>(idName(404))->text(), QString::fromUtf8("품명 영문 보기"));
    EXPECT_NE(dialog.findChild<QCheckBox*>(idName(428)), nullptr);
    EXPECT_EQ(dialog.findChild<CheckedEdit*>(idName(432)), dialog.angleEdit());
    EXPECT_EQ(dialog.findChild<QTreeWidget*>(idName(402)), dialog.viewList());
}

TEST_F(UserBlock, ChoosingInAListNarrowsTheListsAfterItAndTheViews) {
    CUserBlockDlg dialog(handMade(), context_);
    dialog.show();
    // The record chosen before is selected in every list.
    EXPECT_EQ(itemsOf(dialog.list(0)), (QStringList{QString::fromUtf8("너트"), QString::fromUtf8("볼트")}));
    EXPECT_EQ(dialog.list(0)->currentText(), QString::fromUtf8("볼트"));
    EXPECT_EQ(itemsOf(dialog.list(1)), (QStringList{"M6", "M8"}));
    EXPECT_EQ(dialog.list(2)->currentText(), QStringLiteral("SUS304"));
    EXPECT_EQ(dialog.viewList()->topLevelItemCount(), 2);
    EXPECT_EQ(dialog.viewList()->currentItem()->text(1), QStringLiteral("B8S-F"));
    EXPECT_EQ(dialog.picture()->block(), "B8S-F");

    // The user goes up to the nuts: the later lists hold only what nuts have.
    dialog.list(0)->setFocus();
    QTest::keyClick(dialog.list(0), Qt::Key_Up);
    EXPECT_EQ(dialog.list(0)->currentText(), QString::fromUtf8("너트"));
    EXPECT_EQ(itemsOf(dialog.list(1)), QStringList{"M10"});
    EXPECT_EQ(itemsOf(dialog.list(2)), QStringList{"SS400"});
    ASSERT_NE(dialog.cascade().chosen(), nullptr);
    EXPECT_EQ(dialog.cascade().chosen()->kname, "너트");
    EXPECT_EQ(dialog.viewList()->topLevelItem(1)->text(0), QString::fromUtf8("평 면 도"));
    EXPECT_EQ(dialog.picture()->block(), "N10-F");

    // Back to the bolts and down to M6: one material left.
    QTest::keyClick(dialog.list(0), Qt::Key_Down);
    dialog.list(1)->setFocus();
    QTest::keyClick(dialog.list(1), Qt::Key_Up);
    EXPECT_EQ(dialog.list(1)->currentText(), QStringLiteral("M6"));
    EXPECT_EQ(itemsOf(dialog.list(2)), QStringList{"SS400"});
    EXPECT_EQ(dialog.cascade().chosen()->viewBlocks[0], "B6-F");
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(UserBlock, EnglishNamesSwitchTheCaptionAndTheFirstList) {
    CUserBlockDlg dialog(handMade(), context_);
    dialog.show();
    QTest::mouseClick(dialog.findChild<QCheckBox*>(idName(404)), Qt::LeftButton);
    EXPECT_EQ(dialog.caption(0)->text(), QString::fromUtf8("품   명(E) :"));
    EXPECT_EQ(itemsOf(dialog.list(0)), (QStringList{"Bolt", "Nut"}));
    EXPECT_EQ(dialog.list(0)->currentText(), QStringLiteral("Bolt"));
    EXPECT_EQ(dialog.list(2)->currentText(), QStringLiteral("SUS304"));  // the choice survives
}

TEST_F(UserBlock, AnAngleOutOfRangeIsRefusedAndSelectedForCorrection) {
    settings_.drawAngle = "0.00";
    UserBlockInput input = handMade();
    CUserBlockDlg dialog(input, context_);
    dialog.show();
    dialog.angleEdit()->setText(QStringLiteral("400"));
    button(dialog, 1)->click();
    EXPECT_EQ(boxesShown(dialogs_),
              std::vector<std::string>{"입력 에러: Sorry, Range = -360 to 360 [error]"});
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.focusWidget(), dialog.angleEdit());
    EXPECT_EQ(dialog.angleEdit()->selectedText(), QStringLiteral("400"));
    EXPECT_EQ(settings_.drawAngle, "0.00");
}

TEST_F(UserBlock, AnglePickedInTheDrawingOrTheStoredOneBackOnCancel) {
    settings_.drawAngle = "12.50";
    CUserBlockDlg dialog(handMade(), context_);
    dialog.show();
    for (auto [line, expected] : {std::pair{"<esc>", "12.50"}, std::pair{"30", "30.000"}}) {
        dialog.angleEdit()->setText(QStringLiteral("77"));
        scriptInput(line);
        button(dialog, 430)->click();
        EXPECT_EQ(dialog.angleEdit()->text(), QString::fromLatin1(expected)) << line;
        EXPECT_TRUE(dialog.isVisible()) << line;
    }
    EXPECT_NE(editor_.commandLine().text().find("Angle: "), std::string::npos);
    EXPECT_EQ(settings_.drawAngle, "12.50");  // kept only on OK
}

TEST_F(UserBlock, OkOverTheSampleLibraryHandsBackTheChosenViewBlock) {
    UserBlockInput input;
    input.records = sampleBolts();
    ASSERT_EQ(input.records.size(), 6u);
    input.libraryPath = samplePath();
    input.library = library_.get();
    input.lastChosen = 2;
    input.lastBlock = "HB-M10X40-P";
    input.scale = 2.0;
    settings_.option = DrawingOptions::kGroup;
    CUserBlockDlg dialog(input, context_);
    dialog.show();
    EXPECT_EQ(dialog.viewList()->currentItem()->text(1), QStringLiteral("HB-M10X40-P"));
    EXPECT_FALSE(dialog.picture()->picture().isNull());

    dialog.angleEdit()->setText(QStringLiteral("45"));
    QTest::mouseClick(dialog.findChild<QCheckBox*>(idName(428)), Qt::LeftButton);
    button(dialog, 1)->click();
    EXPECT_TRUE(dialogs_.calls().empty());
    EXPECT_EQ(dialog.ending(), CUserBlockDlg::Ending::Ok);
    EXPECT_EQ(dialog.choice().blockName, "HB-M10X40-P");
    EXPECT_EQ(dialog.choice().view, 2u);
    EXPECT_EQ(dialog.choice().record.spec, "M10x40");
    EXPECT_EQ(dialog.choice().scale, 2.0);
    EXPECT_EQ(settings_.drawAngle, "45");
    EXPECT_EQ(settings_.option, DrawingOptions::kGroup | DrawingOptions::kFixedAngle);
}

TEST_F(UserBlock, ABlockTheLibraryLacksIsReportedAndTheDialogStays) {
    CUserBlockDlg dialog(handMade(), context_);
    dialog.show();
    button(dialog, 1)->click();
    EXPECT_EQ(boxesShown(dialogs_),
              std::vector<std::string>{
                  "블록 삽입 에러: 도면 내에 해당 블록이 존재하지 않습니다. [error]"});
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(UserBlock, CancelClosesOnlyAndCancelDrawingEndsThePlacementBothStoringNothing) {
    for (auto [id, ending] : {std::pair{8, CUserBlockDlg::Ending::Cancel},
                              std::pair{2, CUserBlockDlg::Ending::CancelDrawing}}) {
        CUserBlockDlg dialog(handMade(), context_);
        dialog.show();
        dialog.angleEdit()->setText(QStringLiteral("400"));
        QTest::mouseClick(dialog.findChild<QCheckBox*>(idName(404)), Qt::LeftButton);
        button(dialog, id)->click();
        EXPECT_EQ(dialog.ending(), ending) << id;
        EXPECT_FALSE(dialog.isVisible()) << id;
    }
    EXPECT_EQ(settings_.drawAngle, "0.00");
    EXPECT_EQ(settings_.option, 3073);
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(UserBlock, OptionSettingsOpensTheOptionsDialogWhoseOkIsKeptAtOnce) {
    settings_.option = 0;
    CUserBlockDlg dialog(handMade(), context_);
    dialog.show();
    testing_support::whenModal([](QDialog& options) {
        EXPECT_EQ(options.windowTitle(), QString::fromUtf8("작도 옵션"));
        options.findChild<QCheckBox*>(idName(256))->setChecked(true);
        options.findChild<QCheckBox*>(idName(428))->setChecked(true);
        options.findChild<QLineEdit*>(idName(432))->setText(QStringLiteral("-90"));
        testing_support::press(options, "id1");
    });
    button(dialog, 9)->click();
    EXPECT_EQ(settings_.option, DrawingOptions::kExplode | DrawingOptions::kFixedAngle);
    EXPECT_EQ(settings_.drawAngle, "-90");
    EXPECT_TRUE(dialog.findChild<QCheckBox*>(idName(428))->isChecked());
    EXPECT_EQ(dialog.angleEdit()->text(), QStringLiteral("-90"));
}

}  // namespace
}  // namespace vantor
