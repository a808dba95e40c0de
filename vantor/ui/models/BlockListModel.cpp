// The block list as a table model.
#include "vantor/ui/models/BlockListModel.h"

#include <QImage>
#include <QPixmap>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "vantor/placement/PreviewBitmap.h"
#include "vantor/ui/models/BlockLookup.h"
#include "vantor/ui/models/ModelText.h"

namespace vantor {

namespace {

// The block's stored icon as a Qt icon; a null icon when it stores none or none that reads.
QIcon storedIcon(cad::db::Database& database, const std::string& name) {
    auto block = cad::db::open<cad::db::BlockTableRecord>(blockNamed(database, name),
                                                          cad::db::OpenMode::ForRead);
    PreviewImage preview;
    if (!block || PreviewBitmap::fromBlock(*block, preview) < 0 || preview.width <= 0 ||
        preview.height <= 0)
        return {};
    QImage image(preview.width, preview.height, QImage::Format_RGB32);
    for (int y = 0; y < preview.height; ++y)
        for (int x = 0; x < preview.width; ++x) {
            const PreviewImage::Rgb& rgb = preview.at(x, y);
            image.setPixel(x, y, qRgb(rgb.red, rgb.green, rgb.blue));
        }
    return QIcon(QPixmap::fromImage(image));
}

}  // namespace

BlockListModel::BlockListModel(QObject* parent) : QAbstractTableModel(parent) {}

void BlockListModel::setBlocks(std::string drawingPath, const std::vector<BlockListEntry>& blocks,
                               cad::db::Database* database) {
    beginResetModel();
    drawingPath_ = std::move(drawingPath);
    rows_.clear();
    rows_.reserve(blocks.size());
    for (const BlockListEntry& entry : blocks) {
        QIcon icon;
        if (entry.hasPreviewIcon && database != nullptr) icon = storedIcon(*database, entry.name);
        rows_.push_back({entry, icon, !icon.isNull()});
    }
    endResetModel();
}

void BlockListModel::clear() {
    beginResetModel();
    drawingPath_.clear();
    rows_.clear();
    endResetModel();
}

std::string BlockListModel::blockAt(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return {};
    return rows_[row].entry.name;
}

int BlockListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int BlockListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant BlockListModel::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || static_cast<std::size_t>(index.row()) >= rows_.size()) return {};
    Row& row = rows_[index.row()];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return qText(index.column() == 0 ? row.entry.name : row.entry.description);
        case Qt::DecorationRole:
            if (index.column() != 0) return {};
            if (!row.tried && drawIcon_) row.icon = drawIcon_(drawingPath_, row.entry.name);
            row.tried = true;
            if (!row.icon.isNull()) return row.icon;
            return {};
        default:
            return {};
    }
}

QVariant BlockListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
        case 0:
            return QStringLiteral("Block name");
        case 1:
            return QStringLiteral("Description");
        default:
            return {};
    }
}

}  // namespace vantor
