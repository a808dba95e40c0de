// The company information dialog of a supplier library drawing: the supplier's texts in the
// record's order and the logo file, confirmed as a new record ("입   력") or an update.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "vantor/store/SupplierInfo.h"

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CompanyInfoDlg : public QDialog {
    Q_OBJECT
public:
    // `hasRecord`: the drawing holds a supplier record already, so confirming updates it.
    CompanyInfoDlg(const SupplierInfo& info, bool hasRecord, cad::app::UserDialogs& dialogs,
                   QWidget* parent = nullptr);

    // Called on the confirm button with what the dialog holds; the dialog closes with OK only
    // when it answers true, so a refused logo can be chosen again without retyping the texts.
    // Without one, the confirm button simply closes the dialog with OK.
    void setConfirmHandler(std::function<bool(const SupplierInfo&)> handler) {
        confirm_ = std::move(handler);
    }

    // The texts and logo path as entered; the logo bytes are those the dialog was filled with.
    SupplierInfo info() const;

    // The edits of the single-line texts (every text but the remark).
    QLineEdit* textEdit(SupplierInfo::Text text) const { return lines_.at(text); }
    QPlainTextEdit* remarkEdit() const { return remark_; }
    QLineEdit* logoEdit() const { return logoPath_; }
    QPushButton* browseButton() const { return browse_; }
    QPushButton* confirmButton() const { return confirmButton_; }

    void accept() override;

private:
    void browse();

    cad::app::UserDialogs& dialogs_;
    SupplierInfo filled_;
    std::array<QLineEdit*, SupplierInfo::kTextCount> lines_{};  // nullptr at Remark
    QPlainTextEdit* remark_;
    QLineEdit* logoPath_;
    QPushButton* browse_;
    QPushButton* confirmButton_;
    std::function<bool(const SupplierInfo&)> confirm_;
};

}  // namespace vantor
