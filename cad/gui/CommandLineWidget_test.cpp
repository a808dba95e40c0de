// The command-line window: printed text as the history shows it, typed lines and Esc.
#include "cad/gui/CommandLineWidget.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "cad/gui/TestApplication.h"

namespace cad::gui {
namespace {

class CommandLineWidgetTest : public testing::Test {
protected:
    QApplication& qt_ = testApplication();
    CommandLineWidget widget_;
};

TEST_F(CommandLineWidgetTest, PrintedPiecesJoinIntoLines) {
    widget_.write("Command: ");
    widget_.write("VNK");
    widget_.write("\n명령 중첩 에러\nCommand: ");
    EXPECT_EQ(widget_.historyText(), QString::fromUtf8("Command: VNK\n명령 중첩 에러\nCommand: "));
}

TEST_F(CommandLineWidgetTest, EnterHandsOnTheLineAndEscAsksToCancel) {
    QSignalSpy lines(&widget_, &CommandLineWidget::lineEntered);
    QSignalSpy cancels(&widget_, &CommandLineWidget::cancelRequested);
    QTest::keyClicks(widget_.inputLine(), "10,20");
    QTest::keyClick(widget_.inputLine(), Qt::Key_Return);
    QTest::keyClick(widget_.inputLine(), Qt::Key_Return);  // Enter alone
    QTest::keyClicks(widget_.inputLine(), "half typed");
    QTest::keyClick(widget_.inputLine(), Qt::Key_Escape);

    ASSERT_EQ(lines.count(), 2);
    EXPECT_EQ(lines.at(0).at(0).toString(), "10,20");
    EXPECT_EQ(lines.at(1).at(0).toString(), "");
    EXPECT_EQ(cancels.count(), 1);
    EXPECT_TRUE(widget_.inputLine()->text().isEmpty());
}

TEST_F(CommandLineWidgetTest, UndoAndRedoKeysAreTheWindowsNotTheLines) {
    // A shortcut of the window that holds the command line, as the main window's Edit menu.
    QWidget window;
    auto* line = new CommandLineWidget(&window);
    int undos = 0;
    auto* undo = new QAction(&window);
    undo->setShortcut(QKeySequence::Undo);
    QObject::connect(undo, &QAction::triggered, [&] { ++undos; });
    window.addAction(undo);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    line->inputLine()->setFocus();
    QTest::keyClicks(line->inputLine(), "_LINE");
    QTest::keyClick(line->inputLine(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(undos, 1);
    EXPECT_EQ(line->inputLine()->text(), "_LINE") << "the typed text is left alone";
}

}  // namespace
}  // namespace cad::gui
