// Block icons of the sample library: one drawn as the worker draws it (picture, PNG, cache
// file), at the icon view's sizes; the first icon of a drawing not read yet (the read
// included); an icon taken from the disk cache, as a second showing takes it; and a request's
// round trip through the worker thread.
#include <QBuffer>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <filesystem>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/ListBase.h"
#include "vantor/ui/models/BlockIconWorker.h"
#include "vantor/ui/models/BlockPreview.h"
#include "bench/QtBenchmarkMain.h"

namespace {

using namespace vantor;

const std::string kSample = std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf";

// The sample's blocks that store no icon of their own: the ones the worker draws.
std::vector<std::string> blocksToDraw(cad::db::Database& database) {
    cad::app::ScriptedDialogs dialogs;
    CListBase list(dialogs);
    std::vector<std::string> names;
    if (!list.build(database)) return names;
    for (const BlockListEntry& entry : list.blocks())
        if (!entry.hasPreviewIcon) names.push_back(entry.name);
    return names;
}

QByteArray png(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// Every block in turn, so the figure is the sample's average part, not its simplest.
void BM_IconDrawn(benchmark::State& state) {
    const int pixels = static_cast<int>(state.range(0));
    auto database = openLibraryDrawing(kSample);
    const std::vector<std::string> blocks = blocksToDraw(*database);
    if (blocks.empty()) {
        state.SkipWithError("no block to draw");
        return;
    }
    QTemporaryDir folder;
    const BlockIconCache cache(folder.path().toStdString());
    const FileStamp stamp = fileStampOf(kSample);
    std::size_t next = 0;
    for (auto _ : state) {
        const std::string& block = blocks[next++ % blocks.size()];
        const QImage image = drawBlockPreview(*database, {block, QSize(pixels, pixels), std::nullopt, false});
        if (image.isNull()) state.SkipWithError("not drawn");
        const QByteArray bytes = png(image);
        cache.store({kSample, stamp, block, pixels}, std::string_view(bytes.constData(), bytes.size()));
    }
    state.counters["blocks"] = static_cast<double>(blocks.size());
}
BENCHMARK(BM_IconDrawn)->Arg(48)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);

// The worst wait for a tile: the drawing read by path on the worker before its first icon.
void BM_FirstIconOfADrawing(benchmark::State& state) {
    auto database = openLibraryDrawing(kSample);
    const std::string block = blocksToDraw(*database).front();
    for (auto _ : state) {
        cad::db::Database read(false, true);
        if (read.readDwgFile(kSample, cad::sys::ShareMode::DenyNone, true) != cad::ErrorStatus::eOk)
            state.SkipWithError("not read");
        const QImage image = drawBlockPreview(read, {block, QSize(48, 48), std::nullopt, false});
        if (image.isNull()) state.SkipWithError("not drawn");
    }
}
BENCHMARK(BM_FirstIconOfADrawing)->Unit(benchmark::kMillisecond);

void BM_IconFromDiskCache(benchmark::State& state) {
    auto database = openLibraryDrawing(kSample);
    const std::string block = blocksToDraw(*database).front();
    QTemporaryDir folder;
    BlockIconWorker worker(folder.path().toStdString());
    const BlockIconKey key{kSample, fileStampOf(kSample), block, 48};
    const QByteArray bytes = png(drawBlockPreview(*database, {block, QSize(48, 48), std::nullopt, false}));
    worker.cache().store(key, std::string_view(bytes.constData(), bytes.size()));
    for (auto _ : state) {
        const QImage image = worker.cached(key);
        if (image.isNull()) state.SkipWithError("not cached");
    }
}
BENCHMARK(BM_IconFromDiskCache)->Unit(benchmark::kMicrosecond);

// A request to its signal, the drawing already held by the worker: what a tile scrolled into
// view waits.
void BM_IconThroughTheWorker(benchmark::State& state) {
    auto database = openLibraryDrawing(kSample);
    const std::vector<std::string> blocks = blocksToDraw(*database);
    QTemporaryDir folder;
    BlockIconWorker worker(folder.path().toStdString());
    worker.request(1, kSample, blocks.front(), 48);  // reads the drawing once
    worker.waitForIdle();
    std::size_t next = 0;
    for (auto _ : state) {
        worker.request(1, kSample, blocks[next++ % blocks.size()], 48);
        worker.waitForIdle();
    }
}
BENCHMARK(BM_IconThroughTheWorker)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return runQtBenchmarks<QGuiApplication>(argc, argv); }
