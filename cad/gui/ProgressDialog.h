// The modeless progress dialog of long work: a status line under the caption "상태 :" and a
// bar. It has no parent window, so it outlives any window, and stays on top.
#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

namespace cad::gui {

class ProgressDialog : public QDialog {
    Q_OBJECT
public:
    explicit ProgressDialog(QWidget* parent = nullptr);

    void setStatus(const QString& text);
    void setRange(int low, int high);
    void setPosition(int position);

    QString status() const;
    int position() const;

private:
    QLabel* status_;
    QProgressBar* bar_;
};

}  // namespace cad::gui
