// The blocks of one drawing as a table: "Block name" and "Description", with each block's
// icon for the icon display: its stored preview, or one drawn for it on a worker thread.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "vantor/store/ListBase.h"
#include "vantor/ui/BlockIconCache.h"

namespace cad::db {
class Database;
}

namespace vantor {

class BlockIconWorker;

class BlockListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumnCount = 2;

    explicit BlockListModel(QObject* parent = nullptr);

    // Draws the icons of blocks that store none; it must outlive the model's use of it.
    // Without one such a block shows no icon.
    void setIconWorker(BlockIconWorker* worker);
    // The side of every icon in pixels, within what the view offers. A change draws the
    // icons again at the new size; each shows its old picture enlarged until the new one
    // arrives. Every icon is exactly this size (a stored preview is fitted into it), since a
    // list view lays out its items by the size of the icons it is given.
    void setIconPixels(int pixels);
    int iconPixels() const { return pixels_; }

    // The blocks listed from `database` (its block table, as CListBase lists them), with
    // their stored icons. `drawingPath` names where they come from; icons to be drawn are
    // drawn from the file at that path, never from `database`, which belongs to this thread.
    void setBlocks(std::string drawingPath, const std::vector<BlockListEntry>& blocks,
                   cad::db::Database* database);
    void clear();

    const std::string& drawingPath() const { return drawingPath_; }
    // The block's name at `row`; empty when there is none.
    std::string blockAt(int row) const;
    // True while the icon of `row` is asked for and has not arrived.
    bool iconPending(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    enum class IconState { Unasked, Waiting, Drawn, Failed };
    struct Row {
        BlockListEntry entry;
        QImage stored;      // the drawing's own preview, never replaced
        QIcon storedIcon;   // it fitted to the current size
        QIcon drawn;        // at the current size, or the previous one while it is redrawn
        IconState state = IconState::Unasked;
    };

    // A new ticket: icons still on their way for the old one are not wanted any more.
    void newTicket();
    void iconReady(quint64 ticket, const QString& block, const QImage& image);
    QIcon decoration(Row& row) const;

    BlockIconWorker* worker_ = nullptr;
    int pixels_ = kDefaultBlockIconPixels;
    std::uint64_t ticket_ = 0;
    std::string drawingPath_;
    FileStamp stamp_;  // of the drawing when its blocks were listed
    // Mutable: icons are looked up and asked for when a view first shows their row, so only
    // rows seen cost anything.
    mutable std::vector<Row> rows_;
    std::unordered_map<std::string, int> rowOfBlock_;
    QIcon waiting_;  // shown until a drawn icon arrives
    QIcon failed_;   // a block that cannot be drawn (its drawing unreadable, say)
};

}  // namespace vantor
