// The category tree view: the libraries of the registered drawings (or of the drawing chosen
// in the explorer), with the editing menu (new category, rename, delete, add part data,
// delete all data) and naming in place. Open branches stay open when the tree changes.
#pragma once

#include <QTreeView>
#include <set>
#include <string>

namespace vantor {

class CategoryTreeModel;
class CVNTreeBase;
struct TreeNode;

class CVNTreeViewEx : public QTreeView {
    Q_OBJECT
public:
    explicit CVNTreeViewEx(QWidget* parent = nullptr);

    // The tree shown and its model; the view switches between the registered drawings' tree
    // and the explorer's.
    void showTree(CVNTreeBase& tree, CategoryTreeModel& model);
    CVNTreeBase* tree() const { return tree_; }
    CategoryTreeModel* categoryModel() const { return model_; }
    TreeNode* currentNode() const;
    void selectNode(const TreeNode* node);

    // Around a change of the tree's nodes made elsewhere (a list loaded, a record deleted).
    void beginTreeChange();
    void endTreeChange();

    // The editing commands on the current node; each does nothing where the node takes none.
    void newCategory();
    void renameCategory();
    void deleteCategory();
    void deleteAllData();

signals:
    void nodeChosen(TreeNode* node);
    // Part data is to be added to the group (or the record's group): the data dialog's flow.
    void addPartDataRequested(TreeNode* node);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    std::string keyOf(const TreeNode& node) const;
    void rememberOpenBranches();
    void reopenBranches(const QModelIndex& parent);

    CVNTreeBase* tree_ = nullptr;
    CategoryTreeModel* model_ = nullptr;
    std::set<std::string> openBranches_;
};

}  // namespace vantor
