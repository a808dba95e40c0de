// The slots of one database's objects: made in blocks, found by handle, listed in handle order.
// A slot never moves once made, since every ObjectId points at one, and a slot is never removed.
#pragma once

#include <cstddef>
#include <vector>

#include "cad/db/Handle.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/UndoRecorder.h"

namespace cad::db {

class ObjectStore {
public:
    ObjectStore() = default;
    ~ObjectStore();
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;
    // Moving takes the blocks along: the slots, and the ids that point at them, stay valid.
    ObjectStore(ObjectStore&&) noexcept;
    ObjectStore& operator=(ObjectStore&&) noexcept;

    // The slot of `handle`, or null.
    ObjectSlot* find(Handle handle) const;
    // The slot of `handle`, made for `database` (empty) when there is none.
    ObjectSlot* findOrAdd(Handle handle, Database* database);
    std::size_t size() const { return byHandle_.size(); }
    // Room for `count` slots in all, so a reader that knows how many come does not regrow.
    void reserve(std::size_t count);
    // Every slot, in handle order.
    const std::vector<ObjectSlot*>& inHandleOrder() const;
    // The undo history of the objects in these slots. It lives here because it points at the
    // slots: when a read replaces a database's content, the history leaves with the old slots.
    UndoRecorder& undoRecorder() { return undo_; }
    const UndoRecorder& undoRecorder() const { return undo_; }
    // Every slot, in the order they were made (cheaper when the order does not matter).
    template <typename Visit>
    void forEach(Visit&& visit) {
        for (std::vector<ObjectSlot>& block : blocks_) {
            for (ObjectSlot& slot : block) visit(slot);
        }
    }

private:
    std::size_t bucketOf(Handle handle) const;
    // A slot at the end of the last block, in a new block when that one is full.
    ObjectSlot& makeSlot();
    void growIndex(std::size_t buckets);

    // Each block is a vector reserved once and never filled past its capacity, so its slots
    // keep their addresses; one allocation serves many slots.
    std::vector<std::vector<ObjectSlot>> blocks_;
    std::size_t reserved_ = 0;
    // Open addressing with linear probing, kept at most half full. A slot holds its handle, so
    // a bucket needs only the pointer.
    std::vector<ObjectSlot*> index_;
    int indexShift_ = 64;
    // Sorted on demand: a reader makes slots mostly in handle order, and the writer and
    // the audit walk every object several times.
    mutable std::vector<ObjectSlot*> byHandle_;
    mutable bool byHandleSorted_ = true;
    UndoRecorder undo_;
};

}  // namespace cad::db
