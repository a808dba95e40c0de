// Controls made the one way every authoring dialog makes them: the visible text as the
// accessible name and the control's id as "id<N>", so tests and assistive tools find them.
#pragma once

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <string_view>

namespace vantor::authoring_controls {

inline QString qText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QPushButton* button(const QString& text, int id, QWidget* parent) {
    auto* made = new QPushButton(text, parent);
    made->setObjectName(QStringLiteral("id%1").arg(id));
    made->setAccessibleName(text);
    made->setAutoDefault(false);
    return made;
}

inline QLabel* title(const QString& text, int id, QWidget* parent) {
    auto* made = new QLabel(text, parent);
    made->setObjectName(QStringLiteral("id%1").arg(id));
    made->setAccessibleName(text);
    return made;
}

// An edit is named by the title beside it, without the " :".
inline QLineEdit* edit(const QString& name, int id, QWidget* parent) {
    auto* made = new QLineEdit(parent);
    made->setObjectName(QStringLiteral("id%1").arg(id));
    made->setAccessibleName(name);
    return made;
}

// A field's title on the pages: its label followed by " :".
inline QString fieldTitle(std::string_view label) { return qText(label) + QStringLiteral(" :"); }

// Gives the focus to the host's main window (the first visible one left once the caller
// hid), so that what the user types next goes to its command line.
inline void activateHostWindow() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMainWindow*>(top) && top->isVisible()) {
            top->activateWindow();
            return;
        }
    }
}

}  // namespace vantor::authoring_controls
