// Draws block icons away from the GUI thread: each request reads its drawing by path on the
// icon thread (no database is ever shared with the GUI), draws the block there and files the
// picture in the disk cache; the icon comes back as a signal on the thread that asked.
#pragma once

#include <QImage>
#include <QObject>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vantor/ui/BlockIconCache.h"

namespace vantor {

class BlockIconWorker : public QObject {
    Q_OBJECT
public:
    // `cacheFolder` empty: nothing is kept on disk.
    explicit BlockIconWorker(std::string cacheFolder, QObject* parent = nullptr);
    // Drops what is queued and waits for the icon being drawn: the module may be unloaded
    // next, and a worker must not be left running its code.
    ~BlockIconWorker() override;

    // The user's cache folder for icons (under the system's cache location, never beside the
    // program or the drawings).
    static std::string defaultCacheFolder();

    const BlockIconCache& cache() const;
    // The icon kept on disk for the key, or a null image. Cheap enough to call while painting.
    QImage cached(const BlockIconKey& key) const;

    // Asks for the icon of `block` in the drawing at `drawingPath`, `pixels` square. Requests
    // made in one pass of the event loop share one read of the drawing. iconReady follows,
    // with a null image when the block cannot be drawn.
    void request(std::uint64_t ticket, const std::string& drawingPath, const std::string& block,
                 int pixels);
    // Requests of any other ticket are not drawn any more; their icons would be thrown away.
    void keepOnly(std::uint64_t ticket);

    // Waits until nothing is queued or being drawn; for tests and benchmarks.
    bool waitForIdle(int milliseconds = -1);

signals:
    void iconReady(quint64 ticket, const QString& block, const QImage& image);

private:
    struct Request {
        std::uint64_t ticket = 0;
        std::string drawingPath;
        std::string block;
        int pixels = 0;
    };
    struct Shared;

    void flush();
    // On the icon thread: the blocks of one request batch, the drawing read once for them.
    static void drawBatch(Shared& shared, const Request& first, const std::vector<std::string>& blocks);

    std::shared_ptr<Shared> shared_;
    std::vector<Request> pending_;
    bool flushQueued_ = false;
};

}  // namespace vantor
