// The drawing-options dialog ("작도 옵션"): the placement's option bits as check boxes and the
// angle, typed or picked in the drawing.
#pragma once

#include <QDialog>
#include <optional>
#include <string>

class QCheckBox;

namespace vantor {

class CheckedEdit;
struct PlacementDialogContext;

// The option word of the settings and the angle text (degrees as typed).
struct DrawOptionValues {
    int option = 0;
    std::string angle;
};

class CDrawOptionDlg : public QDialog {
    Q_OBJECT
public:
    CDrawOptionDlg(const DrawOptionValues& initial, PlacementDialogContext& context,
                   QWidget* parent = nullptr);

    // Runs the dialog modally; the values on OK, nullopt on Cancel. Nothing is stored: the
    // caller keeps what it is given.
    static std::optional<DrawOptionValues> run(QWidget* parent, const DrawOptionValues& initial,
                                               PlacementDialogContext& context);

    // The word given, its bits of the check boxes as they stand now; bits the dialog does not
    // show are kept.
    DrawOptionValues values() const;

    void accept() override;

private:
    PlacementDialogContext& context_;
    int initialOption_;
    CheckedEdit* angle_;
};

}  // namespace vantor
