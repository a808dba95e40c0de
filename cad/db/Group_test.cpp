// Tests of groups: anonymous names in the group dictionary, members and their reactors, and
// the tags a group writes.
#include "cad/db/Group.h"

#include <gtest/gtest.h>

#include <vector>

#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"

namespace cad::db {
namespace {

class GroupTest : public testing_support::DrawingTest {
protected:
    ObjectId addLine() {
        return testing_support::append(db.modelSpaceId(), std::make_unique<Line>());
    }
    std::string nameOf(ObjectId group) {
        std::string name;
        EXPECT_EQ(open<Group>(group, OpenMode::ForRead)->getName(name), ErrorStatus::eOk);
        return name;
    }
    bool carries(ObjectId member, ObjectId group) {
        auto object = open<DbObject>(member, OpenMode::ForRead);
        const auto& reactors = object->persistentReactors();
        return std::find(reactors.begin(), reactors.end(), group) != reactors.end();
    }
};

TEST_F(GroupTest, AnonymousGroupsTakeTheLowestFreeNumber) {
    ObjectId a0, a1, named, again;
    ASSERT_EQ(addGroup(db, std::make_unique<Group>(), "*", a0), ErrorStatus::eOk);
    ASSERT_EQ(addGroup(db, std::make_unique<Group>("valves"), "PARTS", named), ErrorStatus::eOk);
    ASSERT_EQ(addGroup(db, std::make_unique<Group>(), "*", a1), ErrorStatus::eOk);
    EXPECT_EQ(nameOf(a0), "*A0");
    EXPECT_EQ(nameOf(a1), "*A1");
    EXPECT_EQ(nameOf(named), "PARTS");
    EXPECT_TRUE(open<Group>(a0, OpenMode::ForRead)->isAnonymous());
    EXPECT_FALSE(open<Group>(named, OpenMode::ForRead)->isAnonymous());

    EXPECT_EQ(addGroup(db, std::make_unique<Group>(), "parts", again), ErrorStatus::eDuplicateKey);
    EXPECT_EQ(addGroup(db, std::make_unique<Group>(), "", again), ErrorStatus::eInvalidKey);
    // The name of an erased group is free again.
    open<Group>(a0, OpenMode::ForWrite)->erase();
    ASSERT_EQ(addGroup(db, std::make_unique<Group>(), "*", again), ErrorStatus::eOk);
    EXPECT_EQ(nameOf(again), "*A0");
    Database bare(false);
    EXPECT_EQ(addGroup(bare, std::make_unique<Group>(), "*", again), ErrorStatus::eKeyNotFound);
}

TEST_F(GroupTest, MembersCarryTheGroupAsReactor) {
    const ObjectId first = addLine(), second = addLine(), third = addLine();
    ObjectId group;
    {
        // Members appended before the group is in the database learn of it when it is added.
        auto made = std::make_unique<Group>();
        ASSERT_EQ(made->append(first), ErrorStatus::eOk);
        ASSERT_EQ(addGroup(db, std::move(made), "*", group), ErrorStatus::eOk);
    }
    EXPECT_TRUE(carries(first, group));
    {
        auto g = open<Group>(group, OpenMode::ForWrite);
        EXPECT_EQ(g->append(second), ErrorStatus::eOk);
        EXPECT_EQ(g->append(third), ErrorStatus::eOk);
        EXPECT_EQ(g->append(second), ErrorStatus::eDuplicateKey);
        EXPECT_EQ(g->append(ObjectId::kNull), ErrorStatus::eNullObjectId);
        EXPECT_EQ(g->remove(first), ErrorStatus::eOk);
        EXPECT_EQ(g->remove(first), ErrorStatus::eKeyNotFound);
    }
    EXPECT_TRUE(carries(second, group));
    EXPECT_FALSE(carries(first, group));
    open<Line>(third, OpenMode::ForWrite)->erase();
    {
        auto g = open<Group>(group, OpenMode::ForRead);
        EXPECT_EQ(g->allEntityIds(), std::vector<ObjectId>{second});
        EXPECT_EQ(g->numEntities(), 1U);
        EXPECT_TRUE(g->has(third));  // still listed, but not live
        EXPECT_EQ(open<Line>(third, OpenMode::ForWrite, true)->erase(false), ErrorStatus::eOk);
        EXPECT_EQ(g->numEntities(), 2U);
    }
    {
        auto g = open<Group>(group, OpenMode::ForWrite);
        ASSERT_EQ(g->clear(), ErrorStatus::eOk);
        EXPECT_EQ(g->numEntities(), 0U);
    }
    EXPECT_FALSE(carries(second, group));
}

TEST_F(GroupTest, WritesDescriptionFlagsAndLiveMembers) {
    const ObjectId first = addLine(), gone = addLine(), last = addLine();
    ObjectId group;
    auto made = std::make_unique<Group>("pump set", false);
    for (ObjectId id : {first, gone, last}) made->append(id);
    ASSERT_EQ(addGroup(db, std::move(made), "*", group), ErrorStatus::eOk);
    open<Line>(gone, OpenMode::ForWrite)->erase();

    TagRecorder recorder;
    open<Group>(group, OpenMode::ForRead)->dxfFields(recorder);
    EXPECT_EQ(recorder.tags(), (std::vector<RawTag>{{100, "AcDbGroup"},
                                                    {300, "pump set"},
                                                    {70, "1"},
                                                    {71, "0"},
                                                    {340, first.handle().toHex()},
                                                    {340, last.handle().toHex()}}));
}

}  // namespace
}  // namespace cad::db
