// The command-line window: the history of everything printed on the command line above, and
// the line the user types into below. Enter hands the typed line on (an empty line is Enter
// alone), Esc asks to cancel; Ctrl+Z and Ctrl+Y are left to the window (undo of the drawing).
#pragma once

#include <QWidget>
#include <string_view>

#include "cad/ed/CommandLineSink.h"

class QLineEdit;
class QPlainTextEdit;

namespace cad::gui {

class CommandLineWidget : public QWidget, public ed::CommandLineSink {
    Q_OBJECT
public:
    explicit CommandLineWidget(QWidget* parent = nullptr);

    // Text as printed; "\n" starts a new line of the history.
    void write(std::string_view text) override;

    QString historyText() const;
    QLineEdit* inputLine() const { return input_; }

signals:
    void lineEntered(const QString& line);
    void cancelRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPlainTextEdit* history_;
    QLineEdit* input_;
};

}  // namespace cad::gui
