// The store behind every ObjectId: slots that never move, found by handle whatever pattern the
// handles follow, listed in handle order; and the database rules built on it.
#include "cad/db/ObjectStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/Line.h"

namespace cad::db {
namespace {

// Handles as files have them (a run with gaps), in an order a reader meets them in (references
// before the objects), and patterns that a hash by the low bits would pile into one bucket.
std::vector<Handle> handles() {
    std::vector<Handle> all;
    for (std::uint64_t h = 1; h < 40'000; h += 1 + h % 3) all.push_back(Handle{h});
    for (std::uint64_t h = 1; h <= 2'000; ++h) all.push_back(Handle{h << 32});
    for (std::uint64_t h = 1; h <= 2'000; ++h) all.push_back(Handle{h * 1024 + 0xFFFF'0000'0000});
    all.push_back(Handle{~std::uint64_t{0}});
    std::shuffle(all.begin(), all.end(), std::mt19937_64(7));
    return all;
}

TEST(ObjectStore, SlotsStayWhereTheyWereMadeAndAreFoundByHandle) {
    Database owner(false);
    ObjectStore store;
    const std::vector<Handle> all = handles();
    std::vector<ObjectSlot*> made;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i == all.size() / 2) store.reserve(all.size());  // a reserve half way moves nothing
        made.push_back(store.findOrAdd(all[i], &owner));
    }
    ASSERT_EQ(store.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        ASSERT_EQ(store.find(all[i]), made[i]);
        ASSERT_EQ(made[i]->handle, all[i]);
        ASSERT_EQ(made[i]->database, &owner);
        ASSERT_EQ(store.findOrAdd(all[i], nullptr), made[i]) << "an existing slot is not remade";
    }
    EXPECT_EQ(store.size(), all.size());
    EXPECT_EQ(store.find(Handle{2}), nullptr);
    EXPECT_EQ(store.find(Handle{5}), nullptr);

    const std::vector<ObjectSlot*>& ordered = store.inHandleOrder();
    ASSERT_EQ(ordered.size(), all.size());
    EXPECT_TRUE(std::is_sorted(ordered.begin(), ordered.end(),
                               [](auto* a, auto* b) { return a->handle < b->handle; }));
    std::size_t visited = 0;
    store.forEach([&](ObjectSlot& slot) { visited += store.find(slot.handle) == &slot; });
    EXPECT_EQ(visited, all.size());

    ObjectStore other;
    other.findOrAdd(Handle{2}, &owner);
    std::swap(store, other);
    EXPECT_EQ(store.size(), 1u);
    EXPECT_EQ(other.find(all[0]), made[0]) << "a swap keeps the slots where they are";
    EXPECT_EQ(store.find(all[0]), nullptr);
}

TEST(ObjectStore, ADatabaseFillsReferencedSlotsAndKeepsItsHandseed) {
    Database db(false);
    ObjectId referenced;
    ASSERT_EQ(db.getObjectId(referenced, true, Handle{0x40}), ErrorStatus::eOk);
    EXPECT_FALSE(referenced.isValid());
    EXPECT_EQ(db.handseed(), Handle{0x41});
    EXPECT_TRUE(db.objectIds().empty()) << "a slot without its object is no object";
    ObjectId missing;
    EXPECT_EQ(db.getObjectId(missing, false, Handle{0x3F}), ErrorStatus::eKeyNotFound);
    EXPECT_EQ(db.getObjectId(missing, true, Handle{}), ErrorStatus::eNullObjectId);
    EXPECT_TRUE(missing.isNull());

    ObjectId line;
    ASSERT_EQ(db.addObject(std::make_unique<Line>(), line, ObjectId::kNull, Handle{0x40}),
              ErrorStatus::eOk);
    EXPECT_EQ(line, referenced) << "the object takes the slot its references point at";
    EXPECT_TRUE(referenced.isValid());
    EXPECT_EQ(db.addObject(std::make_unique<Line>(), line, ObjectId::kNull, Handle{0x40}),
              ErrorStatus::eDuplicateKey);

    // New handles come from the seed and skip those taken.
    db.setHandseed(Handle{0x10});
    EXPECT_EQ(db.handseed(), Handle{0x41}) << "the seed is never lowered";
    ObjectId low;
    ASSERT_EQ(db.addObject(std::make_unique<Line>(), low, ObjectId::kNull, Handle{0x41}),
              ErrorStatus::eOk);
    ObjectId next;
    ASSERT_EQ(db.addObject(std::make_unique<Line>(), next, ObjectId::kNull), ErrorStatus::eOk);
    EXPECT_EQ(next.handle(), Handle{0x42});
    ObjectId first;
    ASSERT_EQ(db.addObject(std::make_unique<Line>(), first, ObjectId::kNull, Handle{0x2}),
              ErrorStatus::eOk);
    EXPECT_EQ(db.objectIds(), (std::vector<ObjectId>{first, line, low, next}));
    ObjectId found;
    EXPECT_EQ(db.getObjectId(found, false, Handle{0x2}), ErrorStatus::eOk);
    EXPECT_EQ(found, first);
}

}  // namespace
}  // namespace cad::db
