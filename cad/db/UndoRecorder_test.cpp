// Undo and redo of database changes: every step is compared with the drawing before and after
// it object by object (what each live object writes, its owner and its back-links), so a
// change that is not recorded, or a membership an owner does not get back, shows.
#include "cad/db/UndoRecorder.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::db {
namespace {

using namespace testing_support;

using Picture = std::map<std::uint64_t, std::string>;

Picture picture(Database& db) {
    Picture out;
    for (ObjectId id : db.objectIds()) {
        if (id.isErased()) continue;
        auto object = open<DbObject>(id, OpenMode::ForRead);
        std::string text = std::string(object->dxfName()) + " owner " +
                           object->ownerId().handle().toHex() + " reactors";
        for (ObjectId reactor : object->persistentReactors())
            text += " " + reactor.handle().toHex();
        out[id.handle().value] = text + "\n" + textOf(recorded(*object));
    }
    return out;
}

class UndoTest : public DrawingTest {
protected:
    void SetUp() override { line = append(db.modelSpaceId(), std::make_unique<Line>(p0, p1)); }

    void step(const std::string& name, const std::function<void()>& change) {
        db.startUndoGroup(name);
        change();
        db.endUndoGroup();
    }
    std::string undo(ErrorStatus expected = ErrorStatus::eOk) {
        std::string name;
        EXPECT_EQ(db.undo(name), expected);
        return name;
    }
    std::string redo(ErrorStatus expected = ErrorStatus::eOk) {
        std::string name;
        EXPECT_EQ(db.redo(name), expected);
        return name;
    }
    void setThickness(double thickness) {
        open<Line>(line, OpenMode::ForWrite)->setThickness(thickness);
    }

    const ge::Point3d p0{0, 0, 0};
    const ge::Point3d p1{10, 0, 0};
    ObjectId line;
};

TEST_F(UndoTest, AChangedObjectGetsItsStateBackUnderItsIdAndHandle) {
    const Picture before = picture(db);
    const Handle handle = line.handle();
    step("MOVE", [&] {
        auto moved = open<Line>(line, OpenMode::ForWrite);
        moved->setStartPoint({5, 5, 0});
        moved.close();
        // A second open in the same step keeps the state from before the first.
        open<Line>(line, OpenMode::ForWrite)->setEndPoint({7, 7, 0});
    });
    const Picture after = picture(db);
    ASSERT_NE(after, before);

    EXPECT_EQ(undo(), "MOVE");
    EXPECT_EQ(picture(db), before);
    EXPECT_EQ(line.handle(), handle);
    expectPoint(open<Line>(line, OpenMode::ForRead)->endPoint(), p1);
    EXPECT_EQ(entitiesOf(db.modelSpaceId()), std::vector<ObjectId>{line});

    EXPECT_EQ(redo(), "MOVE");
    EXPECT_EQ(picture(db), after);
    expectPoint(open<Line>(line, OpenMode::ForRead)->startPoint(), {5, 5, 0});
}

TEST_F(UndoTest, WhatAStepAddedIsErasedAndOwnersForgetIt) {
    const Picture before = picture(db);
    ObjectId layer, block, reference, attribute, dictionary, record, group;
    step("PLACE", [&] {
        layer = addLayer(db, "PARTS", 3);
        block = addBlock(db, "BOLT");
        append(block, std::make_unique<Line>(p0, p1), layer);
        auto placed = std::make_unique<BlockReference>(ge::Point3d{1, 2, 0}, block);
        reference = append(db.modelSpaceId(), std::move(placed), layer);
        open<BlockReference>(reference, OpenMode::ForWrite)
            ->appendAttribute(std::make_unique<Attribute>(p0, "M10", "SPEC"), attribute);
        // Owners two deep: a new dictionary in the root one, a record in it.
        auto root = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
        ASSERT_EQ(root->setAt("PARTDATA", std::make_unique<Dictionary>(), dictionary),
                  ErrorStatus::eOk);
        root.close();
        open<Dictionary>(dictionary, OpenMode::ForWrite)
            ->setAt("BOLT", std::make_unique<Xrecord>(), record);
        // A group gives an existing entity a back-link without opening it.
        auto made = std::make_unique<Group>("bolts");
        made->append(line);
        ASSERT_EQ(addGroup(db, std::move(made), "*", group), ErrorStatus::eOk);
    });
    const Picture after = picture(db);

    EXPECT_EQ(undo(), "PLACE");
    EXPECT_EQ(picture(db), before);
    for (ObjectId id : {layer, block, reference, attribute, dictionary, record, group}) {
        EXPECT_TRUE(id.isValid()) << id.handle().toHex();
        EXPECT_TRUE(id.isErased()) << id.handle().toHex();
    }
    EXPECT_TRUE(lookUp(db.layerTableId(), "PARTS").isNull());
    EXPECT_FALSE(
        open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead)->has("PARTDATA"));

