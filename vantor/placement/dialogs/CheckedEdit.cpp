// The checked number edit.
#include "vantor/placement/dialogs/CheckedEdit.h"

#include <QFocusEvent>

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
    emit left();
}

}  // namespace vantor
