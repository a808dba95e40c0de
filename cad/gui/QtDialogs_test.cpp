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

struct BoxCase {
    const char* name;
    unsigned flags;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon;
    int closedAnswer;  // the box closed without a button
};

class MessageBoxFlags : public testing::TestWithParam<BoxCase> {};

TEST_P(MessageBoxFlags, MapToButtonsIconAndTheAnswerOfClosing) {
    EXPECT_EQ(QtDialogs::buttonsFor(GetParam().flags), GetParam().buttons);
    EXPECT_EQ(QtDialogs::iconFor(GetParam().flags), GetParam().icon);
    EXPECT_EQ(QtDialogs::answerFor(QMessageBox::NoButton, GetParam().flags),
              GetParam().closedAnswer);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, MessageBoxFlags,
    testing::Values(BoxCase{"okError", app::MB_OK | app::MB_ICONERROR, QMessageBox::Ok,
                            QMessageBox::Critical, IDOK},
                    BoxCase{"okCancelQuestion", app::MB_OKCANCEL | app::MB_ICONQUESTION,
                            QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Question, IDCANCEL},
                    BoxCase{"yesNoWarning", app::MB_YESNO | app::MB_ICONWARNING,
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning, IDNO},
                    BoxCase{"yesNoCancelInformation", app::MB_YESNOCANCEL | app::MB_ICONINFORMATION,
                            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                            QMessageBox::Information, IDCANCEL},
                    BoxCase{"plain", 0, QMessageBox::Ok, QMessageBox::NoIcon, IDOK}),
    [](const testing::TestParamInfo<BoxCase>& row) { return row.param.name; });

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
