// Slots in blocks and their handle index. A slot costs its own 32 bytes, 16 to 32 in the index
// and 8 in the handle order, and no allocation of its own: a large drawing used to make one
// per slot and one per map node, with the allocator's overhead on each.
#include "cad/db/ObjectStore.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>

#include "cad/db/DbObject.h"

namespace cad::db {
namespace {

// A new block is as large as all before it, between these bounds: small databases (a default
// drawing, a clone's scratch) stay small and large ones allocate rarely.
constexpr std::size_t kMinBlock = 32;
constexpr std::size_t kMaxBlock = 8192;
constexpr std::size_t kMinBuckets = 64;
constexpr int kRunBits = 4;
constexpr std::uint64_t kRun = 1 << kRunBits;

}  // namespace

ObjectStore::~ObjectStore() = default;
ObjectStore::ObjectStore(ObjectStore&&) noexcept = default;
ObjectStore& ObjectStore::operator=(ObjectStore&&) noexcept = default;

std::size_t ObjectStore::bucketOf(Handle handle) const {
    // Handles come in runs (a file numbers its objects one after another, with gaps its writer
    // chose), and a reader looks up neighbours one after another. So a run of 16 neighbours
    // keeps to 16 neighbouring buckets, two cache lines, while the runs themselves are spread
    // over the table by Fibonacci hashing, whatever pattern of gaps separates them. Hashing
    // each handle alone cost a cache miss per object and made the index the slowest part of
    // storing a large drawing.
    const std::uint64_t run = handle.value >> kRunBits;
    const std::uint64_t place = (run * 0x9E3779B97F4A7C15ull) >> indexShift_;
    return static_cast<std::size_t>(place << kRunBits | (handle.value & (kRun - 1)));
}

ObjectSlot* ObjectStore::find(Handle handle) const {
    if (index_.empty()) return nullptr;
    const std::size_t mask = index_.size() - 1;
    for (std::size_t i = bucketOf(handle);; i = (i + 1) & mask) {
        ObjectSlot* slot = index_[i];
        if (slot == nullptr || slot->handle == handle) return slot;
    }
}

ObjectSlot* ObjectStore::findOrAdd(Handle handle, Database* database) {
    if ((size() + 1) * 2 > index_.size()) growIndex(std::max(kMinBuckets, index_.size() * 2));
    const std::size_t mask = index_.size() - 1;
    std::size_t i = bucketOf(handle);
    for (; index_[i] != nullptr; i = (i + 1) & mask) {
        if (index_[i]->handle == handle) return index_[i];
    }
    ObjectSlot& slot = makeSlot();
    slot.database = database;
    slot.handle = handle;
    index_[i] = &slot;
    if (!byHandle_.empty() && handle < byHandle_.back()->handle) byHandleSorted_ = false;
    byHandle_.push_back(&slot);
    return &slot;
}

ObjectSlot& ObjectStore::makeSlot() {
    if (blocks_.empty() || blocks_.back().size() == blocks_.back().capacity()) {
        std::size_t capacity = std::clamp(size(), kMinBlock, kMaxBlock);
        if (reserved_ > size()) capacity = std::max(capacity, reserved_ - size());
        blocks_.emplace_back().reserve(capacity);
    }
    return blocks_.back().emplace_back();
}

void ObjectStore::growIndex(std::size_t buckets) {
    std::vector<ObjectSlot*> old(buckets, nullptr);
    old.swap(index_);
    indexShift_ = 64 - (std::countr_zero(buckets) - kRunBits);
    const std::size_t mask = buckets - 1;
    for (ObjectSlot* slot : old) {
        if (slot == nullptr) continue;
        std::size_t i = bucketOf(slot->handle);
        while (index_[i] != nullptr) i = (i + 1) & mask;
        index_[i] = slot;
    }
}

void ObjectStore::reserve(std::size_t count) {
    if (count <= size()) return;
    reserved_ = std::max(reserved_, count);
    byHandle_.reserve(count);
    const std::size_t buckets = std::bit_ceil(count * 2);
    if (buckets > index_.size()) growIndex(std::max(kMinBuckets, buckets));
}

const std::vector<ObjectSlot*>& ObjectStore::inHandleOrder() const {
    if (!byHandleSorted_) {
        std::sort(byHandle_.begin(), byHandle_.end(),
                  [](const ObjectSlot* a, const ObjectSlot* b) { return a->handle < b->handle; });
        byHandleSorted_ = true;
    }
    return byHandle_;
}

}  // namespace cad::db
