// Tests of the id map: pairs by key, in the order made, and the guard against mixing two
// destinations in one map.
#include "cad/db/IdMapping.h"

#include <gtest/gtest.h>

#include <vector>

#include "cad/db/DbObject.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {
namespace {

TEST(IdMapping, AssignComputeDeleteKeepTheOrderOfMaking) {
    ObjectSlot slots[4];
    const ObjectId a(&slots[0]), b(&slots[1]), c(&slots[2]), d(&slots[3]);
    IdMapping map;
    EXPECT_EQ(map.assign(IdPair(a, b, true, true)), ErrorStatus::eOk);
    EXPECT_EQ(map.assign(IdPair(c, d, false)), ErrorStatus::eOk);
    EXPECT_EQ(map.assign(IdPair(b, a, true)), ErrorStatus::eOk);
    EXPECT_EQ(map.assign(IdPair(ObjectId::kNull, a, true)), ErrorStatus::eNullObjectId);

    IdPair pair(c, ObjectId::kNull, true, true, false);
    ASSERT_TRUE(map.compute(pair));
    EXPECT_EQ(pair, IdPair(c, d, false));
    IdPair missing(d, ObjectId::kNull, false);
    EXPECT_FALSE(map.compute(missing));

    // Assigning a key again replaces its pair in place.
    EXPECT_EQ(map.assign(IdPair(c, a, true)), ErrorStatus::eOk);
    EXPECT_EQ(map.del(a), ErrorStatus::eOk);
    EXPECT_EQ(map.del(a), ErrorStatus::eKeyNotFound);
    const std::vector<IdPair> expected = {IdPair(c, a, true), IdPair(b, a, true)};
    EXPECT_EQ(std::vector<IdPair>(map.begin(), map.end()), expected);
    // Deleting kept the positions of the others right.
    IdPair after(b, ObjectId::kNull, false);
    ASSERT_TRUE(map.compute(after));
    EXPECT_EQ(after.value(), a);
}

TEST(IdMapping, DestinationIsFixedOncePairsExist) {
    Database first(false), second(false);
    ObjectSlot slot;
    IdMapping map;
    EXPECT_EQ(map.setDestDb(&first), ErrorStatus::eOk);
    EXPECT_EQ(map.setDestDb(&second), ErrorStatus::eOk);  // nothing mapped yet
    map.assign(IdPair(ObjectId(&slot), ObjectId(&slot), false));
    EXPECT_EQ(map.setDestDb(&first), ErrorStatus::eWrongDatabase);
    EXPECT_EQ(map.destDb(), &second);
    EXPECT_EQ(map.deepCloneContext(), DeepCloneContext::None);
}

}  // namespace
}  // namespace cad::db
