// Drawing block icons on a worker thread.
#include "vantor/ui/models/BlockIconWorker.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>
#include <atomic>
#include <mutex>

#include "cad/db/Database.h"
#include "vantor/ui/models/BlockPreview.h"

namespace vantor {

struct BlockIconWorker::Shared {
    explicit Shared(std::string folder) : cache(std::move(folder)) {}

    const BlockIconCache cache;
    std::atomic<std::uint64_t> wanted{0};  // the one ticket still drawn; 0 while any is
    std::atomic<bool> stopping{false};

    std::mutex receiverMutex;
    BlockIconWorker* receiver = nullptr;  // null once the worker is going

    // The drawing read last, kept for the next batch of it (scrolling asks batch after batch).
    // Only ever used by the one task running, under drawingMutex.
    std::mutex drawingMutex;
    std::string heldPath;
    FileStamp heldStamp;
    std::unique_ptr<cad::db::Database> held;

    bool wants(std::uint64_t ticket) const {
        const std::uint64_t only = wanted.load();
        return !stopping.load() && (only == 0 || only == ticket);
    }

    void post(std::uint64_t ticket, const std::string& block, const QImage& image) {
        std::lock_guard lock(receiverMutex);
        if (receiver == nullptr) return;
        // Queued to the worker's own thread; an event still queued when the worker goes is
        // dropped with it.
        BlockIconWorker* to = receiver;
        QMetaObject::invokeMethod(
            to, [to, ticket, name = QString::fromStdString(block), image] { emit to->iconReady(ticket, name, image); },
            Qt::QueuedConnection);
    }

    cad::db::Database* drawing(const std::string& path, const FileStamp& stamp) {
        if (held && heldPath == path && heldStamp == stamp) return held.get();
        held.reset();
        auto database = std::make_unique<cad::db::Database>(false, true);
        // Deny-none: the worker must never be why the window or another program is refused
        // the drawing, and a save replaces the file by renaming, which a read survives.
        if (database->readDwgFile(path, cad::sys::ShareMode::DenyNone, true) == cad::ErrorStatus::eOk)
            held = std::move(database);
        heldPath = path;
        heldStamp = stamp;
        return held.get();
    }
};

namespace {

QByteArray pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

}  // namespace

BlockIconWorker::BlockIconWorker(std::string cacheFolder, QObject* parent)
    : QObject(parent), shared_(std::make_shared<Shared>(std::move(cacheFolder))) {
    shared_->receiver = this;
    // One drawing at a time: icons are cheap next to reading a drawing, the drawing read
    // once serves the batches after it, and the machine's other core stays the user's.
    pool_.setMaxThreadCount(1);
}

BlockIconWorker::~BlockIconWorker() {
    shared_->stopping = true;
    {
        std::lock_guard lock(shared_->receiverMutex);
        shared_->receiver = nullptr;
    }
    pool_.clear();
    pool_.waitForDone();
}

std::string BlockIconWorker::defaultCacheFolder() {
    const QString root = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (root.isEmpty()) return {};
    return (root + QStringLiteral("/vantor/block-icons")).toStdString();
}

const BlockIconCache& BlockIconWorker::cache() const {
    return shared_->cache;
}

QImage BlockIconWorker::cached(const BlockIconKey& key) const {
    const std::optional<std::string> png = shared_->cache.load(key);
    if (!png) return {};
    // A file whose checksum holds but whose picture does not decode is as good as missing.
    return QImage::fromData(reinterpret_cast<const uchar*>(png->data()), static_cast<int>(png->size()), "PNG");
}

void BlockIconWorker::request(std::uint64_t ticket, const std::string& drawingPath,
                              const std::string& block, int pixels) {
    pending_.push_back({ticket, drawingPath, block, pixels});
    if (flushQueued_) return;
    flushQueued_ = true;
    QTimer::singleShot(0, this, [this] { flush(); });
}

void BlockIconWorker::keepOnly(std::uint64_t ticket) {
    shared_->wanted = ticket;
    std::erase_if(pending_, [ticket](const Request& request) { return request.ticket != ticket; });
}

void BlockIconWorker::flush() {
    flushQueued_ = false;
    // One task per drawing and size, blocks in the order asked (the rows in view first).
    while (!pending_.empty()) {
        const Request first = pending_.front();
        std::vector<std::string> blocks;
        std::erase_if(pending_, [&](const Request& request) {
            if (request.ticket != first.ticket || request.drawingPath != first.drawingPath ||
                request.pixels != first.pixels)
                return false;
            if (std::find(blocks.begin(), blocks.end(), request.block) == blocks.end())
                blocks.push_back(request.block);
            return true;
        });
        pool_.start([shared = shared_, first, blocks = std::move(blocks)] {
            if (!shared->wants(first.ticket)) return;
            std::lock_guard lock(shared->drawingMutex);
            const FileStamp stamp = fileStampOf(first.drawingPath);
            cad::db::Database* database = shared->drawing(first.drawingPath, stamp);
            for (const std::string& block : blocks) {
                if (!shared->wants(first.ticket)) return;
                QImage image;
                if (database != nullptr)
                    image = drawBlockPreview(
                        *database, {block, QSize(first.pixels, first.pixels), std::nullopt, false});
                // Filed only when the file is still what was read, so an icon is never kept
                // under a state of the drawing it was not drawn from.
                if (!image.isNull() && stamp.valid() && fileStampOf(first.drawingPath) == stamp) {
                    const QByteArray png = pngOf(image);
                    shared->cache.store({first.drawingPath, stamp, block, first.pixels},
                                        std::string_view(png.constData(), png.size()));
                }
                shared->post(first.ticket, block, image);
            }
        });
    }
}

bool BlockIconWorker::waitForIdle(int milliseconds) {
    if (flushQueued_) flush();
    const bool done = pool_.waitForDone(milliseconds);
    QCoreApplication::sendPostedEvents(this);
    return done;
}

}  // namespace vantor
