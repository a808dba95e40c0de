#include "vantor/ui/models/SearchHitModel.h"

#include <filesystem>

#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartRowFlags.h"

namespace vantor {

namespace {

// The categories and the group, without the library's own key.
QString placeOf(const PartSearchEntry& entry) {
    QStringList names;
    for (std::size_t i = 1; i < entry.keys.size(); ++i) names << qText(entry.keys[i]);
    return names.join(QStringLiteral(" > "));
}

}  // namespace

std::string partLabel(std::string_view kname, std::string_view spec) {
    std::string label(kname);
    if (!label.empty() && !spec.empty()) label += ' ';
    return label += spec;
}

SearchHitModel::SearchHitModel(const FieldLabels::Texts& labels, QObject* parent)
    : QAbstractTableModel(parent), labels_(labels) {}

void SearchHitModel::setResult(PartSearchResult result) {
    beginResetModel();
    result_ = std::move(result);
    endResetModel();
}

std::optional<PartShortcut> SearchHitModel::partAt(int row) const {
    if (row < 0 || row >= rowCount()) return std::nullopt;
    const PartSearchEntry& entry = result_.entry(static_cast<std::size_t>(row));
    return PartShortcut{result_.drawingPath(static_cast<std::size_t>(row)), entry.recordId,
                        partLabel(entry.kname, entry.spec)};
}

int SearchHitModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(result_.size());
}

int SearchHitModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

Qt::ItemFlags SearchHitModel::flags(const QModelIndex& index) const {
    return partRowFlags(index, QAbstractTableModel::flags(index));
}

QVariant SearchHitModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    const PartSearchEntry& entry = result_.entry(row);
    if (role == Qt::ToolTipRole)
        return QStringLiteral("%1\n%2").arg(qText(result_.drawingPath(row)), placeOf(entry));
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
        case KName:
            return qText(entry.kname);
        case EName:
            return qText(entry.ename);
        case Spec:
            return qText(entry.spec);
        case Material:
            return qText(entry.material);
        case Drawing:
            return qText(std::filesystem::path(result_.drawingPath(row)).filename().string());
        case Place:
            return placeOf(entry);
        default:
            return {};
    }
}

QVariant SearchHitModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
        case KName:
            return qText(labels_[FieldLabels::KName]);
        case EName:
            return qText(labels_[FieldLabels::EName]);
        case Spec:
            return qText(labels_[FieldLabels::Spec]);
        case Material:
            return qText(labels_[FieldLabels::Material]);
        case Drawing:
            return QStringLiteral("도면");
        case Place:
            return QStringLiteral("분류");
        default:
            return {};
    }
}

}  // namespace vantor
