#include "vantor/ui/models/ShortcutListModel.h"

#include <filesystem>

#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartRowFlags.h"

namespace vantor {

ShortcutListModel::ShortcutListModel(Source source, QObject* parent)
    : QAbstractListModel(parent), source_(std::move(source)), shown_(source_()) {}

void ShortcutListModel::refresh() {
    beginResetModel();
    shown_ = source_();
    endResetModel();
}

std::optional<PartShortcut> ShortcutListModel::partAt(int row) const {
    if (row < 0 || row >= rowCount()) return std::nullopt;
    return shown_[static_cast<std::size_t>(row)];
}

int ShortcutListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

Qt::ItemFlags ShortcutListModel::flags(const QModelIndex& index) const {
    return partRowFlags(index, QAbstractListModel::flags(index));
}

QVariant ShortcutListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const PartShortcut& part = shown_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case Qt::DisplayRole:
            return QStringLiteral("%1  (%2)").arg(
                qText(part.label),
                qText(std::filesystem::path(part.drawingPath).filename().string()));
        case Qt::ToolTipRole:
            return qText(part.drawingPath);
        default:
            return {};
    }
}

}  // namespace vantor
