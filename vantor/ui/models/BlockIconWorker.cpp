// Drawing block icons on a worker thread.
#include "vantor/ui/models/BlockIconWorker.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QStandardPaths>
#include <QThreadPool>
#include <QTimer>
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "cad/db/Database.h"
#include "vantor/ui/models/BlockPreview.h"

namespace vantor {

struct BlockIconWorker::Shared {
    explicit Shared(std::string folder) : cache(std::move(folder)) {}

    const BlockIconCache cache;
    std::atomic<std::uint64_t> wanted{0};  // the one ticket still drawn; 0 while any is
    std::atomic<bool> stopping{false};

    // Tasks handed to the icon thread and not finished, so the worker can wait for its own.
    std::mutex tasksMutex;
    std::condition_variable tasksDone;
    int tasks = 0;

    void taskFinished() {
        std::lock_guard lock(tasksMutex);
        if (--tasks == 0) tasksDone.notify_all();
    }
    bool waitForTasks(int milliseconds) {
        std::unique_lock lock(tasksMutex);
        if (milliseconds < 0) {
            tasksDone.wait(lock, [this] { return tasks == 0; });
            return true;
        }
        return tasksDone.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return tasks == 0; });
    }

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

// One thread draws the icons of the whole process, and it never ends. Fonts a drawing's texts
// need are loaded by the thread that first draws them and kept by the text engine for the
// process; Qt lets a thread's font files go when that thread ends, which would leave those
// fonts pointing at nothing for the next text the window draws. One thread, too, because the
// drawing read once serves the batches after it and the machine's other core stays the user's.
// Made once and never destroyed: the module may be unloaded, the thread waits in Qt's code.
QThreadPool& iconThread() {
    static QThreadPool* const pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(1);
        made->setExpiryTimeout(-1);
        return made;
    }();
    return *pool;
}

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
}

BlockIconWorker::~BlockIconWorker() {
    shared_->stopping = true;
    {
        std::lock_guard lock(shared_->receiverMutex);
        shared_->receiver = nullptr;
    }
    // Tasks still queued return at once; the one drawing finishes its block.
    shared_->waitForTasks(-1);
    std::lock_guard lock(shared_->drawingMutex);
    shared_->held.reset();
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
        {
            std::lock_guard lock(shared_->tasksMutex);
            ++shared_->tasks;
        }
        iconThread().start([shared = shared_, first, blocks = std::move(blocks)] {
            drawBatch(*shared, first, blocks);
            shared->taskFinished();
        });
    }
}

void BlockIconWorker::drawBatch(Shared& shared, const Request& first,
                                const std::vector<std::string>& blocks) {
    if (!shared.wants(first.ticket)) return;
    std::lock_guard lock(shared.drawingMutex);
    const FileStamp stamp = fileStampOf(first.drawingPath);
    cad::db::Database* database = shared.drawing(first.drawingPath, stamp);
    for (const std::string& block : blocks) {
        if (!shared.wants(first.ticket)) return;
        QImage image;
        if (database != nullptr)
            image = drawBlockPreview(*database,
                                     {block, QSize(first.pixels, first.pixels), std::nullopt, false});
        // Filed only when the file is still what was read, so an icon is never kept under a
        // state of the drawing it was not drawn from.
        if (!image.isNull() && stamp.valid() && fileStampOf(first.drawingPath) == stamp) {
            const QByteArray png = pngOf(image);
            shared.cache.store({first.drawingPath, stamp, block, first.pixels},
                               std::string_view(png.constData(), png.size()));
        }
        shared.post(first.ticket, block, image);
    }
}

bool BlockIconWorker::waitForIdle(int milliseconds) {
    if (flushQueued_) flush();
    const bool done = shared_->waitForTasks(milliseconds);
    QCoreApplication::sendPostedEvents(this);
    return done;
}

}  // namespace vantor
