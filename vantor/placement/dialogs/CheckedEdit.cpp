// The checked number edit.
#include "vantor/placement/dialogs/CheckedEdit.h"

#include <QFocusEvent>
#include <QTimer>

namespace vantor {

CheckedEdit::CheckedEdit(QWidget* parent) : QLineEdit(parent) {}

void CheckedEdit::selectForCorrection() {
    setFocus(Qt::OtherFocusReason);
    selectAll();
}

void CheckedEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
    // Checked once the click that took the focus is done: a message box in the middle of it
    // would leave the button half pressed. By then the window may have closed (OK or cancel
    // did their own check) or the edit be back in focus (a refused OK selected it): nothing to
    // check then.
    QTimer::singleShot(0, this, [this] {
        if (!hasFocus() && window()->isVisible()) emit left();
    });
}

}  // namespace vantor
