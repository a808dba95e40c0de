// The category tree as an item model.
#include "vantor/ui/models/CategoryTreeModel.h"

#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/models/ModelText.h"

namespace vantor {

CategoryTreeModel::CategoryTreeModel(CVNTreeBase& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree) {
    indexRows();
}

void CategoryTreeModel::beginTreeChange() {
    beginResetModel();
}

void CategoryTreeModel::endTreeChange() {
    indexRows();
    endResetModel();
}

void CategoryTreeModel::indexRows() {
    rows_.clear();
    std::vector<const TreeNode*> pending;
    int row = 0;
    for (const auto& root : tree_.roots()) {
        rows_[root.get()] = row++;
        pending.push_back(root.get());
    }
    while (!pending.empty()) {
        const TreeNode* node = pending.back();
        pending.pop_back();
        int childRow = 0;
        for (const auto& child : node->children) {
            rows_[child.get()] = childRow++;
            pending.push_back(child.get());
        }
    }
}

TreeNode* CategoryTreeModel::nodeAt(const QModelIndex& index) const {
    return index.isValid() ? static_cast<TreeNode*>(index.internalPointer()) : nullptr;
}

QModelIndex CategoryTreeModel::indexOf(const TreeNode* node) const {
    if (node == nullptr) return {};
    const auto found = rows_.find(node);
    if (found == rows_.end()) return {};
    return createIndex(found->second, 0, const_cast<TreeNode*>(node));
}

QModelIndex CategoryTreeModel::firstRootOf(const std::string& drawingPath) const {
    for (const auto& root : tree_.roots())
        if (root->drawingPath == drawingPath) return indexOf(root.get());
    return {};
}

QModelIndex CategoryTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0) return {};
    if (!parent.isValid()) {
        const auto& roots = tree_.roots();
        if (static_cast<std::size_t>(row) >= roots.size()) return {};
        return createIndex(row, 0, roots[row].get());
    }
    const TreeNode* node = nodeAt(parent);
    if (node == nullptr || static_cast<std::size_t>(row) >= node->children.size()) return {};
    return createIndex(row, 0, node->children[row].get());
}

QModelIndex CategoryTreeModel::parent(const QModelIndex& child) const {
    const TreeNode* node = nodeAt(child);
    return node != nullptr ? indexOf(node->parent) : QModelIndex();
}

int CategoryTreeModel::rowCount(const QModelIndex& parent) const {
    if (parent.column() > 0) return 0;
    if (!parent.isValid()) return static_cast<int>(tree_.roots().size());
    return static_cast<int>(nodeAt(parent)->children.size());
}

int CategoryTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant CategoryTreeModel::data(const QModelIndex& index, int role) const {
    const TreeNode* node = nodeAt(index);
    if (node == nullptr) return {};
    switch (role) {
        case Qt::DisplayRole:
            if (node->kind == TreeNode::Kind::LibraryRoot) return qText(node->drawingLabel());
            if (node->kind == TreeNode::Kind::Record && !node->recordText.empty())
                return qText(node->recordText);
            return qText(node->name);
        case Qt::EditRole:
            return qText(node->name);
        case Qt::ToolTipRole:
            if (node->kind == TreeNode::Kind::LibraryRoot)
                return qText(node->label() + "\n" + node->drawingPath);
            return {};
        case KindRole:
            return static_cast<int>(node->kind);
        case DrawingPathRole:
            return qText(node->drawingPath);
        case LibraryRole:
            return static_cast<int>(node->library);
        default:
            return {};
    }
}

Qt::ItemFlags CategoryTreeModel::flags(const QModelIndex& index) const {
    const TreeNode* node = nodeAt(index);
    if (node == nullptr) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (node->children.empty()) flags |= Qt::ItemNeverHasChildren;
    if (CVNTreeBase::acceptsRenameOrDelete(*node)) flags |= Qt::ItemIsEditable;
    return flags;
}

bool CategoryTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    TreeNode* node = nodeAt(index);
    if (node == nullptr || role != Qt::EditRole || !CVNTreeBase::acceptsRenameOrDelete(*node))
        return false;
    if (!tree_.renameCategory(*node, stdText(value.toString()))) return false;
    emit dataChanged(index, index);
    return true;
}

}  // namespace vantor
