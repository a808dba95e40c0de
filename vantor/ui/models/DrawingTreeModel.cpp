// The registered drawings as an item model.
#include "vantor/ui/models/DrawingTreeModel.h"

#include <QBrush>
#include <QColor>

#include "vantor/registry/DrawingList.h"
#include "vantor/ui/models/ModelText.h"

namespace vantor {

DrawingTreeModel::DrawingTreeModel(QObject* parent) : QAbstractItemModel(parent) {}

void DrawingTreeModel::showList(const std::string& windowName, const DrawingList& list) {
    beginResetModel();
    windowName_ = windowName;
    rows_.clear();
    rows_.reserve(list.size());
    for (const RegisteredDrawing& drawing : list)
        rows_.push_back({drawing.path, drawing.name + drawing.ext, drawing.active == 1});
    endResetModel();
}

std::string DrawingTreeModel::pathAt(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == kWindowId) return {};
    return rows_[index.internalId() - 1].path;
}

QModelIndex DrawingTreeModel::indexOfPath(const std::string& path) const {
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (rows_[row].path == path) return createIndex(static_cast<int>(row), 0, row + 1);
    return {};
}

QModelIndex DrawingTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0) return {};
    if (!parent.isValid()) return row == 0 ? createIndex(0, 0, kWindowId) : QModelIndex();
    if (parent.internalId() != kWindowId || static_cast<std::size_t>(row) >= rows_.size())
        return {};
    return createIndex(row, 0, static_cast<quintptr>(row) + 1);
}

QModelIndex DrawingTreeModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == kWindowId) return {};
    return createIndex(0, 0, kWindowId);
}

int DrawingTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return 1;
    if (parent.column() > 0 || parent.internalId() != kWindowId) return 0;
    return static_cast<int>(rows_.size());
}

int DrawingTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant DrawingTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (index.internalId() == kWindowId)
        return role == Qt::DisplayRole ? QVariant(qText(windowName_)) : QVariant();
    const Row& row = rows_[index.internalId() - 1];
    switch (role) {
        case Qt::DisplayRole:
            return qText(row.fileName);
        case Qt::ToolTipRole:
        case PathRole:
            return qText(row.path);
        case Qt::ForegroundRole:
            // A drawing whose library data could not be read stays listed, but visibly apart:
            // the list optimisation is what takes it off.
            if (!row.active) return QBrush(QColor(128, 128, 128));
            return {};
        default:
            return {};
    }
}

Qt::ItemFlags DrawingTreeModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.internalId() != kWindowId) flags |= Qt::ItemNeverHasChildren;
    return flags;
}

}  // namespace vantor
