// The part list as a table model.
#include "vantor/ui/models/PartListModel.h"

#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartRowFlags.h"

namespace vantor {

PartListModel::PartListModel(const FieldLabels::Texts& labels, QObject* parent)
    : QAbstractTableModel(parent), labels_(labels) {}

void PartListModel::setRecords(std::string drawingPath, std::vector<PartRecord> records) {
    beginResetModel();
    drawingPath_ = std::move(drawingPath);
    records_ = std::move(records);
    endResetModel();
}

void PartListModel::labelsChanged() {
    emit headerDataChanged(Qt::Horizontal, 0, kColumnCount - 1);
}

const PartRecord* PartListModel::recordAt(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= records_.size()) return nullptr;
    return &records_[row];
}

int PartListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(records_.size());
}

int PartListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant PartListModel::data(const QModelIndex& index, int role) const {
    const PartRecord* record = recordAt(index.row());
    if (record == nullptr || index.column() < 0 || index.column() >= kColumnCount) return {};
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    return qText(record->text(static_cast<PartFields::Id>(index.column())));
}

Qt::ItemFlags PartListModel::flags(const QModelIndex& index) const {
    return partRowFlags(index, QAbstractTableModel::flags(index));
}

QVariant PartListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= kColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return qText(labels_[section]);
}

}  // namespace vantor
