// The tags of a section's structures, one structure at a time and in order, read again from
// the file. A large section of a text file is read ahead on a second thread, in batches, so
// splitting the next structures into tags overlaps with building objects from this one.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/DxfStructure.h"

namespace cad::db::dxf {

class ItemReader {
public:
    ItemReader(DxfFile& file, std::span<const TagRun> runs);
    ~ItemReader();
    ItemReader(const ItemReader&) = delete;
    ItemReader& operator=(const ItemReader&) = delete;

    // The tags of the next run, valid until the next call. Nothing when that run no longer
    // reads as it did (the file changed on disk), or when every run has been read.
    std::optional<TagSpan> next();

private:
    // Below this many structures a second thread costs more than it saves.
    static constexpr std::size_t kAheadFrom = 4096;
    static constexpr std::size_t kBatchRuns = 1024;

    struct Batch {
        std::vector<Tag> tags;
        std::vector<std::size_t> ends;  // where each run's tags end in `tags`
        std::size_t readable = 0;       // runs that read as they did
        bool ready = false;             // filled, and the reading thread's until taken back
    };

    void readAhead();
    void fill(Batch& batch, std::size_t first) const;

    DxfFile& file_;
    std::span<const TagRun> runs_;
    std::size_t next_ = 0;

    std::array<Batch, 2> batches_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool stopping_ = false;
    std::thread reader_;
};

}  // namespace cad::db::dxf
