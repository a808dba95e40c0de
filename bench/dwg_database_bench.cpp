// Reading the same drawing as DWG 2000 and as DXF: the large parts-library drawing of the DXF
// benchmark (200,000 lines and 20,000 part records), written once by our own writers and kept
// beside this program. Reports entities per second for each, so the two readers compare per
// entity whatever the files' sizes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

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
constexpr int kGroups = 200;
constexpr int kRecordsPerGroup = 100;

std::filesystem::path programFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

void build(Database& db) {
    auto layer = std::make_unique<LayerTableRecord>();
    layer->setName("PARTS");
    ObjectId parts;
    open<SymbolTable>(db.layerTableId(), OpenMode::ForWrite)->add(std::move(layer), parts);
    {
        auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite);
        for (int i = 0; i < kLines; ++i) {
            auto line = std::make_unique<Line>(
                cad::ge::Point3d{i * 0.731, i * 1.377 - 250.5, 0.0},
                cad::ge::Point3d{i * 0.731 + 12.25, i * 1.377 - 117.125, 0.0});
            line->setLayer(i % 3 ? parts : db.layerZero());
            ObjectId id;
            model->appendEntity(std::move(line), id);
        }
    }
    ObjectId library;
    open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite)
        ->setAt("Adv data list", std::make_unique<Dictionary>(), library);
    for (int g = 0; g < kGroups; ++g) {
        ObjectId group;
        open<Dictionary>(library, OpenMode::ForWrite)
            ->setAt("Group " + std::to_string(g), std::make_unique<Dictionary>(), group);
        auto groupPtr = open<Dictionary>(group, OpenMode::ForWrite);
        for (int r = 0; r < kRecordsPerGroup; ++r) {
            ResBufChain chain;
            for (int view = 0; view < 6; ++view) {
                chain.push_back({1, "VIEW_" + std::to_string(r)});
                chain.push_back({10, cad::ge::Point3d{view * 10.5, view * -3.25, 0.0}});
            }
            for (const char* text : {"Valves", "Gate valve", "DN50 PN16", "SCS13", "12.5"})
                chain.push_back({1, std::string(text)});
            auto record = std::make_unique<Xrecord>();
            record->setFromRbChain(std::move(chain));
            ObjectId id;
            groupPtr->setAt("QRB_VANTORDATA" + std::to_string(r), std::move(record), id);
        }
    }
}

// The drawing's path in the given format, written on first use.
std::string drawing(const char* extension) {
    const std::string path =
        (programFolder() / (std::string("dwg_database_bench_drawing_v1") + extension)).string();
    if (!std::filesystem::exists(path)) {
        Database db;
        build(db);
        db.saveAs(path);
    }
    return path;
}

void read(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        Database db(false);
        if (db.readDwgFile(path) != cad::ErrorStatus::eOk)
            state.SkipWithError(db.lastErrorMessage().c_str());
    }
    state.counters["entities_per_s"] = benchmark::Counter(
        static_cast<double>(kLines) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate);
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
}

void BM_ReadAsDxf(benchmark::State& state) { read(state, drawing(".dxf")); }
BENCHMARK(BM_ReadAsDxf)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadAsDwg(benchmark::State& state) { read(state, drawing(".dwg")); }
BENCHMARK(BM_ReadAsDwg)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
