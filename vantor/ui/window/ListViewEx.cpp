// The part list view.
#include "vantor/ui/window/ListViewEx.h"

#include <QContextMenuEvent>
#include <QDrag>
#include <QMimeData>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include "cad/app/CommandDrop.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartListModel.h"
#include "vantor/ui/window/ColumnWidthKeeper.h"

namespace vantor {

CListViewEx::CListViewEx(PartListModel& model, ModuleSettings& settings, QWidget* parent)
    : QTreeView(parent), model_(model) {
    setModel(&model);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setAccessibleName(QStringLiteral("부품 목록"));
    header()->setStretchLastSection(false);
    auto* widths = new ColumnWidthKeeper(*header(), settings, ListOwner::PartList);
    widths->apply();
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { emit recordChosen(model_.recordAt(current.row())); });
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { emit recordChosen(nullptr); });
    connect(this, &QAbstractItemView::doubleClicked, this, [this] { emit insertRequested(); });
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
}

const PartRecord* CListViewEx::currentRecord() const {
    return model_.recordAt(currentIndex().row());
}

void CListViewEx::selectRecord(std::int64_t handle) {
    for (int row = 0; row < model_.rowCount(); ++row)
        if (model_.recordAt(row)->recordId.asOldId() == handle) {
            setCurrentIndex(model_.index(row, 0));
            scrollTo(currentIndex());
            return;
        }
}

void CListViewEx::startDrag(Qt::DropActions) { dragCurrentRecord(); }

void CListViewEx::dragCurrentRecord() {
    if (currentRecord() == nullptr || !prepareDrag_ || !prepareDrag_()) return;
    auto* mime = new QMimeData;
    mime->setData(cad::app::kCommandMimeType, QByteArray("_UBLI\n"));
    mime->setText(model_.index(currentIndex().row(), PartFields::Spec).data().toString());
    QDrag drag(this);
    drag.setMimeData(mime);
    const bool dropped = drag.exec(Qt::CopyAction) != Qt::IgnoreAction;
    if (dragEnded_) dragEnded_(dropped);
}

void CListViewEx::contextMenuEvent(QContextMenuEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) setCurrentIndex(index);
    const bool onRecord = currentRecord() != nullptr;
    QMenu menu(this);
    auto add = [&](int id, bool enabled, void (CListViewEx::*signal)()) {
        QAction* action =
            menu.addAction(qText(frameCommand(id)->entry), this, [this, signal] { emit(this->*signal)(); });
        action->setEnabled(enabled);
        action->setObjectName(QStringLiteral("id%1").arg(id));
    };
    add(1501, onRecord, &CListViewEx::insertRequested);
    menu.addSeparator();
    add(1502, true, &CListViewEx::addRequested);
    add(1503, onRecord, &CListViewEx::modifyRequested);
    add(1504, onRecord, &CListViewEx::deleteRequested);
    menu.exec(event->globalPos());
}

void CListViewEx::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && currentRecord() != nullptr) {
        emit deleteRequested();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        currentRecord() != nullptr) {
        emit insertRequested();
        return;
    }
    QTreeView::keyPressEvent(event);
}

}  // namespace vantor
