// The field-title dialog: the 19 titles of the part fields in three groups, with reset to the
// defaults. The rules (reset writes at once, a blank title warns but is stored) are FieldLabels'.
#pragma once

#include <QDialog>
#include <array>

#include "vantor/ui/FieldLabels.h"

class QLineEdit;
class QPushButton;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class ModuleSettings;

class CLabelEditDlg : public QDialog {
    Q_OBJECT
public:
    CLabelEditDlg(ModuleSettings& settings, cad::app::UserDialogs& dialogs,
                  QWidget* parent = nullptr);

    // Runs the dialog modally; true when it ended with OK (the titles are then in the
    // settings; after a reset they are the defaults whatever the answer).
    static bool run(QWidget* parent, ModuleSettings& settings, cad::app::UserDialogs& dialogs);

    // The edit of title `index` (0 for the Korean name ... 18 for drawing 3).
    QLineEdit* edit(std::size_t index) const { return edits_.at(index); }
    FieldLabels::Texts texts() const;

    void accept() override;

private:
    void fill();
    void reset();

    ModuleSettings& settings_;
    cad::app::UserDialogs& dialogs_;
    std::array<QLineEdit*, FieldLabels::kCount> edits_{};
};

}  // namespace vantor
