// The progress dialog.
#include "cad/gui/ProgressDialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

namespace cad::gui {

ProgressDialog::ProgressDialog(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowStaysOnTopHint),
      status_(new QLabel(this)),
      bar_(new QProgressBar(this)) {
    setModal(false);
    setWindowTitle(QString::fromUtf8("진행 상황"));
    auto* layout = new QGridLayout(this);
    layout->addWidget(new QLabel(QString::fromUtf8("상태 :"), this), 0, 0);
    layout->addWidget(status_, 0, 1);
    layout->addWidget(bar_, 1, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    status_->setMinimumWidth(320);
    bar_->setRange(0, 100);
    bar_->setValue(0);
}

void ProgressDialog::setStatus(const QString& text) {
    status_->setText(text);
}

void ProgressDialog::setRange(int low, int high) {
    bar_->setRange(low, high);
}

void ProgressDialog::setPosition(int position) {
    bar_->setValue(position);
}

QString ProgressDialog::status() const {
    return status_->text();
}

int ProgressDialog::position() const {
    return bar_->value();
}

}  // namespace cad::gui
