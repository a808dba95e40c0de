// For tests: answering a modal dialog that the code under test opens and waits for.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <functional>

namespace vantor::testing_support {

// Once the event loop runs, hands the modal dialog then shown to `act`, which fills it and
// presses its buttons. A dialog that stays open after `act` is rejected, so a test never hangs.
inline void whenModal(std::function<void(QDialog&)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            ADD_FAILURE() << "no modal dialog is shown";
            return;
        }
        act(*dialog);
        if (dialog->isVisible()) dialog->reject();
    });
}

inline void press(QDialog& dialog, const char* objectName) {
    auto* button = dialog.findChild<QPushButton*>(objectName);
    ASSERT_NE(button, nullptr) << objectName;
    button->click();
}

}  // namespace vantor::testing_support
