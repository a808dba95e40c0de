// The Qt dialogs: message-box flags to buttons and icons and back to the Win32 answers, a
// real box answered by a click, and the progress dialog.
#include "cad/gui/QtDialogs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTimer>

#include "cad/gui/ProgressDialog.h"
#include "cad/gui/TestApplication.h"

namespace cad::gui {
namespace {

using app::IDCANCEL;
using app::IDNO;
using app::IDOK;
using app::IDYES;

TEST(QtDialogs, FlagsMapToButtonsIconAndTheAnswerOfClosingTheBox) {
    using Box = QMessageBox;
    const struct {
        unsigned flags;
        Box::StandardButtons buttons;
        Box::Icon icon;
        int closedAnswer;  // the box closed without a button
    } rows[] = {
        // clang-format off
        {app::MB_OK | app::MB_ICONERROR, Box::Ok, Box::Critical, IDOK},
        {app::MB_OKCANCEL | app::MB_ICONQUESTION, Box::Ok | Box::Cancel, Box::Question, IDCANCEL},
        {app::MB_YESNO | app::MB_ICONWARNING, Box::Yes | Box::No, Box::Warning, IDNO},
        {app::MB_YESNOCANCEL | app::MB_ICONINFORMATION, Box::Yes | Box::No | Box::Cancel,
         Box::Information, IDCANCEL},
        {0, Box::Ok, Box::NoIcon, IDOK},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.flags);
        EXPECT_EQ(QtDialogs::buttonsFor(row.flags), row.buttons);
        EXPECT_EQ(QtDialogs::iconFor(row.flags), row.icon);
        EXPECT_EQ(QtDialogs::answerFor(Box::NoButton, row.flags), row.closedAnswer);
    }
}

TEST(QtDialogs, ClickedButtonsAnswerWithWin32Values) {
    testApplication();
    QtDialogs dialogs;
    for (auto [button, expected] : {std::pair{QMessageBox::Yes, IDYES},
                                    {QMessageBox::No, IDNO},
                                    {QMessageBox::Cancel, IDCANCEL}}) {
        QString shownText;
        QTimer::singleShot(0, [&, button = button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            shownText = box->windowTitle() + "|" + box->text();
            box->button(button)->click();
        });
        EXPECT_EQ(dialogs.messageBox("도면을 저장할까요?\n두번째 줄", "확인",
                                     app::MB_YESNOCANCEL | app::MB_ICONQUESTION),
                  expected);
        EXPECT_EQ(shownText, QString::fromUtf8("확인|도면을 저장할까요?\n두번째 줄"));
    }
}

TEST(QtDialogs, ProgressShowsStatusAndPositionUntilHidden) {
    testApplication();
    QtDialogs dialogs;
    EXPECT_EQ(dialogs.progressDialog(), nullptr);
    dialogs.progressShow();
    dialogs.progressRange(0, 40);
    dialogs.progressText("도면 읽는 중");
    dialogs.progressPosition(10);
    ProgressDialog* dialog = dialogs.progressDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->status(), QString::fromUtf8("도면 읽는 중"));
    EXPECT_EQ(dialog->position(), 10);
    dialogs.progressHide();
    EXPECT_FALSE(dialog->isVisible());
}

}  // namespace
}  // namespace cad::gui
