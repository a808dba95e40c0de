// The CSV export's settings dialog: the field separator and the file to write, chosen through
// the save-file dialog of the user-dialogs port or typed.
#pragma once

#include <QDialog>
#include <optional>
#include <string>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CSaveTextDlg : public QDialog {
    Q_OBJECT
public:
    struct Choice {
        int delimiter = 0;  // the combo's index: 0 comma, 1 bar, 2 tab
        std::string savePath;
    };

    CSaveTextDlg(const Choice& initial, cad::app::UserDialogs& dialogs, QWidget* parent = nullptr);

    // Runs the dialog modally: the choice on OK, nullopt on cancel.
    static std::optional<Choice> run(QWidget* parent, const Choice& initial,
                                     cad::app::UserDialogs& dialogs);

    // A separator the combo does not list (a hand-edited settings file) stays as it was
    // unless the user picks one.
    Choice choice() const;

    QComboBox* delimiterBox() const { return delimiter_; }
    QLineEdit* pathEdit() const { return path_; }
    QPushButton* browseButton() const { return browse_; }

private:
    void browse();

    cad::app::UserDialogs& dialogs_;
    int initialDelimiter_;
    QComboBox* delimiter_;
    QLineEdit* path_;
    QPushButton* browse_;
};

}  // namespace vantor
