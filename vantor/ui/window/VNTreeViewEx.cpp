// The category tree view.
#include "vantor/ui/window/VNTreeViewEx.h"

#include <QContextMenuEvent>
#include <QMenu>

#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/models/CategoryTreeModel.h"
#include "vantor/ui/models/ModelText.h"

namespace vantor {

CVNTreeViewEx::CVNTreeViewEx(QWidget* parent) : QTreeView(parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setAccessibleName(QStringLiteral("분류"));
}

void CVNTreeViewEx::showTree(CVNTreeBase& tree, CategoryTreeModel& model) {
    if (model_ == &model) return;
    tree_ = &tree;
    model_ = &model;
    setModel(&model);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { emit nodeChosen(model_->nodeAt(current)); });
    emit nodeChosen(currentNode());
}

TreeNode* CVNTreeViewEx::currentNode() const {
    return model_ != nullptr ? model_->nodeAt(currentIndex()) : nullptr;
}

void CVNTreeViewEx::selectNode(const TreeNode* node) {
    if (model_ == nullptr) return;
    const QModelIndex index = model_->indexOf(node);
    if (!index.isValid()) return;
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) expand(above);
    setCurrentIndex(index);
    scrollTo(index);
}

std::string CVNTreeViewEx::keyOf(const TreeNode& node) const {
    std::string key = node.drawingPath;
    key += '\x1f';
    key += std::to_string(static_cast<int>(node.library));
    for (const std::string& part : node.keyPath()) {
        key += '\x1f';
        key += part;
    }
    return key;
}

void CVNTreeViewEx::rememberOpenBranches() {
    openBranches_.clear();
    if (model_ == nullptr) return;
    std::vector<QModelIndex> pending{QModelIndex()};
    while (!pending.empty()) {
        const QModelIndex parent = pending.back();
        pending.pop_back();
        for (int row = 0, rows = model_->rowCount(parent); row < rows; ++row) {
            const QModelIndex child = model_->index(row, 0, parent);
            if (!isExpanded(child)) continue;
            openBranches_.insert(keyOf(*model_->nodeAt(child)));
            pending.push_back(child);
        }
    }
}

void CVNTreeViewEx::reopenBranches(const QModelIndex& parent) {
    for (int row = 0, rows = model_->rowCount(parent); row < rows; ++row) {
        const QModelIndex child = model_->index(row, 0, parent);
        const TreeNode* node = model_->nodeAt(child);
        if (!node->isDictionary() || !openBranches_.contains(keyOf(*node))) continue;
        expand(child);
        reopenBranches(child);
    }
}

void CVNTreeViewEx::beginTreeChange() {
    rememberOpenBranches();
    if (model_ != nullptr) model_->beginTreeChange();
}

void CVNTreeViewEx::endTreeChange() {
    if (model_ == nullptr) return;
    model_->endTreeChange();
    reopenBranches({});
}

void CVNTreeViewEx::newCategory() {
    TreeNode* parent = currentNode();
    if (tree_ == nullptr || parent == nullptr || !CVNTreeBase::acceptsNewCategory(*parent)) return;
    beginTreeChange();
    openBranches_.insert(keyOf(*parent));
    TreeNode* added = tree_->newCategory(*parent);
    endTreeChange();
    if (added == nullptr) {
        selectNode(parent);
        return;
    }
    // Named at once: the user types over "새 분류".
    selectNode(added);
    edit(model_->indexOf(added));
}

void CVNTreeViewEx::renameCategory() {
    TreeNode* node = currentNode();
    if (node != nullptr && CVNTreeBase::acceptsRenameOrDelete(*node)) edit(currentIndex());
}

void CVNTreeViewEx::deleteCategory() {
    TreeNode* node = currentNode();
    if (tree_ == nullptr || node == nullptr || !CVNTreeBase::acceptsRenameOrDelete(*node)) return;
    const TreeNode* parent = node->parent;
    beginTreeChange();
    const bool deleted = tree_->deleteCategory(node);
    endTreeChange();
    selectNode(deleted ? parent : node);
}

void CVNTreeViewEx::deleteAllData() {
    TreeNode* group = currentNode();
    if (tree_ == nullptr || group == nullptr || !CVNTreeBase::acceptsDeleteAll(*group)) return;
    beginTreeChange();
    tree_->deleteAllData(*group);
    endTreeChange();
    selectNode(group);
    emit nodeChosen(group);
}

void CVNTreeViewEx::contextMenuEvent(QContextMenuEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) setCurrentIndex(index);
    TreeNode* node = currentNode();
    if (node == nullptr) return;
    QMenu menu(this);
    auto add = [&](int id, bool enabled, auto handler) {
        QAction* action = menu.addAction(qText(frameCommand(id)->entry), this, handler);
        action->setEnabled(enabled);
        action->setObjectName(QStringLiteral("id%1").arg(id));
    };
    const bool isGroupOrRecord = node->kind == TreeNode::Kind::Group ||
                                 node->kind == TreeNode::Kind::Record;
    add(1401, CVNTreeBase::acceptsNewCategory(*node), [this] { newCategory(); });
    add(1402, CVNTreeBase::acceptsRenameOrDelete(*node), [this] { renameCategory(); });
    add(1403, CVNTreeBase::acceptsRenameOrDelete(*node), [this] { deleteCategory(); });
    menu.addSeparator();
    add(1404, isGroupOrRecord, [this, node] { emit addPartDataRequested(node); });
    add(1405, CVNTreeBase::acceptsDeleteAll(*node), [this] { deleteAllData(); });
    menu.exec(event->globalPos());
}

}  // namespace vantor
