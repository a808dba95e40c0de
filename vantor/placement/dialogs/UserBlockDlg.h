// The insertion dialog: the group's records narrowed through twelve cascading lists to one
// part, its view blocks to choose from with a picture, the angle typed or picked in the
// drawing, and the drawing options; it hands back the part to place.
#pragma once

#include <QDialog>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "vantor/placement/ChoiceCascade.h"
#include "vantor/store/PartRecord.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QTreeWidget;

namespace cad::db {
class Database;
}

namespace vantor {

class CheckedEdit;
class PartPicture;
struct PlacementDialogContext;

// What the dialog is opened on.
struct UserBlockInput {
    std::string libraryPath;
    // The library drawing, read by the caller and held while the dialog runs: the pictures and
    // the check that the chosen block is there come from it. nullptr when it could not be read.
    cad::db::Database* library = nullptr;
    std::vector<PartRecord> records;       // the group's, in stored order
    std::optional<std::size_t> lastChosen;  // the record chosen before, by index
    std::string lastBlock;  // its view block chosen before: that row is chosen again
    double scale = 1.0;     // the preview pane's; handed back as it is
};

// What OK hands back. The angle text is also in the settings by then.
struct UserBlockChoice {
    PartRecord record;
    std::string blockName;
    std::size_t view = 0;  // the record's view slot the block is in
    std::string angle;     // degrees as typed
    double scale = 1.0;
};

class CUserBlockDlg : public QDialog {
    Q_OBJECT
public:
    // OK; "취   소", which only closes the dialog; "작도취소" (also Esc and the close box), which
    // ends the placement the dialog belongs to.
    enum class Ending { Ok, Cancel, CancelDrawing };
    static constexpr int kCancelId = 8;

    CUserBlockDlg(UserBlockInput input, PlacementDialogContext& context, QWidget* parent = nullptr);

    // Runs the dialog modally; `choice` is filled on OK.
    static Ending run(QWidget* parent, UserBlockInput input, PlacementDialogContext& context,
                      UserBlockChoice& choice);

    Ending ending() const { return ending_; }
    const UserBlockChoice& choice() const { return choice_; }
    const ChoiceCascade& cascade() const { return cascade_; }
    QComboBox* list(std::size_t index) const { return lists_.at(index); }
    QLabel* caption(std::size_t index) const { return captions_.at(index); }
    QTreeWidget* viewList() const { return views_; }
    PartPicture* picture() const { return picture_; }
    CheckedEdit* angleEdit() const { return angle_; }

    void accept() override;
    void reject() override;

private:
    void fillLists(std::size_t first);
    void listChosen(std::size_t list, int item);
    void englishNamesToggled(bool english);
    void showViews();
    void viewChosen();
    void showData();
    void editOptions();
    void closeOnly();
    std::optional<std::size_t> currentView() const;

    UserBlockInput input_;
    PlacementDialogContext& context_;
    ChoiceCascade cascade_;
    std::array<QComboBox*, ChoiceCascade::kListCount> lists_{};
    std::array<QLabel*, ChoiceCascade::kListCount> captions_{};
    QCheckBox* english_ = nullptr;
    QCheckBox* fixedAngle_ = nullptr;
    QTreeWidget* views_ = nullptr;
    PartPicture* picture_ = nullptr;
    CheckedEdit* angle_ = nullptr;
    Ending ending_ = Ending::CancelDrawing;
    UserBlockChoice choice_;
    bool toldUnreadable_ = false;
};

}  // namespace vantor
