// A number edit that says when the user leaves it, so its value is checked at once and the
// user is sent back to it with the whole text selected.
#pragma once

#include <QLineEdit>

namespace vantor {

class CheckedEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit CheckedEdit(QWidget* parent = nullptr);

    // Focus, the whole text selected and in view: the user types the correction over it.
    void selectForCorrection();

signals:
    // The user moved the focus elsewhere in the same window (told once events are handled).
    // Leaving because a message box or another window took over is no leaving: the check's own
    // message would otherwise check again.
    void left();

protected:
    void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace vantor
