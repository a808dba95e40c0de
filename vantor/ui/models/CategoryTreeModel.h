// The category tree of the registered drawings as a Qt item model: per drawing its supplier and
// user library, their categories and groups, and each group's part records, straight over the
// nodes of CVNTreeBase (nothing is copied, so a thousand drawings show at once).
#pragma once

#include <QAbstractItemModel>
#include <unordered_map>

namespace vantor {

class CVNTreeBase;
struct TreeNode;

class CategoryTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Role {
        KindRole = Qt::UserRole + 1,  // TreeNode::Kind as an int
        DrawingPathRole,
        LibraryRole,  // LibraryKind as an int
    };

    explicit CategoryTreeModel(CVNTreeBase& tree, QObject* parent = nullptr);

    // The tree's nodes are about to change (a list loads, a category is made, renamed or
    // deleted) and have changed: the model is reset around the change.
    void beginTreeChange();
    void endTreeChange();

    TreeNode* nodeAt(const QModelIndex& index) const;
    QModelIndex indexOf(const TreeNode* node) const;
    // The first root of the drawing (its supplier library when it has one).
    QModelIndex firstRootOf(const std::string& drawingPath) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // In-place naming of a category or group; the tree refuses a sibling's name with a message.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

private:
    void indexRows();

    CVNTreeBase& tree_;
    // Each node's row under its parent, made when the tree changes: views ask for parents far
    // more often than the tree changes.
    std::unordered_map<const TreeNode*, int> rows_;
};

}  // namespace vantor
