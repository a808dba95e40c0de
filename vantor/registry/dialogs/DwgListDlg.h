// The registered-drawing dialog: the drawings of the current management window with their
// state, and add, remove, optimise and open. The list operations are DrawingRegistration's.
#pragma once

#include <QDialog>
#include <QIcon>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace vantor {

class DrawingList;
class DrawingRegistration;
class ModuleSettings;
struct RegisteredDrawing;

class CDwgListDlg : public QDialog {
    Q_OBJECT
public:
    static constexpr int kListId = 415;
    static constexpr int kRemoveId = 419;
    static constexpr int kAddId = 421;
    static constexpr int kOpenId = 424;
    static constexpr int kOptimiseId = 425;

    CDwgListDlg(DrawingRegistration& registration, DrawingList& list, ModuleSettings& settings,
                QWidget* parent = nullptr);

    // The rows' list control: name and extension, drive (or "Network"), folder.
    QTreeWidget* drawings() const { return drawings_; }
    // True when add, remove or optimise changed the list while the dialog was open.
    bool listChanged() const { return listChanged_; }
    // True when the dialog closed by putting drawings into the open-drawing queue.
    bool drawingsQueued() const { return drawingsQueued_; }

    // Fills the rows from the list again.
    void refill();

private:
    void add();
    void remove();
    void optimise();
    void openSelected();
    void openRow(QTreeWidgetItem* item);
    void open(const std::vector<const RegisteredDrawing*>& entries);
    std::vector<const RegisteredDrawing*> selectedEntries() const;

    DrawingRegistration& registration_;
    DrawingList& list_;
    ModuleSettings& settings_;
    QTreeWidget* drawings_ = nullptr;
    QIcon inactiveIcon_;
    QIcon activeIcon_;
    bool listChanged_ = false;
    bool drawingsQueued_ = false;
};

}  // namespace vantor
