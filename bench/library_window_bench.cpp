// The library window's speed with a large registry: 1,000 registered library drawings (copies
// of the sample library, about 30,000 parts, their tree caches current), and a group of 1,000
// records. The window's first paint, filling the part list, a block's preview and switching to
// the large management window.
#include <QApplication>
#include <QComboBox>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/LibraryDrawingCache.h"
#include "vantor/store/ListBase.h"
#include "vantor/store/PartRecord.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/models/BlockPreview.h"
#include "vantor/ui/window/UblMainFrame.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/ui/window/UblPreviewView.h"
#include "vantor/ui/window/VNTreeViewEx.h"
#include "bench/QtBenchmarkMain.h"

namespace {

namespace fs = std::filesystem;
using namespace vantor;

constexpr int kDrawings = 1000;
constexpr int kGroupRecords = 1000;

struct NoTree : TreeRebuilder {
    void rebuildFromList(DrawingList&) override {}
};

// The registry, made once and kept between runs under the system's temporary folder: window 0
// holds the drawing with the large group, window 1 the 1,000 drawings.
struct Registry {
    fs::path folder = fs::temp_directory_path() / "vantor-library-window-bench";
    std::string bigGroupDrawing;
    cad::app::ScriptedDialogs dialogs;
    ModuleSettings settings;
    InsertionStates insertions;

    Registry() {
        settings.moduleFolder = folder.string() + "/";
        bigGroupDrawing = (folder / "big-group.dxf").string();
        if (!fs::exists(folder / "ready")) make();
        settings.curListName = "주 관리창";
    }

    void make() {
        fs::remove_all(folder);
        fs::create_directories(folder / "drawings");
        const std::string sample = std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf";
        DrawingList list;
        NoTree rebuilder;
        ManagementWindows windows(settings, list, rebuilder, dialogs);
        windows.loadTabList();
        dialogs.pushText(std::string("큰 관리창"));
        windows.addWindow();

        makeBigGroup(sample);
        list.addPath(bigGroupDrawing, dialogs);
        windows.saveList(0);
        list.clear();
        CVNTreeBase tree(dialogs);
        for (int i = 0; i < kDrawings; ++i) {
            const fs::path copy = folder / "drawings" / ("parts-" + std::to_string(i) + ".dxf");
            fs::copy_file(sample, copy);
            list.addPath(copy.string(), dialogs);
            tree.loadDrawing(copy.string());  // writes its current cache
        }
        windows.saveList(1);
        tree.loadDrawing(bigGroupDrawing);
        std::ofstream(folder / "ready") << "made\n";
    }

    // The sample with a group of 1,000 records in its user library.
    void makeBigGroup(const std::string& sample) {
        auto db = openLibraryDrawing(sample);
        const cad::db::ObjectId library = libraryDictionaryId(*db, LibraryKind::User, true);
        cad::db::ObjectId group;
        {
            auto dictionary = cad::db::open<cad::db::Dictionary>(library, cad::db::OpenMode::ForWrite);
            dictionary->setAt("천 개", std::make_unique<cad::db::Dictionary>(), group);
        }
        for (int i = 0; i < kGroupRecords; ++i) {
            PartRecord record;
            record.group = "천 개";
            record.kname = "육각볼트";
            record.ename = "Hex bolt";
            record.spec = "M" + std::to_string(6 + i % 30) + "x" + std::to_string(10 + i);
            record.material = "SS400";
            record.viewBlocks[0] = "GV-10K-100A-F";
            auto dictionary = cad::db::open<cad::db::Dictionary>(group, cad::db::OpenMode::ForWrite);
            auto xrecord = std::make_unique<cad::db::Xrecord>();
            xrecord->setFromRbChain(record.toChain());
            cad::db::ObjectId id;
            dictionary->setAt("QRB_VANTORDATA-" + std::to_string(i), std::move(xrecord), id);
        }
        db->saveAs(bigGroupDrawing);
    }
};

Registry& registry() {
    static Registry made;
    return made;
}

std::unique_ptr<CUblMainFrame> openFrame(cad::app::Application& app, const std::string& window) {
    Registry& r = registry();
    r.settings.curListName = window;
    auto frame = std::make_unique<CUblMainFrame>(
        FrameContext{r.settings, r.dialogs, app.documentManager(), app.editor(), r.insertions,
                     "Vantor", {}});
    frame->show();
    frame->handleMessage(1042, 1043, 0);
    frame->repaint();
    return frame;
}

void BM_FirstPaintOf1000Drawings(benchmark::State& state) {
    cad::app::Application app;
    registry();
    for (auto _ : state) {
        auto frame = openFrame(app, "큰 관리창");
        state.counters["roots"] = static_cast<double>(frame->registeredTree().roots().size());
        state.PauseTiming();
        frame.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_FirstPaintOf1000Drawings)->Unit(benchmark::kMillisecond)->Iterations(5);

// `cold`: the drawing changed on disk before each fill, so it is read again as well.
void BM_PartListOf1000Records(benchmark::State& state, bool cold) {
    cad::app::Application app;
    auto frame = openFrame(app, "주 관리창");
    CVNTreeBase& tree = frame->registeredTree();
    const TreeNode* group = tree.findNode(registry().bigGroupDrawing, {"User data list", "천 개"});
    const TreeNode* other = tree.findNode(registry().bigGroupDrawing, {"Adv data list", "Flanges", "Slip-on 10K"});
    if (group == nullptr || other == nullptr) {
        state.SkipWithError("no group");
        return;
    }
    for (auto _ : state) {
        frame->categoryTree()->selectNode(group);
        frame->repaint();
        state.PauseTiming();
        frame->categoryTree()->selectNode(other);
        if (cold)
            fs::last_write_time(registry().bigGroupDrawing, fs::file_time_type::clock::now());
        state.ResumeTiming();
    }
    frame->categoryTree()->selectNode(group);
    state.counters["rows"] = frame->partList()->model()->rowCount();
}
BENCHMARK_CAPTURE(BM_PartListOf1000Records, drawing_kept, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PartListOf1000Records, drawing_read, true)->Unit(benchmark::kMillisecond);

void BM_BlockPreview(benchmark::State& state) {
    LibraryDrawingCache drawings;
    cad::db::Database* db = drawings.open(registry().bigGroupDrawing);
    for (auto _ : state) {
        QImage image = drawBlockPreview(*db, {"GV-10K-100A-F", QSize(480, 300), cad::ge::Point3d(10, 0, 0)});
        benchmark::DoNotOptimize(image.bits());
        if (image.isNull()) state.SkipWithError("no picture");
    }
}
BENCHMARK(BM_BlockPreview)->Unit(benchmark::kMillisecond);

void BM_SwitchTo1000Drawings(benchmark::State& state) {
    cad::app::Application app;
    auto frame = openFrame(app, "주 관리창");
    QComboBox* windows = frame->previewView()->windowDropDown();
    for (auto _ : state) {
        windows->setCurrentIndex(1);
        frame->repaint();
        state.PauseTiming();
        windows->setCurrentIndex(0);
        state.ResumeTiming();
    }
    windows->setCurrentIndex(1);
    state.counters["roots"] = static_cast<double>(frame->registeredTree().roots().size());
}
BENCHMARK(BM_SwitchTo1000Drawings)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

int main(int argc, char** argv) { return runQtBenchmarks<QApplication>(argc, argv); }
