// The part list: the records of the chosen group under the user's field titles, with the
// record menu (insert into the drawing, add, modify, delete). Column widths are the settings'.
#pragma once

#include <QTreeView>
#include <functional>

namespace vantor {

class ModuleSettings;
class PartListModel;
struct PartRecord;

class CListViewEx : public QTreeView {
    Q_OBJECT
public:
    CListViewEx(PartListModel& model, ModuleSettings& settings, QWidget* parent = nullptr);

    const PartRecord* currentRecord() const;
    void selectRecord(std::int64_t handle);
    // Dragging the current record onto the drawing inserts it there; the window prepares the
    // insertion when the drag starts and answers whether it may (the host may be busy).
    // `ended` hears whether the record was dropped somewhere that took it.
    void setDragPreparer(std::function<bool()> prepare, std::function<void(bool dropped)> ended) {
        prepareDrag_ = std::move(prepare);
        dragEnded_ = std::move(ended);
    }
    // Drags the current record as if the user had started the drag here (the search's hits
    // drag the record they show this way).
    void dragCurrentRecord();

signals:
    void recordChosen(const PartRecord* record);
    void insertRequested();
    void addRequested();
    void modifyRequested();
    void deleteRequested();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;

private:
    PartListModel& model_;
    std::function<bool()> prepareDrag_;
    std::function<void(bool dropped)> dragEnded_;
};

}  // namespace vantor
