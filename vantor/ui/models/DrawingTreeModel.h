// The registered drawings of the current management window as a tree: the window's name on
// top, its drawings below in registration order; drawings without library data greyed.
#pragma once

#include <QAbstractItemModel>
#include <string>
#include <vector>

namespace vantor {

class DrawingList;
struct RegisteredDrawing;

class DrawingTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Role { PathRole = Qt::UserRole + 1 };

    explicit DrawingTreeModel(QObject* parent = nullptr);

    // The list was loaded or changed: shows its drawings under `windowName`.
    void showList(const std::string& windowName, const DrawingList& list);

    const std::string& windowName() const { return windowName_; }
    // The drawing's path at `index`; empty for the window's own item.
    std::string pathAt(const QModelIndex& index) const;
    QModelIndex indexOfPath(const std::string& path) const;
    QModelIndex windowIndex() const { return index(0, 0); }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Row {
        std::string path;
        std::string fileName;  // name and extension
        bool active = true;
    };
    // Internal ids: 0 is the window item, row + 1 a drawing.
    static constexpr quintptr kWindowId = 0;

    std::string windowName_;
    std::vector<Row> rows_;
};

}  // namespace vantor
