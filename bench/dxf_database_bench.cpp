// Reading and saving a whole drawing through the database: a generated R2000 drawing the size
// of a large parts library (200,000 lines, 20,000 part records in 200 group dictionaries,
// ~36 MB), made once by our own writer and kept beside this program. Reports throughput and
// the peak memory each operation adds, in multiples of the file size.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "bench/ResidentMemory.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Xrecord.h"

namespace {

using namespace cad::db;

constexpr int kLines = 200'000;
constexpr int kCategories = 20;
constexpr int kGroupsPerCategory = 10;
constexpr int kRecordsPerGroup = 100;

std::filesystem::path programFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

// Root > "Adv data list" > categories > groups > part records, as a library drawing holds its
// catalogue; each record has six view slots and fourteen texts.
void addCatalogue(Database& db) {
    ObjectId library;
    open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite)
        ->setAt("Adv data list", std::make_unique<Dictionary>(), library);
    for (int c = 0; c < kCategories; ++c) {
        ObjectId category;
        open<Dictionary>(library, OpenMode::ForWrite)
            ->setAt("Category " + std::to_string(c), std::make_unique<Dictionary>(), category);
        for (int g = 0; g < kGroupsPerCategory; ++g) {
            ObjectId group;
            open<Dictionary>(category, OpenMode::ForWrite)
                ->setAt("Group " + std::to_string(g), std::make_unique<Dictionary>(), group);
            auto groupPtr = open<Dictionary>(group, OpenMode::ForWrite);
            for (int r = 0; r < kRecordsPerGroup; ++r) {
                const std::string key = "QRB_VANTORDATA" + std::to_string(r);
                ResBufChain chain;
                for (int view = 0; view < 6; ++view) {
                    chain.push_back({1, "VIEW_" + key});
                    chain.push_back({10, cad::ge::Point3d{view * 10.5, view * -3.25, 0.0}});
                }
                for (const char* text : {"Valves", "Gate valve", "GATE VALVE", "DN50 PN16", "SCS13",
                                         "12.5", "48000", "", "user 1", "", "", "", "", ""})
                    chain.push_back({1, std::string(text)});
                auto record = std::make_unique<Xrecord>();
                record->setFromRbChain(std::move(chain));
                ObjectId id;
                groupPtr->setAt(key, std::move(record), id);
            }
        }
    }
}

void addLines(Database& db) {
    auto layer = std::make_unique<LayerTableRecord>();
    layer->setName("PARTS");
    ObjectId parts;
    open<SymbolTable>(db.layerTableId(), OpenMode::ForWrite)->add(std::move(layer), parts);
    auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite);
    for (int i = 0; i < kLines; ++i) {
        auto line =
            std::make_unique<Line>(cad::ge::Point3d{i * 0.731, i * 1.377 - 250.5, 0.0},
                                   cad::ge::Point3d{i * 0.731 + 12.25, i * 1.377 - 117.125, 0.0});
        line->setLayer(i % 3 ? parts : db.layerZero());
        ObjectId id;
        model->appendEntity(std::move(line), id);
    }
}

struct Drawing {
    std::string path;
    std::string bytes;
};

const Drawing& drawing() {
    static const Drawing cached = [] {
        Drawing d;
        d.path = (programFolder() / "dxf_database_bench_drawing_v1.dxf").string();
        if (!std::filesystem::exists(d.path)) {
            Database db;
            addLines(db);
            addCatalogue(db);
            db.saveAs(d.path);
        }
        std::ifstream in(d.path, std::ios::binary);
        d.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        return d;
    }();
    return cached;
}

long maxRssKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// The memory an operation adds at its peak: freed memory goes back to the system and the
// kernel's high-water mark is reset to the present use before the operation starts.
class PeakMemory {
public:
    void start() {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << "5";
        base_ = maxRssKb();
    }
    void stop() {
        peak_ = std::max(peak_, maxRssKb() - base_);
        malloc_trim(0);
        kept_ = std::max(kept_, currentRssKb() - base_);
    }
    void report(benchmark::State& state, std::size_t fileSize) const {
        state.counters["peak_x_file"] =
            static_cast<double>(peak_) * 1024.0 / static_cast<double>(fileSize);
        state.counters["kept_x_file"] =
            static_cast<double>(kept_) * 1024.0 / static_cast<double>(fileSize);
        state.counters["file_MB"] = static_cast<double>(fileSize) / 1e6;
    }

private:
    long base_ = 0;
    long peak_ = 0;
    long kept_ = 0;
};

void BM_ReadDwgFile(benchmark::State& state) {
    const Drawing& d = drawing();
    PeakMemory memory;
    for (auto _ : state) {
        state.PauseTiming();
        auto db = std::make_unique<Database>(false);
        memory.start();
        state.ResumeTiming();
        if (db->readDwgFile(d.path) != cad::ErrorStatus::eOk)
            state.SkipWithError(db->lastErrorMessage().c_str());
        state.PauseTiming();
        memory.stop();
        db.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(d.bytes.size()));
    memory.report(state, d.bytes.size());
}
BENCHMARK(BM_ReadDwgFile)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same from bytes already in memory (their copy is not counted in the peak).
void BM_ReadDxfBytes(benchmark::State& state) {
    const Drawing& d = drawing();
    PeakMemory memory;
    for (auto _ : state) {
        state.PauseTiming();
        auto db = std::make_unique<Database>(false);
        std::string bytes = d.bytes;
        memory.start();
        state.ResumeTiming();
        if (db->readDxfBytes(std::move(bytes), "drawing") != cad::ErrorStatus::eOk)
            state.SkipWithError(db->lastErrorMessage().c_str());
        state.PauseTiming();
        memory.stop();
        db.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(d.bytes.size()));
    memory.report(state, d.bytes.size());
}
BENCHMARK(BM_ReadDxfBytes)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SaveAs(benchmark::State& state) {
    const Drawing& d = drawing();
    Database db(false);
    if (db.readDwgFile(d.path) != cad::ErrorStatus::eOk) {
        state.SkipWithError(db.lastErrorMessage().c_str());
        return;
    }
    const std::string target = (programFolder() / "dxf_database_bench_saved.dxf").string();
    PeakMemory memory;
    for (auto _ : state) {
        state.PauseTiming();
        memory.start();
        state.ResumeTiming();
        if (db.saveAs(target) != cad::ErrorStatus::eOk)
            state.SkipWithError(db.lastErrorMessage().c_str());
        state.PauseTiming();
        memory.stop();
        state.ResumeTiming();
    }
    const auto written = static_cast<std::int64_t>(std::filesystem::file_size(target));
    state.SetBytesProcessed(state.iterations() * written);
    memory.report(state, static_cast<std::size_t>(written));
    std::filesystem::remove(target);
}
BENCHMARK(BM_SaveAs)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
