// The drawing view's speed on a large drawing: 200,000 lines (the drawing the reading
// benchmark writes, made here in memory), painted offscreen into a 1920x1080 image as the
// view paints its kept picture. Opening (geometry and index built, first picture), a full
// redraw at the extents and zoomed in 20 times, one pan frame, one frame of dragging a block
// of 5,000 entities over the picture, and the entity and snap under the cursor.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <memory>

#include "bench/ResidentMemory.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Text.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/DrawingView.h"
#include "cad/gs/EntityPicker.h"
#include "cad/gs/ObjectSnap.h"
#include "cad/gs/SceneRenderer.h"
#include "bench/QtBenchmarkMain.h"

namespace {

using namespace cad::db;

constexpr int kLines = 200'000;
constexpr int kBlockEntities = 5'000;
constexpr int kWidth = 1920, kHeight = 1080;

std::unique_ptr<Database> makeDrawing() {
    auto db = std::make_unique<Database>();
    auto layer = std::make_unique<LayerTableRecord>();
    layer->setName("PARTS");
    ObjectId parts;
    open<SymbolTable>(db->layerTableId(), OpenMode::ForWrite)->add(std::move(layer), parts);
    auto model = open<BlockTableRecord>(db->modelSpaceId(), OpenMode::ForWrite);
    for (int i = 0; i < kLines; ++i) {
        auto line =
            std::make_unique<Line>(cad::ge::Point3d{i * 0.731, i * 1.377 - 250.5, 0.0},
                                   cad::ge::Point3d{i * 0.731 + 12.25, i * 1.377 - 117.125, 0.0});
        line->setLayer(i % 3 ? parts : db->layerZero());
        ObjectId id;
        model->appendEntity(std::move(line), id);
    }
    model.close();
    // A part of 5,000 entities: lines and circles on a grid.
    auto block = std::make_unique<BlockTableRecord>();
    block->setName("BIG_PART");
    ObjectId blockId;
    open<SymbolTable>(db->blockTableId(), OpenMode::ForWrite)->add(std::move(block), blockId);
    auto part = open<BlockTableRecord>(blockId, OpenMode::ForWrite);
    for (int i = 0; i < kBlockEntities; ++i) {
        const double x = (i % 100) * 10.0, y = (i / 100) * 10.0;
        ObjectId id;
        if (i % 2)
            part->appendEntity(std::make_unique<Circle>(cad::ge::Point3d{x, y, 0}, cad::ge::Vector3d::kZAxis, 4.0), id);
        else
            part->appendEntity(std::make_unique<Line>(cad::ge::Point3d{x, y, 0}, cad::ge::Point3d{x + 8, y + 8, 0}), id);
    }
    return db;
}

Database& drawing() {
    static std::unique_ptr<Database> db = makeDrawing();
    return *db;
}

ObjectId bigPart(Database& db) {
    ObjectId id;
    open<SymbolTable>(db.blockTableId(), OpenMode::ForRead)->getAt("BIG_PART", id);
    return id;
}

void BM_OpenView(benchmark::State& state) {
    for (auto _ : state) {
        cad::gs::DrawingView view(drawing());
        view.setDeviceSize(kWidth, kHeight);
        benchmark::DoNotOptimize(view.image().constBits());
    }
}
BENCHMARK(BM_OpenView)->Unit(benchmark::kMillisecond);

void redraw(benchmark::State& state, double zoom) {
    cad::gs::DrawingView view(drawing());
    view.setDeviceSize(kWidth, kHeight);
    view.zoomAbout(kWidth / 2.0, kHeight / 2.0, zoom);
    view.image();
    for (auto _ : state) {
        view.redraw();
        benchmark::DoNotOptimize(view.image().constBits());
    }
}
void BM_RedrawAtExtents(benchmark::State& state) { redraw(state, 1.0); }
void BM_RedrawZoomed20x(benchmark::State& state) { redraw(state, 20.0); }
BENCHMARK(BM_RedrawAtExtents)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedrawZoomed20x)->Unit(benchmark::kMillisecond);

