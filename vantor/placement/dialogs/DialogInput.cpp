// The placement dialogs' modal run and angle pick.
#include "vantor/placement/dialogs/DialogInput.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <cstdlib>
#include <vector>

#include "vantor/placement/InsertionInput.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"

namespace vantor {

int runHideable(QDialog& dialog) {
    dialog.setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    dialog.setResult(QDialog::Rejected);
    dialog.show();
    loop.exec(QEventLoop::DialogExec);
    return dialog.result();
}

namespace {

// The host's main window, by its class name: the module links none of the host's widgets,
// and the library window is a main window too, so "the first main window" would not do.
QWidget* hostWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->inherits("cad::gui::MainWindow") && top->isVisible()) return top;
    return nullptr;
}

double numberOf(const QLineEdit& edit) {
    return std::atof(edit.text().toStdString().c_str());
}

}  // namespace

bool scaleAccepted(CheckedEdit& edit, cad::app::UserDialogs& dialogs) {
    if (InsertionInput::validate(numberOf(edit), 0.0, dialogs) == InsertionInput::Field::None)
        return true;
    edit.selectForCorrection();
    return false;
}

bool angleAccepted(CheckedEdit& edit, cad::app::UserDialogs& dialogs) {
    if (InsertionInput::validate(1.0, numberOf(edit), dialogs) == InsertionInput::Field::None)
        return true;
    edit.selectForCorrection();
    return false;
}

void pickAngleInDrawing(QWidget* window, QLineEdit* edit, PlacementDialogContext& context) {
    // A dialog opened from another stands on it: both must go, or the one below still blocks
    // the drawing view. A pane of the library window (no dialog) stays: it blocks nothing.
    std::vector<QWidget*> hidden;
    for (QWidget* shown = window ? window->window() : nullptr;
         shown != nullptr && qobject_cast<QDialog*>(shown) != nullptr;
         shown = shown->parentWidget() ? shown->parentWidget()->window() : nullptr) {
        if (!shown->isVisible()) continue;
        shown->hide();
        hidden.push_back(shown);
    }
    // What the user types now goes to the host's command line.
    if (QWidget* host = hostWindow()) host->activateWindow();
    const std::string angle = InsertionInput::pickAngle(context.editor, context.settings);
    edit->setText(QString::fromStdString(angle));
    for (auto at = hidden.rbegin(); at != hidden.rend(); ++at) (*at)->show();
    if (!hidden.empty()) {
        hidden.front()->raise();
        hidden.front()->activateWindow();
    }
    edit->setFocus(Qt::OtherFocusReason);
}

}  // namespace vantor
