// Reading a section's structures ahead. The reading thread fills batch k into slot k % 2 and
// hands it over; this thread hands the slot back once it has used the batch. Only the reading
// thread splits tags from the bytes (read-only), and only this thread tells the file what it
// has reached, so the two share nothing but the slots.
#include "cad/db/dxf/ItemReader.h"

#include "cad/db/dxf/TagReader.h"

namespace cad::db::dxf {

ItemReader::ItemReader(DxfFile& file, std::span<const TagRun> runs) : file_(file), runs_(runs) {
    if (!file.heldTags() && runs.size() >= kAheadFrom)
        reader_ = std::thread([this] { readAhead(); });
}

ItemReader::~ItemReader() {
    if (!reader_.joinable()) return;
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    reader_.join();
}

std::optional<TagSpan> ItemReader::next() {
    if (next_ == runs_.size()) return std::nullopt;
    const std::size_t index = next_++;
    if (!reader_.joinable()) return file_.tagsOf(runs_[index]);

    const std::size_t inBatch = index % kBatchRuns;
    Batch& batch = batches_[index / kBatchRuns % batches_.size()];
    if (inBatch == 0) {
        file_.reached(runs_[index].start);
        // The batch before this one is done with: its slot goes back to the reading thread.
        if (index > 0) {
            Batch& done = batches_[(index / kBatchRuns + 1) % batches_.size()];
            std::lock_guard lock(mutex_);
            done.ready = false;
        }
        changed_.notify_all();
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&batch] { return batch.ready; });
    }
    if (inBatch >= batch.readable) return std::nullopt;
    const std::size_t begin = inBatch == 0 ? 0 : batch.ends[inBatch - 1];
    return TagSpan(batch.tags).subspan(begin, batch.ends[inBatch] - begin);
}

void ItemReader::readAhead() {
    for (std::size_t first = 0; first < runs_.size(); first += kBatchRuns) {
        Batch& batch = batches_[first / kBatchRuns % batches_.size()];
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return stopping_ || !batch.ready; });
            if (stopping_) return;
        }
        fill(batch, first);
        {
            std::lock_guard lock(mutex_);
            batch.ready = true;
        }
        changed_.notify_all();
        if (batch.readable < batch.ends.size()) return;  // nothing after a run that failed
    }
}

void ItemReader::fill(Batch& batch, std::size_t first) const {
    batch.tags.clear();
    batch.ends.clear();
    batch.readable = 0;
    const std::size_t last = std::min(first + kBatchRuns, runs_.size());
    std::optional<DxfError> error;
    bool readable = true;
    for (std::size_t i = first; i < last; ++i) {
        const TagRun& run = runs_[i];
        const std::size_t begin = batch.tags.size();
        if (readable) {
            batch.tags.resize(begin + run.count);
            TextTagCursor cursor(file_.bytes(), run.start, run.line);
            for (std::size_t k = begin; readable && k < batch.tags.size(); ++k)
                readable = cursor.next(batch.tags[k], error);
            readable = readable && run.count > 0 && batch.tags[begin].code == 0;
            if (readable) ++batch.readable;
        }
        batch.ends.push_back(batch.tags.size());
    }
}

}  // namespace cad::db::dxf
