// Throughput of the first two reading stages (tags, then sections and items), of parsing the
// typed values, and of the tag writer, on a generated R2000-like drawing the size of a large
// parts library (~36 MB).
#include <benchmark/benchmark.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "cad/db/dxf/DxfStructure.h"
#include "cad/db/dxf/GroupCode.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/db/dxf/Tag.h"
#include "cad/db/dxf/TagReader.h"
#include "cad/db/dxf/TagWriter.h"

namespace {

using namespace cad::db::dxf;

constexpr int kLines = 200'000;
constexpr int kCategories = 20;
constexpr int kGroupsPerCategory = 10;
constexpr int kRecordsPerGroup = 100;  // 20,000 extended records in all

class Drawing {
public:
    std::string make() {
        section("HEADER");
        writer_.writeRaw(9, "$ACADVER");
        writer_.writeRaw(1, "AC1015");
        writer_.writeRaw(9, "$DWGCODEPAGE");
        writer_.writeRaw(3, "ANSI_949");
        writer_.writeRaw(9, "$EXTMAX");
        writer_.writePoint(10, 1000.0, 1000.0, 0.0);
        endSection();
        section("ENTITIES");
        for (int i = 0; i < kLines; ++i) line(i);
        endSection();
        section("OBJECTS");
        catalogue();
        endSection();
        writer_.writeRaw(0, "EOF");
        return writer_.takeText();
    }

private:
    void section(const char* name) {
        writer_.writeRaw(0, "SECTION");
        writer_.writeRaw(2, name);
    }
    void endSection() { writer_.writeRaw(0, "ENDSEC"); }

    void object(const char* type, std::uint64_t handle, std::uint64_t owner) {
        writer_.writeRaw(0, type);
        writer_.writeHandle(5, handle);
        writer_.writeRaw(102, "{ACAD_REACTORS");
        writer_.writeHandle(330, owner);
        writer_.writeRaw(102, "}");
        writer_.writeHandle(330, owner);
    }

    void line(int i) {
        writer_.writeRaw(0, "LINE");
        writer_.writeHandle(5, next_++);
        writer_.writeHandle(330, 0x1F);
        writer_.writeRaw(100, "AcDbEntity");
        writer_.writeRaw(8, i % 3 ? "PARTS" : "0");
        writer_.writeRaw(100, "AcDbLine");
        writer_.writePoint(10, i * 0.731, i * 1.377 - 250.5, 0.0);
        writer_.writePoint(11, i * 0.731 + 12.25, i * 1.377 - 117.125, 0.0);
    }

    // Root dictionary > library > categories > groups > part records, as a library drawing.
    void catalogue() {
        const std::uint64_t root = next_++;
        const std::uint64_t library = next_++;
        dictionary(root, 0, {{"Adv data list", library}});
        std::vector<std::pair<std::string, std::uint64_t>> categories;
        for (int c = 0; c < kCategories; ++c)
            categories.push_back({"Category " + std::to_string(c), next_++});
        dictionary(library, root, categories);
        for (const auto& [name, handle] : categories) {
            std::vector<std::pair<std::string, std::uint64_t>> groups;
            for (int g = 0; g < kGroupsPerCategory; ++g)
                groups.push_back({"Group " + std::to_string(g), next_++});
            dictionary(handle, library, groups);
            for (const auto& group : groups) records(group.second, handle);
        }
    }

    void dictionary(std::uint64_t handle, std::uint64_t owner,
                    const std::vector<std::pair<std::string, std::uint64_t>>& entries) {
        object("DICTIONARY", handle, owner);
        writer_.writeRaw(100, "AcDbDictionary");
        writer_.writeInt(281, 1);
        for (const auto& [name, entry] : entries) {
            writer_.writeRaw(3, name);
            writer_.writeHandle(350, entry);
        }
    }

    void records(std::uint64_t group, std::uint64_t owner) {
        std::vector<std::pair<std::string, std::uint64_t>> entries;
        for (int r = 0; r < kRecordsPerGroup; ++r)
            entries.push_back({"QRB_VANTORDATA" + std::to_string(r), next_++});
        dictionary(group, owner, entries);
        for (const auto& [name, handle] : entries) {
            object("XRECORD", handle, group);
            writer_.writeRaw(100, "AcDbXrecord");
            writer_.writeInt(280, 1);
            for (int view = 0; view < 6; ++view) {
                writer_.writeRaw(1, "VIEW_" + name);
                writer_.writePoint(10, view * 10.5, view * -3.25, 0.0);
            }
            for (const char* text : {"Valves", "Gate valve", "GATE VALVE", "DN50 PN16", "SCS13",
                                     "12.5", "48000", "", "user 1", "", "", "", "", ""}) {
                writer_.writeRaw(1, text);
            }
        }
    }

    TagWriter writer_;
    std::uint64_t next_ = 0x100;
};

const std::string& drawing() {
    static const std::string text = Drawing().make();
    return text;
}

void BM_TagReader(benchmark::State& state) {
    const std::string& text = drawing();
    for (auto _ : state) {
        std::vector<Tag> tags;
        TextArena arena;
        const auto error = TagReader::read(text, tags, arena);
        if (error) state.SkipWithError(error->message.c_str());
        benchmark::DoNotOptimize(tags.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_TagReader)->Unit(benchmark::kMillisecond);

void BM_TagReaderAndStructureLoader(benchmark::State& state) {
    const std::string& text = drawing();
    for (auto _ : state) {
        std::vector<Tag> tags;
        TextArena arena;
        DxfStructure structure;
        auto error = TagReader::read(text, tags, arena);
        if (!error) error = StructureLoader::load(tags, structure);
        if (error) state.SkipWithError(error->message.c_str());
        benchmark::DoNotOptimize(structure.sections.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_TagReaderAndStructureLoader)->Unit(benchmark::kMillisecond);

// The typed values of every tag (numbers, integers, handles), parsed as the database reader
// parses them; bytes are those of the values parsed.
void BM_TagValues(benchmark::State& state) {
    std::vector<Tag> tags;
    TextArena arena;
    if (const auto error = TagReader::read(drawing(), tags, arena)) {
        state.SkipWithError(error->message.c_str());
        return;
    }
    std::int64_t bytes = 0;
    for (const Tag& tag : tags) {
        if (valueTypeOf(tag.code) != ValueType::String) bytes += std::ssize(tag.value);
    }
    for (auto _ : state) {
        double sum = 0;
        std::uint64_t mix = 0;
        for (const Tag& tag : tags) {
            switch (valueTypeOf(tag.code)) {
                case ValueType::Double:
                    sum += toDouble(tag).value_or(0.0);
                    break;
                case ValueType::Int16:
                case ValueType::Int32:
                case ValueType::Int64:
                case ValueType::Bool:
                    mix += static_cast<std::uint64_t>(toInt(tag).value_or(0));
                    break;
                case ValueType::Handle:
                    mix ^= toHandle(tag).value_or(0);
                    break;
                default:
                    break;
            }
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(mix);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}
BENCHMARK(BM_TagValues)->Unit(benchmark::kMillisecond);

void BM_TagWriter(benchmark::State& state) {
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string text = Drawing().make();
        size = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK(BM_TagWriter)->Unit(benchmark::kMillisecond);

}  // namespace