void BM_PanFrame(benchmark::State& state) {
    cad::gs::DrawingView view(drawing());
    view.setDeviceSize(kWidth, kHeight);
    view.image();
    int step = 0;
    for (auto _ : state) {
        // A mouse move's worth of pan, back and forth so the view stays on the drawing.
        const int dx = (step++ / 50) % 2 ? -7 : 7;
        view.panBy(dx, 3 * (dx > 0 ? 1 : -1));
        benchmark::DoNotOptimize(view.image().constBits());
    }
}
BENCHMARK(BM_PanFrame)->Unit(benchmark::kMillisecond);

void BM_DragPreviewFrame(benchmark::State& state) {
    Database& db = drawing();
    cad::gs::DrawingView view(db);
    view.setDeviceSize(kWidth, kHeight);
    const QImage& picture = view.image();
    QImage frame(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    BlockReference reference({0, 0, 0}, bigPart(db));
    const cad::gs::Box2d visible = view.transform().visibleBox();
    // The part a quarter of the view wide, as a user drags a part to place it.
    reference.setScaleFactors(cad::ge::Scale3d(visible.width() / 4 / 1000.0));
    int step = 0;
    for (auto _ : state) {
        // Each frame: the part moved under the cursor, its geometry made, the kept picture
        // and the part painted.
        const double t = (step++ % 100) / 100.0;
        reference.setPosition({visible.minX + visible.width() * t, visible.minY + visible.height() * t, 0});
        const cad::gs::DisplayList dragged = view.scene().entityList(reference);
        QPainter painter(&frame);
        painter.drawImage(0, 0, picture);
        cad::gs::RenderOptions options;
        options.override = Qt::white;
        cad::gs::SceneRenderer renderer(view.scene(), painter, options);
        renderer.drawEntities(dragged, view.transform().worldToDevice(), {0, 0, kWidth, kHeight});
    }
}
BENCHMARK(BM_DragPreviewFrame)->Unit(benchmark::kMillisecond);

// A drawing of 20,000 short texts (the attributes of placed parts): building its geometry, and
// what each text costs in memory.
void BM_BuildTexts(benchmark::State& state) {
    Database db;
    {
        auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite);
        for (int i = 0; i < 20'000; ++i) {
            ObjectId id;
            model->appendEntity(std::make_unique<Text>(cad::ge::Point3d{(i % 100) * 40.0, (i / 100) * 5.0, 0},
                                                       "V-" + std::to_string(i) + " 게이트 밸브", ObjectId{}, 2.5),
                                id);
        }
    }
    std::size_t bytes = 0;
    for (auto _ : state) {
        cad::gs::DrawingScene scene(db);
        const long before = currentRssKb();
        benchmark::DoNotOptimize(scene.blockList(db.modelSpaceId()).items().size());
        bytes = std::max(bytes, std::size_t(std::max(0L, currentRssKb() - before)) * 1024);
    }
    state.counters["bytes_per_text"] = double(bytes) / 20'000;
}
BENCHMARK(BM_BuildTexts)->Unit(benchmark::kMillisecond)->Iterations(3);

// The entity under the cursor and the snap there, zoomed in 20 times as a user is when aiming.
void BM_PickAndSnap(benchmark::State& state) {
    Database& db = drawing();
    cad::gs::DrawingView view(db);
    view.setDeviceSize(kWidth, kHeight);
    view.zoomAbout(kWidth / 2.0, kHeight / 2.0, 20.0);
    const double pixel = 1.0 / view.transform().pixelsPerUnit();
    const cad::gs::EntityPicker picker(view.scene(), view.block());
    int step = 0;
    for (auto _ : state) {
        const cad::ge::Point2d at = view.toWorld(900 + step % 100, 500 + step % 77);
        ++step;
        benchmark::DoNotOptimize(picker.entitiesAt(at, 4 * pixel));
        benchmark::DoNotOptimize(cad::gs::findSnap(view.scene(), view.block(), at, 10 * pixel,
                                                   cad::gs::kSnapEndpoint | cad::gs::kSnapMidpoint |
                                                       cad::gs::kSnapIntersection | cad::gs::kSnapNearest));
    }
}
BENCHMARK(BM_PickAndSnap)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) { return runQtBenchmarks<QGuiApplication>(argc, argv); }
