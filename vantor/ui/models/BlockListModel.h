// The blocks of one drawing as a table: "Block name" and "Description", with each block's
// stored preview icon for the icon display.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <functional>
#include <vector>

#include "vantor/store/ListBase.h"

namespace cad::db {
class Database;
}

namespace vantor {

class BlockListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumnCount = 2;

    // Draws the icon of a block that stores none; a null icon when it cannot.
    using DrawIcon = std::function<QIcon(const std::string& drawingPath, const std::string& block)>;

    explicit BlockListModel(QObject* parent = nullptr);
    // Without it a block with no stored icon shows none.
    void setIconDrawer(DrawIcon draw) { drawIcon_ = std::move(draw); }

    // The blocks listed from `database` (its block table, as CListBase lists them), with
    // their icons. `drawingPath` names where they come from.
    void setBlocks(std::string drawingPath, const std::vector<BlockListEntry>& blocks,
                   cad::db::Database* database);
    void clear();

    const std::string& drawingPath() const { return drawingPath_; }
    // The block's name at `row`; empty when there is none.
    std::string blockAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Row {
        BlockListEntry entry;
        QIcon icon;          // the stored one, or the drawn one once asked for
        bool tried = false;  // drawing the icon was tried
    };
    DrawIcon drawIcon_;
    std::string drawingPath_;
    // Mutable: icons are drawn when a view first asks for them, so only rows seen are drawn.
    mutable std::vector<Row> rows_;
};

}  // namespace vantor
