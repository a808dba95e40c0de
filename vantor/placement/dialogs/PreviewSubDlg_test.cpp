// The preview pane's controls and the drawing-options dialog: the option bits each check box
// owns (others kept), the scale refused on leaving its edit, the pane's insert checking first.
#include "vantor/placement/dialogs/PreviewSubDlg.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

#include "vantor/host/InsertionStates.h"
#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/DrawOptionDlg.h"
#include "vantor/placement/dialogs/InsertionFlow.h"
#include "vantor/placement/dialogs/PlacementDialogsTest.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using testing_support::boxesShown;
using testing_support::idName;

const std::string kScaleRefused = "입력 에러: Sorry, Range = 0.00000001 to 100000000.0 [error]";

class PreviewPane : public testing_support::PlacementDialogs {};

TEST_F(PreviewPane, CheckBoxesWriteTheirBitsOnlyAndShowTheSettingsAgainOnRefresh) {
    settings_.option = DrawingOptions::kGroup | DrawingOptions::kShowCoordinates;
    settings_.drawAngle = "15.00";
    CPreviewSubDlg pane(context_);
    pane.show();
    EXPECT_TRUE(pane.optionBox(DrawingOptions::kGroup)->isChecked());
    EXPECT_EQ(pane.optionBox(DrawingOptions::kGroup)->text(), QString::fromUtf8("그룹화"));
    EXPECT_EQ(pane.optionBox(DrawingOptions::kExplode)->text(), QString::fromUtf8("분   해"));
    EXPECT_EQ(pane.angleEdit()->text(), QStringLiteral("15.00"));
    EXPECT_EQ(pane.scale(), 1.0);

    QTest::mouseClick(pane.optionBox(DrawingOptions::kMirrorY), Qt::LeftButton);
    QTest::mouseClick(pane.optionBox(DrawingOptions::kGroup), Qt::LeftButton);
    EXPECT_EQ(settings_.option, DrawingOptions::kMirrorY | DrawingOptions::kShowCoordinates);

    settings_.option = DrawingOptions::kInfoPoint;
    settings_.drawAngle = "-45.000";
    pane.refresh();
    EXPECT_TRUE(pane.optionBox(DrawingOptions::kInfoPoint)->isChecked());
    EXPECT_FALSE(pane.optionBox(DrawingOptions::kMirrorY)->isChecked());
    EXPECT_EQ(pane.angleEdit()->text(), QStringLiteral("-45.000"));
    EXPECT_EQ(settings_.option, DrawingOptions::kInfoPoint);  // refreshing wrote nothing back
}

TEST_F(PreviewPane, AScaleOfZeroIsRefusedOnLeavingItsEditAndSelected) {
    CPreviewSubDlg pane(context_);
    pane.show();
    pane.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    pane.scaleEdit()->setFocus();
    pane.scaleEdit()->selectAll();
    QTest::keyClicks(pane.scaleEdit(), "2.5");
    pane.angleEdit()->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    EXPECT_EQ(pane.scale(), 2.5);
    EXPECT_TRUE(dialogs_.calls().empty());

    pane.scaleEdit()->setFocus(Qt::TabFocusReason);
    pane.scaleEdit()->selectAll();
    QTest::keyClicks(pane.scaleEdit(), "0");
    pane.angleEdit()->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    EXPECT_EQ(boxesShown(dialogs_), std::vector<std::string>{kScaleRefused});
    EXPECT_EQ(QApplication::focusWidget(), pane.scaleEdit());
    EXPECT_EQ(pane.scaleEdit()->selectedText(), QStringLiteral("0"));
    EXPECT_EQ(pane.scale(), 2.5);  // the last accepted scale stays
}

TEST_F(PreviewPane, InsertChecksTheEditsBeforeAnythingIsQueued) {
    CPreviewSubDlg pane(context_);
    pane.show();
    InsertionStates states;
    pane.scaleEdit()->setText(QStringLiteral("0"));
    EXPECT_FALSE(pane.OnInsertBlock({"/lib/parts.dxf", "B-F", {}, 1.0, 0}, states));
    pane.scaleEdit()->setText(QStringLiteral("1"));
    pane.angleEdit()->setText(QStringLiteral("400"));
    EXPECT_FALSE(pane.OnInsertBlock({"/lib/parts.dxf", "B-F", {}, 1.0, 0}, states));
    EXPECT_EQ(boxesShown(dialogs_),
              (std::vector<std::string>{kScaleRefused,
                                        "입력 에러: Sorry, Range = -360 to 360 [error]"}));
    EXPECT_EQ(pane.angleEdit()->selectedText(), QStringLiteral("400"));
    EXPECT_EQ(states.size(), 0u);
}

TEST_F(PreviewPane, TheAnglePickTwinWritesTheAngleAndKeepsIt) {
    CPreviewSubDlg pane(context_);
    pane.show();
    scriptInput("90");
    pane.anglePick()->click();
    EXPECT_EQ(pane.angleEdit()->text(), QStringLiteral("90.000"));
    EXPECT_EQ(settings_.drawAngle, "90.000");
    EXPECT_TRUE(pane.isVisible());  // a pane of the library window blocks nothing: it stays
}

TEST_F(PreviewPane, OptionsDialogMapsItsIdsToBitsAndKeepsTheOthers) {
    const int others = DrawingOptions::kEnglishName | 0x4000;
    CDrawOptionDlg dialog({others | DrawingOptions::kShowCoordinates | DrawingOptions::kGroup, "10"},
                          context_);
    dialog.show();
    const std::pair<int, int> boxes[] = {
        {256, DrawingOptions::kExplode},   {257, DrawingOptions::kGroup},
        {260, DrawingOptions::kMirrorX},   {261, DrawingOptions::kMirrorY},
        {262, DrawingOptions::kInfoPoint}, {263, DrawingOptions::kShowCoordinates},
        {264, DrawingOptions::kShowSpecification}, {428, DrawingOptions::kFixedAngle}};
    for (auto [id, bit] : boxes) {
        auto* box = dialog.findChild<QCheckBox*>(idName(id));
        ASSERT_NE(box, nullptr) << id;
        QTest::mouseClick(box, Qt::LeftButton);
        // Each click flips its own bit and no other.
        EXPECT_EQ((dialog.values().option ^ (others | DrawingOptions::kShowCoordinates |
                                              DrawingOptions::kGroup)) & bit, bit) << id;
        QTest::mouseClick(box, Qt::LeftButton);
    }
    QTest::mouseClick(dialog.findChild<QCheckBox*>(idName(263)), Qt::LeftButton);
    EXPECT_EQ(dialog.values().option, others | DrawingOptions::kGroup);

    auto* angle = dialog.findChild<CheckedEdit*>(idName(432));
    angle->setText(QStringLiteral("-400"));
    dialog.findChild<QPushButton*>(idName(1))->click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(boxesShown(dialogs_),
              std::vector<std::string>{"입력 에러: Sorry, Range = -360 to 360 [error]"});
    angle->setText(QStringLiteral("-360"));
    dialog.findChild<QPushButton*>(idName(1))->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.values().angle, "-360");
}

}  // namespace
}  // namespace vantor
