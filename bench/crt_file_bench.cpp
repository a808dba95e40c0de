// Throughput of the text-mode record files: writing and reading a few MB of counted texts
// with the CR LF translation, as the list and tree cache files do.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cad/sys/CountedText.h"
#include "cad/sys/CrtFile.h"

namespace {

using cad::ErrorStatus;
using cad::sys::CrtFile;

// Paths of varied length, some with the 26-byte rule and some with 0x0A length bytes.
std::vector<std::string> makeRecords(int count) {
    std::vector<std::string> records;
    records.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        std::string path = "C:\\Libraries\\Standard parts\\" + std::string(i % 200, 'p');
        path += "\\part" + std::to_string(i) + ".dwg";
        if (i % 7 == 0) path.resize(26, 'x');
        if (i % 11 == 0) path.resize(10, 'y');
        records.push_back(std::move(path));
    }
    return records;
}

std::string benchFile() {
    return (std::filesystem::temp_directory_path() /
            ("vantor-crt-bench-" + std::to_string(::getpid()) + ".dat"))
        .string();
}

std::int64_t writeRecords(const std::string& path, const std::vector<std::string>& records) {
    CrtFile file;
    if (file.open(path, "w") != ErrorStatus::eOk) return 0;
    file.writeInt32(static_cast<std::int32_t>(records.size()));
    std::int64_t bytes = 4;
    for (const auto& record : records) {
        cad::sys::writeCountedText(file, record);
        bytes += 8 + static_cast<std::int64_t>(record.size());
    }
    file.close();
    return bytes;
}

void BM_WriteRecordsTextMode(benchmark::State& state) {
    const auto records = makeRecords(static_cast<int>(state.range(0)));
    const std::string path = benchFile();
    std::int64_t bytes = 0;
    for (auto _ : state) bytes += writeRecords(path, records);
    state.SetBytesProcessed(bytes);
    std::filesystem::remove(path);
}

void BM_ReadRecordsTextMode(benchmark::State& state) {
    const auto records = makeRecords(static_cast<int>(state.range(0)));
    const std::string path = benchFile();
    const std::int64_t fileBytes = writeRecords(path, records);
    for (auto _ : state) {
        CrtFile file;
        if (file.open(path, "r") != ErrorStatus::eOk) {
            state.SkipWithError("cannot open the record file");
            break;
        }
        std::int32_t count = 0;
        file.readInt32(count);
        for (std::int32_t i = 0; i < count; ++i) {
            benchmark::DoNotOptimize(cad::sys::readCountedText(file, 1024));
        }
        file.close();
    }
    state.SetBytesProcessed(fileBytes * state.iterations());
    std::filesystem::remove(path);
}

BENCHMARK(BM_WriteRecordsTextMode)->Arg(40000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRecordsTextMode)->Arg(40000)->Unit(benchmark::kMillisecond);

}  // namespace
