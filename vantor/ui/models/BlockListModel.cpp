// The block list as a table model.
#include "vantor/ui/models/BlockListModel.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <atomic>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "vantor/placement/PreviewBitmap.h"
#include "vantor/ui/models/BlockIconWorker.h"
#include "vantor/ui/models/BlockLookup.h"
#include "vantor/ui/models/ModelText.h"

namespace vantor {

namespace {

// The block's stored icon; a null image when it stores none or none that reads.
QImage storedPreview(cad::db::Database& database, const std::string& name) {
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
    return image;
}

// The picture as an icon of exactly `pixels` square: scaled to fit, on the drawn icons' black.
QIcon fitted(const QImage& image, int pixels) {
    if (image.width() == pixels && image.height() == pixels) return QIcon(QPixmap::fromImage(image));
    QImage square(pixels, pixels, QImage::Format_RGB32);
    square.fill(Qt::black);
    const QImage scaled = image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&square);
    painter.drawImage((pixels - scaled.width()) / 2, (pixels - scaled.height()) / 2, scaled);
    painter.end();
    return QIcon(QPixmap::fromImage(square));
}

// A tile on the drawn icons' black: three dots while the icon is on its way, a crossed frame
// when there is none to come.
QIcon tile(int pixels, bool failed) {
    QImage image(pixels, pixels, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor grey(110, 110, 110);
    const double inset = pixels * 0.12;
    const QRectF frame(inset, inset, pixels - 2 * inset, pixels - 2 * inset);
    painter.setPen(QPen(grey, 1.0, failed ? Qt::SolidLine : Qt::DotLine));
    painter.drawRect(frame);
    if (failed) {
        painter.drawLine(frame.topLeft(), frame.bottomRight());
        painter.drawLine(frame.bottomLeft(), frame.topRight());
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(grey);
        const double r = std::max(1.0, pixels / 32.0);
        for (int i = -1; i <= 1; ++i)
            painter.drawEllipse(QPointF(pixels / 2.0 + i * 4 * r, pixels / 2.0), r, r);
    }
    painter.end();
    return QIcon(QPixmap::fromImage(image));
}

std::uint64_t nextTicket() {
    // Process-wide, so two models sharing a worker never take each other's icons.
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

}  // namespace

BlockListModel::BlockListModel(QObject* parent) : QAbstractTableModel(parent) {
    newTicket();
}

void BlockListModel::setIconWorker(BlockIconWorker* worker) {
    if (worker_ != nullptr) disconnect(worker_, nullptr, this, nullptr);
    worker_ = worker;
    if (worker_ != nullptr)
        connect(worker_, &BlockIconWorker::iconReady, this, &BlockListModel::iconReady);
    newTicket();
}

void BlockListModel::newTicket() {
    ticket_ = nextTicket();
    if (worker_ != nullptr) worker_->keepOnly(ticket_);
    waiting_ = {};
    failed_ = {};
}

void BlockListModel::setIconPixels(int pixels) {
    pixels = blockIconPixels(pixels);
    if (pixels == pixels_) return;
    pixels_ = pixels;
    newTicket();
    for (Row& row : rows_) {
        row.state = IconState::Unasked;  // `drawn` stays until replaced
        row.storedIcon = {};
    }
    if (!rows_.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::DecorationRole});
}

void BlockListModel::setBlocks(std::string drawingPath, const std::vector<BlockListEntry>& blocks,
                               cad::db::Database* database) {
    beginResetModel();
    newTicket();
    drawingPath_ = std::move(drawingPath);
    stamp_ = drawingPath_.empty() ? FileStamp{} : fileStampOf(drawingPath_);
    rows_.clear();
    rowOfBlock_.clear();
    rows_.reserve(blocks.size());
    for (const BlockListEntry& entry : blocks) {
        QImage stored;
        if (entry.hasPreviewIcon && database != nullptr) stored = storedPreview(*database, entry.name);
        rowOfBlock_.emplace(entry.name, static_cast<int>(rows_.size()));
        rows_.push_back({entry, stored, {}, {}, IconState::Unasked});
    }
    endResetModel();
}

void BlockListModel::clear() {
    beginResetModel();
    newTicket();
    drawingPath_.clear();
    stamp_ = {};
    rows_.clear();
    rowOfBlock_.clear();
    endResetModel();
}

std::string BlockListModel::blockAt(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return {};
    return rows_[row].entry.name;
}

bool BlockListModel::iconPending(int row) const {
    if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return false;
    return rows_[row].state == IconState::Waiting;
}

int BlockListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int BlockListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

QIcon BlockListModel::decoration(Row& row) const {
    if (!row.stored.isNull()) {
        if (row.storedIcon.isNull()) row.storedIcon = fitted(row.stored, pixels_);
        return row.storedIcon;
    }
    if (worker_ == nullptr) return {};
    auto& self = const_cast<BlockListModel&>(*this);
    if (row.state == IconState::Unasked) {
        // The disk first: a drawing shown before shows its icons without waiting at all.
        const QImage kept = worker_->cached({drawingPath_, stamp_, row.entry.name, pixels_});
        if (!kept.isNull()) {
            row.drawn = fitted(kept, pixels_);
            row.state = IconState::Drawn;
        } else {
            row.state = IconState::Waiting;
            worker_->request(ticket_, drawingPath_, row.entry.name, pixels_);
        }
    }
    switch (row.state) {
        case IconState::Drawn:
            return row.drawn;
        case IconState::Failed:
            if (self.failed_.isNull()) self.failed_ = tile(pixels_, true);
            return failed_;
        default:
            if (!row.drawn.isNull()) {
                const QSize now = row.drawn.availableSizes().value(0);
                if (now != QSize(pixels_, pixels_))
                    row.drawn = fitted(row.drawn.pixmap(now).toImage(), pixels_);
                return row.drawn;
            }
            if (self.waiting_.isNull()) self.waiting_ = tile(pixels_, false);
            return waiting_;
    }
}

void BlockListModel::iconReady(quint64 ticket, const QString& block, const QImage& image) {
    if (ticket != ticket_) return;  // drawn for blocks or a size this model no longer shows
    const auto found = rowOfBlock_.find(block.toStdString());
    if (found == rowOfBlock_.end()) return;
    Row& row = rows_[found->second];
    if (row.state != IconState::Waiting) return;
    if (image.isNull()) {
        row.state = IconState::Failed;
        row.drawn = {};
    } else {
        row.state = IconState::Drawn;
        row.drawn = fitted(image, pixels_);
    }
    const QModelIndex at = index(found->second, 0);
    emit dataChanged(at, at, {Qt::DecorationRole});
}

QVariant BlockListModel::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || static_cast<std::size_t>(index.row()) >= rows_.size()) return {};
    Row& row = rows_[index.row()];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return qText(index.column() == 0 ? row.entry.name : row.entry.description);
        case Qt::DecorationRole: {
            if (index.column() != 0) return {};
            const QIcon icon = decoration(row);
            if (!icon.isNull()) return icon;
            return {};
        }
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