    EXPECT_EQ(redo(), "PLACE");
    EXPECT_EQ(picture(db), after);
    EXPECT_EQ(lookUp(db.layerTableId(), "PARTS"), layer);
    EXPECT_EQ(open<BlockReference>(reference, OpenMode::ForRead)->attributeIds(),
              std::vector<ObjectId>{attribute});
}

TEST_F(UndoTest, ErasingAnOwnerIsTakenBackWithWhatItOwns) {
    const ObjectId block = addBlock(db, "BOLT");
    const ObjectId inBlock = append(block, std::make_unique<Line>(p0, p1));
    const ObjectId reference =
        append(db.modelSpaceId(), std::make_unique<BlockReference>(ge::Point3d{}, block));
    ObjectId attribute;
    open<BlockReference>(reference, OpenMode::ForWrite)
        ->appendAttribute(std::make_unique<Attribute>(p0, "M10", "SPEC"), attribute);
    const Picture before = picture(db);

    step("ERASE", [&] {
        open<DbObject>(reference, OpenMode::ForWrite)->erase();
        open<DbObject>(block, OpenMode::ForWrite)->erase();
    });
    ASSERT_TRUE(attribute.isErased());
    ASSERT_TRUE(inBlock.isErased());
    const Picture after = picture(db);

    undo();
    EXPECT_EQ(picture(db), before);
    for (ObjectId id : {block, inBlock, reference, attribute}) EXPECT_FALSE(id.isErased());
    redo();
    EXPECT_EQ(picture(db), after);
    for (ObjectId id : {block, inBlock, reference, attribute}) EXPECT_TRUE(id.isErased());
}

TEST_F(UndoTest, StepsAreRecordedOnlyWhenSomethingChanged) {
    step("LIST", [&] { open<Line>(line, OpenMode::ForRead); });
    step("NOTHING", [] {});
    EXPECT_EQ(db.undoRecorder().undoCount(), 0U);
    EXPECT_EQ(undo(ErrorStatus::eNotApplicable), "");
    // Outside a group nothing is recorded at all.
    setThickness(2);
    EXPECT_EQ(db.undoRecorder().undoCount(), 0U);
}

TEST_F(UndoTest, ANewChangeEndsRedoAndAnEmptyStepDoesNot) {
    step("A", [&] { setThickness(1); });
    step("B", [&] { setThickness(2); });
    undo();
    step("U", [] {});  // the undo command's own group
    EXPECT_EQ(db.undoRecorder().redoCount(), 1U);
    EXPECT_EQ(db.undoRecorder().nextRedoName(), "B");
    step("C", [&] { setThickness(3); });
    EXPECT_EQ(db.undoRecorder().redoCount(), 0U);
    EXPECT_EQ(redo(ErrorStatus::eNotApplicable), "");
    EXPECT_EQ(undo(), "C");
    EXPECT_EQ(undo(), "A");
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->thickness(), 0);
}

TEST_F(UndoTest, UndoWaitsForOpenObjectsAndTheOpenGroup) {
    step("A", [&] { setThickness(1); });
    {
        auto reading = open<Line>(line, OpenMode::ForRead);
        undo(ErrorStatus::eInvalidOpenState);
    }
    db.startUndoGroup("B");
    setThickness(2);
    undo(ErrorStatus::eInvalidOpenState);
    db.endUndoGroup();
    EXPECT_EQ(undo(), "B");
    EXPECT_EQ(undo(), "A");
}

TEST_F(UndoTest, TheHistoryKeepsTheLastHundredSteps) {
    const int steps = static_cast<int>(UndoRecorder::kMaxGroups) + 5;
    for (int i = 1; i <= steps; ++i) step("T" + std::to_string(i), [&] { setThickness(i); });
    for (std::size_t i = 0; i < UndoRecorder::kMaxGroups; ++i) undo();
    undo(ErrorStatus::eNotApplicable);
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->thickness(), 5);
}

TEST_F(UndoTest, AReadTakesTheHistoryAwayWithTheContent) {
    sys::TestTempFolder folder;
    ASSERT_EQ(db.saveAs(folder.file("a.dxf")), ErrorStatus::eOk);
    step("A", [&] { setThickness(1); });
    // Read in the middle of a group too: its end then finds no group and does nothing.
    db.startUndoGroup("OPEN");
    setThickness(2);
    ASSERT_EQ(db.readDwgFile(folder.file("a.dxf")), ErrorStatus::eOk);
    db.endUndoGroup();
    EXPECT_EQ(db.undoRecorder().undoCount(), 0U);
    undo(ErrorStatus::eNotApplicable);
}

}  // namespace
}  // namespace cad::db
