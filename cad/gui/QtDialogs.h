// The user-dialogs port shown with Qt: message boxes with the Win32 buttons and icons the
// callers pass, file and folder dialogs, the one-field name dialog and the progress dialog.
#pragma once

#include <QMessageBox>
#include <memory>

#include "cad/app/UserDialogs.h"

namespace cad::gui {

class ProgressDialog;

class QtDialogs : public app::UserDialogs {
public:
    QtDialogs();
    ~QtDialogs() override;

    int messageBox(std::string_view text, std::string_view title, unsigned flags) override;
    std::optional<std::vector<std::string>> openFiles(std::string_view title,
                                                      std::string_view filter,
                                                      std::string_view folder,
                                                      bool multiple) override;
    std::optional<std::string> saveFile(std::string_view title, std::string_view filter,
                                        std::string_view defaultExtension,
                                        std::string_view initialPath) override;
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view initialFolder) override;
    std::optional<std::string> askText(std::string_view title, std::string_view label,
                                       std::string_view initialText) override;

    void progressShow() override;
    void progressRange(int low, int high) override;
    void progressPosition(int position) override;
    void progressText(std::string_view text) override;
    void progressHide() override;

    // The message box for the flags: MB_OK, MB_OKCANCEL, MB_YESNO, MB_YESNOCANCEL and the
    // error, question, warning and information icons; the answer as IDOK ... IDNO. A box
    // closed without a button answers as its Cancel (or No, when it has no Cancel).
    static QMessageBox::StandardButtons buttonsFor(unsigned flags);
    static QMessageBox::Icon iconFor(unsigned flags);
    static int answerFor(QMessageBox::StandardButton button, unsigned flags);

    // nullptr until the progress dialog was first shown.
    ProgressDialog* progressDialog() const { return progress_.get(); }

private:
    ProgressDialog& progress();

    std::unique_ptr<ProgressDialog> progress_;
};

}  // namespace cad::gui
