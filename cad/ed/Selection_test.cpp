// Selection from a real drawing: picks, windows, everything, the pick-first set, handles typed at
// the prompt, and entity selection; the selection set's own bookkeeping.
#include <gtest/gtest.h>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/ScriptInputSource.h"
#include "cad/ed/SelectionSet.h"

namespace cad::ed {
namespace {

class SelectionTest : public testing::Test {
protected:
    SelectionTest() {
        shortLine_ = addLine({0, 0, 0}, {10, 0, 0});
        square_ = addLine({20, 20, 0}, {30, 30, 0});
        longLine_ = addLine({-100, -100, 0}, {100, 100, 0});
        editor_.setDocumentContext(&db_, nullptr);
        editor_.setInputSource(&script_);
    }
    db::ObjectId addLine(const ge::Point3d& a, const ge::Point3d& b) {
        db::ObjectId id;
        auto space = db::open<db::BlockTableRecord>(db_.modelSpaceId(), db::OpenMode::ForWrite);
        EXPECT_EQ(space->appendEntity(std::make_unique<db::Line>(a, b), id), ErrorStatus::eOk);
        return id;
    }
    void feed(std::vector<std::string> lines) { script_ = ScriptInputSource(std::move(lines)); }

    db::Database db_;
    Editor editor_;
    ScriptInputSource script_;
    db::ObjectId shortLine_, square_, longLine_;
};

TEST_F(SelectionTest, ModesWithoutPrompt) {
    SelectionSet set;
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Window, set, {-1, -1, 0}, {11, 1, 0}), RTNORM);
    EXPECT_EQ(set.ids(), std::vector<db::ObjectId>{shortLine_});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Window, set, {31, 31, 0}, {-1, -1, 0}), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{shortLine_, square_}));

    EXPECT_EQ(editor_.ssget(Editor::SelectMode::All, set), RTNORM);
    EXPECT_EQ(set.length(), 3);
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::All, set, {}, {}, {"insert"}), RTERROR);
    EXPECT_EQ(set.length(), 0);

    // Inside the long diagonal's extents too: the smaller entity is the one meant.
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Point, set, {25, 24, 0}), RTNORM);
    EXPECT_EQ(set.ids(), std::vector<db::ObjectId>{square_});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Point, set, {500, 0, 0}), RTERROR);

    editor_.setPickfirst({square_, shortLine_});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Implied, set), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{square_, shortLine_}));
    ASSERT_EQ(db::open<db::Entity>(square_, db::OpenMode::ForWrite)->erase(), ErrorStatus::eOk);
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Implied, set), RTNORM);
    EXPECT_EQ(set.ids(), std::vector<db::ObjectId>{shortLine_});  // erased ones drop out
    EXPECT_EQ(db_.openObjectCount(), 0);
}

TEST_F(SelectionTest, PromptGathersUntilEnterAndEndsWithEscOrNothing) {
    feed({"5,0", "w", "19,19", "31,31", "<pick> 5,0", longLine_.handle().toHex(), "nonsense", ""});
    SelectionSet set;
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{shortLine_, square_, longLine_}));
    const std::string shown = editor_.commandLine().text();
    EXPECT_NE(shown.find("Select objects: 5,0\n1 found\nSelect objects: w\nFirst corner: 19,19"),
              std::string::npos)
        << shown;
    EXPECT_NE(shown.find("\n*Invalid selection*\nSelect objects: "), std::string::npos);

    feed({"5,0", "<esc>"});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTCAN);
    EXPECT_EQ(set.length(), 0);
    feed({"500,500", "600,600", ""});  // a window over nothing
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTERROR);
}

TEST_F(SelectionTest, APickOnNothingStartsAWindowThatCrossesWhenDraggedLeft) {
    // To the right: only what lies wholly inside. To the left: what it meets as well.
    feed({"-150,-150", "101,50", ""});
    SelectionSet set;
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{shortLine_, square_}));
    feed({"150,5", "5,-150", ""});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{shortLine_, longLine_}));
    feed({"c", "150,150", "151,-150", ""});  // Crossing whichever way it is dragged
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTERROR);
    feed({"c", "25,150", "150,-150", ""});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTNORM);
    EXPECT_EQ(set.ids(), (std::vector<db::ObjectId>{square_, longLine_}));
    feed({"-150,-150", "<esc>"});
    EXPECT_EQ(editor_.ssget(Editor::SelectMode::Prompt, set), RTCAN);
}

TEST_F(SelectionTest, EntSelPicksOrTakesAHandle) {
    feed({"5,0", "500,500", square_.handle().toHex(), ""});
    EntityName name;
    ge::Point3d at;
    EXPECT_EQ(editor_.entSel("", name, at), RTNORM);
    EXPECT_EQ(name.id, shortLine_);
    EXPECT_EQ(at, ge::Point3d(5, 0, 0));
    EXPECT_EQ(editor_.entSel("", name, at), RTERROR);
    EXPECT_EQ(editor_.entSel("", name, at), RTNORM);
    EXPECT_EQ(name.id, square_);
    EXPECT_EQ(at, ge::Point3d(25, 25, 0));
    EXPECT_EQ(editor_.entSel("", name, at), RTNONE);
}

TEST(SelectionSet, KeepsOrderAndAnswersOutOfRange) {
    db::Database db;
    SelectionSet set;
    EXPECT_EQ(set.add(EntityName{}), RTERROR);
    db::ObjectId a = db.modelSpaceId(), b = db.paperSpaceId();
    set.add(EntityName{b});
    set.add(EntityName{a});
    set.add(EntityName{b});
    EXPECT_EQ(set.length(), 2);
    EntityName name;
    db::ObjectId id;
    EXPECT_EQ(set.name(1, name), RTNORM);
    EXPECT_EQ(getObjectId(id, name), ErrorStatus::eOk);
    EXPECT_EQ(id, a);
    EXPECT_EQ(set.objectId(2, id), RTERROR);
    EXPECT_EQ(set.objectId(-1, id), RTERROR);
    EXPECT_TRUE(id.isNull());
    set.free();
    EXPECT_EQ(set.length(), 0);
}

}  // namespace
}  // namespace cad::ed
