// Handing the chosen part to UBLI: the state filled and the command queued after the dialog's
// OK, the guard and the file-name refusals leaving the state alone, and the dialog shown again
// in the middle of a drag with what each of its endings leaves.
#include "vantor/placement/dialogs/InsertionFlow.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTest>

#include "cad/app/Application.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/placement/dialogs/PlacementDialogsTest.h"
#include "vantor/placement/dialogs/UserBlockDlg.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using testing_support::boxesShown;
using testing_support::press;
using testing_support::whenModal;

class InsertFlow : public testing_support::PlacementDialogs {
protected:
    void SetUp() override {
        PlacementDialogs::SetUp();
        const std::string drawing = folder_.filePath("current.dxf").toStdString();
        ASSERT_EQ(cad::db::Database().saveAs(drawing), cad::ErrorStatus::eOk);
        ASSERT_EQ(docs().appContextOpenDocument(drawing), cad::ErrorStatus::eOk);
        cad::app::setUserDialogs(&dialogs_);
    }
    void TearDown() override { cad::app::setUserDialogs(nullptr); }

    cad::app::DocumentManager& docs() { return app_.documentManager(); }
    std::vector<std::string> queued() {
        std::vector<std::string> texts;
        std::string text;
        bool echo = false;
        while (docs().popQueuedString(text, echo)) texts.push_back(text);
        return texts;
    }
    InsertionState& state() { return states_.of(docs().curDocument()); }

    cad::app::Application app_;
    InsertionStates states_;
};

TEST_F(InsertFlow, OkInTheDialogFillsTheDocumentsStateAndQueuesTheInsertion) {
    UserBlockInput input;
    input.records = sampleBolts();
    input.libraryPath = samplePath();
    input.library = library_.get();
    input.lastChosen = 4;
    input.scale = 3.0;
    whenModal([](QDialog& dialog) { press(dialog, "id1"); });
    ASSERT_TRUE(insertWithDialog(nullptr, input, context_, states_, 1));

    EXPECT_EQ(queued(), std::vector<std::string>{"_UBLI\n"});
    EXPECT_EQ(state().libraryPath, samplePath());
    EXPECT_EQ(state().blockName, "HB-M16X60-F");
    EXPECT_EQ(state().record.spec, "M16x60");
    EXPECT_EQ(state().scale, 3.0);
    EXPECT_EQ(state().insertMode, 1);
    EXPECT_TRUE(dialogs_.calls().empty());

    // Leaving the dialog otherwise queues nothing.
    whenModal([](QDialog& dialog) { press(dialog, "id8"); });
    EXPECT_FALSE(insertWithDialog(nullptr, input, context_, states_));
    EXPECT_TRUE(queued().empty());
}

TEST_F(InsertFlow, RefusalsQueueNothingAndLeaveTheRunningPartAlone) {
    state().blockName = "RUNNING";
    const InsertRequest request{"/lib/parts.dxf", "NEW-F", {}, 1.0, 0};
    docs().commandStarted(docs().curDocument());
    EXPECT_FALSE(OnInsertBlock(request, settings_, states_));
    docs().commandFinished(docs().curDocument());
    settings_.commandBusy = true;
    EXPECT_FALSE(OnInsertBlock(request, settings_, states_));
    settings_.commandBusy = false;
    EXPECT_FALSE(OnInsertBlock({"", "NEW-F", {}, 1.0, 0}, settings_, states_));

    EXPECT_EQ(boxesShown(dialogs_),
              (std::vector<std::string>{
                  "명령 중첩 에러: AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 종료하신 "
                  "후 다시 시도해 주십시오. [error]",
                  "INSERT PROCESSING: 현재 명령실행 중입니다. [error]",
                  "파일 이름 확인 에러: 파일이름을 가져올 수 없습니다.\nCPreviewSubDlg::"
                  "OnInsertBlock(UINT nID, UINT) ERROR [error]"}));
    EXPECT_TRUE(queued().empty());
    EXPECT_EQ(state().blockName, "RUNNING");
}

TEST_F(InsertFlow, ReopenedDialogOnTheGroupOfThePartBeingPlaced) {
    const std::vector<PartRecord> bolts = sampleBolts();
    ASSERT_EQ(bolts.size(), 6u);
    InsertionState placing;
    placing.libraryPath = samplePath();
    placing.record = bolts[1];
    placing.blockName = bolts[1].viewBlocks[2];
    placing.scale = 2.0;
    placing.outcome = InsertionState::kOutcomeSetting;
    library_.reset();  // the hook reads the drawing itself

    // OK on another size: the state takes it.
    whenModal([](QDialog& dialog) {
        auto& shown = static_cast<CUserBlockDlg&>(dialog);
        EXPECT_EQ(shown.list(1)->currentText(), QStringLiteral("M8x30"));
        EXPECT_EQ(shown.list(1)->count(), 6);
        shown.list(1)->setFocus();
        QTest::keyClick(shown.list(1), Qt::Key_Down);
        press(dialog, "id1");
    });
    EXPECT_TRUE(reopenUserBlockDlg(placing, context_));
    EXPECT_EQ(placing.record.spec, "M10x40");
    EXPECT_EQ(placing.blockName, "HB-M10X40-P");  // the plan view row, as before
    EXPECT_EQ(placing.scale, 2.0);

    // "취   소": the same part is dragged again.
    whenModal([](QDialog& dialog) { press(dialog, "id8"); });
    EXPECT_TRUE(reopenUserBlockDlg(placing, context_));
    EXPECT_EQ(placing.blockName, "HB-M10X40-P");
    EXPECT_EQ(placing.outcome, InsertionState::kOutcomeSetting);

    // "작도취소": the placement ends as cancelled.
    whenModal([](QDialog& dialog) { press(dialog, "id2"); });
    EXPECT_FALSE(reopenUserBlockDlg(placing, context_));
    EXPECT_EQ(placing.outcome, InsertionState::kOutcomeCancelled);
    EXPECT_TRUE(dialogs_.calls().empty());
}

}  // namespace
}  // namespace vantor
