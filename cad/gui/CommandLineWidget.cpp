// The command-line window.
#include "cad/gui/CommandLineWidget.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include "cad/ed/CommandLine.h"

namespace cad::gui {

CommandLineWidget::CommandLineWidget(QWidget* parent)
    : QWidget(parent), history_(new QPlainTextEdit(this)), input_(new QLineEdit(this)) {
    history_->setReadOnly(true);
    history_->setFocusPolicy(Qt::NoFocus);
    history_->setMaximumBlockCount(static_cast<int>(ed::CommandLine::kHistoryLines));
    history_->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont fixed("Monospace");
    fixed.setStyleHint(QFont::TypeWriter);
    history_->setFont(fixed);
    input_->setFont(fixed);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(history_);
    layout->addWidget(input_);

    input_->installEventFilter(this);
    connect(input_, &QLineEdit::returnPressed, this, [this] {
        QString line = input_->text();
        input_->clear();
        emit lineEntered(line);
    });
}

void CommandLineWidget::write(std::string_view text) {
    QTextCursor cursor(history_->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    history_->verticalScrollBar()->setValue(history_->verticalScrollBar()->maximum());
}

QString CommandLineWidget::historyText() const {
    return history_->toPlainText();
}

bool CommandLineWidget::eventFilter(QObject* watched, QEvent* event) {
    // Undo and redo belong to the drawing, not to the few letters typed here: the line lets
    // the window's shortcuts have them, as the command line is where the keyboard usually is.
    if (watched == input_ && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo) ||
            key->keyCombination() == QKeyCombination(Qt::ControlModifier, Qt::Key_Y)) {
            event->ignore();
            return true;
        }
    }
    if (watched == input_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        input_->clear();
        emit cancelRequested();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace cad::gui
