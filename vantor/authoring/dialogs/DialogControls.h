// Controls made the one way every authoring dialog makes them: the visible text as the
// accessible name and the control's id as "id<N>", so tests and assistive tools find them.
#pragma once

#include <QLabel>
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

}  // namespace vantor::authoring_controls
