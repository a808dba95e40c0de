// The preview pane's controls under the library window's picture: the scale and angle of the
// next placement and the drawing options as check boxes, read from and written to the
// settings at once, and the pane's insert.
#pragma once

#include <QWidget>
#include <map>

class QCheckBox;
class QPushButton;

namespace vantor {

class CheckedEdit;
class InsertionStates;
struct InsertRequest;
struct PlacementDialogContext;

class CPreviewSubDlg : public QWidget {
    Q_OBJECT
public:
    explicit CPreviewSubDlg(PlacementDialogContext& context, QWidget* parent = nullptr);

    // The scale the next placement from the library window takes; it is the pane's own, not a
    // setting.
    double scale() const { return scale_; }
    void setScale(double scale);
    // Shows the settings again (another dialog changed the options or the angle).
    void refresh();

    // The pane's insert: both edits checked first (a refused one is selected for correction),
    // then the part handed to UBLI with the pane's scale. True when "_UBLI\n" was queued.
    bool OnInsertBlock(InsertRequest request, InsertionStates& states);

    CheckedEdit* scaleEdit() const { return scaleEdit_; }
    CheckedEdit* angleEdit() const { return angleEdit_; }
    QPushButton* anglePick() const { return pick_; }
    // The check box of an option bit (DrawingOptions::kExplode ...); nullptr for others.
    QCheckBox* optionBox(int bit) const;

private:
    void optionToggled(int bit, bool on);
    void scaleLeft();
    void angleLeft();

    PlacementDialogContext& context_;
    double scale_ = 1.0;
    CheckedEdit* scaleEdit_;
    CheckedEdit* angleEdit_;
    QPushButton* pick_;
    std::map<int, QCheckBox*> boxes_;
};

}  // namespace vantor
