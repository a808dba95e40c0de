// The part search over a large registry: 1,000 library drawings of 100 parts each, their tree
// and catalogue caches current. Building the index from the caches, and the results of each
// keystroke of queries typed in Korean (initial consonants, then syllables) and in Latin.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "vantor/search/CachedParts.h"
#include "vantor/search/PartSearchIndex.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/TreeCache.h"

namespace {

namespace fs = std::filesystem;
using namespace vantor;

constexpr int kDrawings = 1000;
constexpr int kCategories = 5;
constexpr int kGroupsPerCategory = 4;
constexpr int kPartsPerGroup = 5;  // 100 parts a drawing

const char* const kNames[] = {"육각볼트", "육각너트", "평와셔", "스프링와셔", "렌치볼트",
                              "스터드볼트", "아이볼트", "멈춤나사", "베어링", "오일씰",
                              "플랜지", "엘보", "티", "리듀서", "밸브"};
const char* const kEnglish[] = {"Hex Bolt", "Hex Nut", "Flat Washer", "Spring Washer",
                                "Socket Bolt", "Stud Bolt", "Eye Bolt", "Set Screw",
                                "Ball Bearing", "Oil Seal", "Flange", "Elbow", "Tee",
                                "Reducer", "Gate Valve"};
const char* const kMaterials[] = {"SS400", "SM45C", "SUS304", "SCM440", "FC200"};

// The caches of every drawing, made once and kept between runs; the drawings themselves are
// empty files older than their caches, as the search never opens them.
struct Registry {
    fs::path folder = fs::temp_directory_path() / "vantor-part-search-bench";
    std::vector<std::string> drawings;

    Registry() {
        const bool ready = fs::exists(folder / "ready");
        for (int d = 0; d < kDrawings; ++d) {
            drawings.push_back((folder / ("Library" + std::to_string(d) + ".dxf")).string());
            if (!ready) make(d);
        }
        if (!ready) std::ofstream(folder / "ready");
    }

    void make(int d) {
        fs::create_directories(folder);
        const std::string& path = drawings[static_cast<std::size_t>(d)];
        std::ofstream(path, std::ios::binary);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
        std::vector<TreeCacheNode> nodes;
        std::vector<CatalogueEntry> catalogue;
        std::int64_t id = 100;
        const auto add = [&](bool record, std::string name, std::int64_t parent) {
            TreeCacheNode& node = nodes.emplace_back();
            node.record = record;
            node.drawingPath = path;
            node.name = std::move(name);
            node.libraryKey = "User data list";
            node.id = ++id;
            node.parentId = parent;
            return node.id;
        };
        const std::int64_t root = add(false, "User data list", 1);
        int serial = d * 100;
        for (int c = 0; c < kCategories; ++c) {
            const std::int64_t category = add(false, "분류" + std::to_string(c), root);
            for (int g = 0; g < kGroupsPerCategory; ++g) {
                const int kind = (d + c * kGroupsPerCategory + g) % 15;
                const std::int64_t group = add(false, kNames[kind], category);
                for (int p = 0; p < kPartsPerGroup; ++p, ++serial) {
                    CatalogueEntry& entry = catalogue.emplace_back();
                    PartRecord& record = entry.record;
                    record.group = kNames[kind];
                    record.kname = kNames[kind];
                    record.ename = kEnglish[kind];
                    record.spec = "M" + std::to_string(6 + 2 * p) + "x" + std::to_string(serial % 200);
                    record.material = kMaterials[serial % 5];
                    record.remark = serial % 3 == 0 ? "KS B " + std::to_string(1000 + serial % 97) : "";
                    record.user[0] = "P-" + std::to_string(serial);
                    entry.recordId = add(true, "QRB_VANTORDATA-" + std::to_string(p), group);
                    nodes.back().recordText = record.spec;
                }
            }
        }
        TreeCache::write(TreeCache::pathFor(path), nodes);
        CatalogueCache::write(CatalogueCache::pathFor(path), catalogue);
    }
};

Registry& registry() {
    static Registry made;
    return made;
}

PartSearchIndex& builtIndex() {
    static PartSearchIndex index = [] {
        PartSearchIndex built;
        indexDrawings(built, registry().drawings);
        return built;
    }();
    return index;
}

void BM_BuildIndexFromCaches(benchmark::State& state) {
    const std::vector<std::string>& drawings = registry().drawings;
    for (auto _ : state) {
        PartSearchIndex index;
        indexDrawings(index, drawings);
        benchmark::DoNotOptimize(index.partCount());
    }
    state.counters["parts"] = static_cast<double>(builtIndex().partCount());
}
BENCHMARK(BM_BuildIndexFromCaches)->Unit(benchmark::kMillisecond);

// Each keystroke of the typed queries, as the field sends them.
const char* const kKeystrokes[] = {"ㅇ",  "ㅇㄱ",  "ㅇㄱㅂ", "ㅇㄱㅂㅌ", "육", "육각", "육각볼",
                                   "육각볼트", "육각볼트 m", "육각볼트 m1", "육각볼트 m12",
                                   "h", "he", "hex", "hex ", "hex b", "hex bo", "hex bolt",
                                   "sus", "sus304 ks", "z", "zz"};

void BM_Keystroke(benchmark::State& state) {
    const PartSearchIndex& index = builtIndex();
    const char* query = kKeystrokes[state.range(0)];
    std::size_t hits = 0;
    for (auto _ : state) hits = index.find(query).size();
    state.SetLabel(query);
    state.counters["hits"] = static_cast<double>(hits);
}
BENCHMARK(BM_Keystroke)->DenseRange(0, std::size(kKeystrokes) - 1)->Unit(benchmark::kMillisecond);

}  // namespace
