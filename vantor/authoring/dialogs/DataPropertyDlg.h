// The part data dialog: a new part for a group, or a stored part changed, on three pages
// (catalogue data, user fields, drawing slots). Filled from a PartDataEntry and handing it
// back; what OK stores is the store handler's, so nothing reaches a drawing before OK.
#pragma once

#include <QDialog>
#include <functional>

#include "vantor/authoring/CallerWindow.h"
#include "vantor/authoring/PartDataEntry.h"
#include "vantor/ui/FieldLabels.h"

class QLabel;
class QPushButton;
class QTabWidget;

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}

namespace vantor {

class BlockCapture;
class CDataCustomSubDlg;
class CDataDrawSubDlg;
class CDataGenSubDlg;

class CDataPropertyDlg : public QDialog {
    Q_OBJECT
public:
    enum class StoreAction { Add, Modify };
    // Stores the record as the button asks (telling the user why when it cannot); true closes
    // the dialog with OK, false keeps it open.
    using StoreHandler = std::function<bool(StoreAction, const PartRecord&)>;

    CDataPropertyDlg(PartDataEntry entry, const FieldLabels::Texts& labels,
                     cad::app::UserDialogs& dialogs, QWidget* parent = nullptr);

    void setStoreHandler(StoreHandler handler) { store_ = std::move(handler); }
    // The capture behind "..." and "BOM<", and the library drawing the slots' blocks are made
    // in (changed in memory; it is saved with the record). Without them the buttons do nothing.
    void setCapture(BlockCapture* capture, cad::db::Database* library) {
        capture_ = capture;
        library_ = library;
    }

    // Shows the part without letting it be stored: the drawing is another user's to change
    // just now. `notice` says so above the pages; fields and buttons that would change the
    // part are disabled, Cancel closes.
    void setReadOnly(const QString& notice);
    bool isReadOnly() const { return readOnly_; }

    // Runs the dialog modally in a loop of its own, so that it may hide while the user works in
    // the drawing without ending. Answers QDialog::Accepted or Rejected.
    int runModal();

    // The working copy with what the pages hold now.
    PartDataEntry entry() const;

    QTabWidget* tabs() const { return tabs_; }
    CDataGenSubDlg* generalPage() const { return general_; }
    CDataCustomSubDlg* userPage() const { return user_; }
    CDataDrawSubDlg* drawingPage() const { return drawing_; }
    // How the dialog hides for a capture and comes back: itself and its parent window.
    CallerWindow callerWindow();

private:
    void storeRecord(StoreAction action);
    void takePages();
    void fillPages();
    void captureSlot(std::size_t slot);
    void pickBomPoint(std::size_t slot);
    void clearSlot(std::size_t slot);

    PartDataEntry entry_;
    const FieldLabels::Texts& labels_;
    cad::app::UserDialogs& dialogs_;
    StoreHandler store_;
    BlockCapture* capture_ = nullptr;
    cad::db::Database* library_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    CDataGenSubDlg* general_ = nullptr;
    CDataCustomSubDlg* user_ = nullptr;
    CDataDrawSubDlg* drawing_ = nullptr;
    QLabel* notice_ = nullptr;
    bool readOnly_ = false;
};

}  // namespace vantor
