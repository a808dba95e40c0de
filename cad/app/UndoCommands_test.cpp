// U, UNDO and REDO after real commands typed at the prompt: each command, cancelled or failed
// too, is one step, a transparent command inside another does not split it, and the drawing
// after each step back or forward is the one before, object by object.
#include "cad/app/UndoCommands.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "cad/app/Application.h"
#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::app {
namespace {

using Picture = std::map<std::uint64_t, std::string>;

// Every live object by handle: what it writes, its owner and its back-links.
Picture picture(db::Database& database) {
    Picture out;
    for (db::ObjectId id : database.objectIds()) {
        if (id.isErased()) continue;
        auto object = db::open<db::DbObject>(id, db::OpenMode::ForRead);
        std::string text =
            std::string(object->dxfName()) + " " + object->ownerId().handle().toHex();
        for (db::ObjectId reactor : object->persistentReactors())
            text += " " + reactor.handle().toHex();
        out[id.handle().value] =
            text + "\n" + db::testing_support::textOf(db::testing_support::recorded(*object));
    }
    return out;
}

class UndoCommandsTest : public testing::Test {
protected:
    UndoCommandsTest() {
        app_.documentManager().appContextNewDocument();
        app_.editor().setInputSource(&script_);
        // Draws a line, zooms as a transparent command would in its middle, draws another.
        app_.commandStack().addCommand("T", "TWOLINES", "TWOLINES", 0, [this] {
            addLine({0, 20, 0}, {10, 20, 0});
            app_.commandProcessor().execute("'_ZOOM");
            addLine({0, 30, 0}, {10, 30, 0});
        });
        app_.commandStack().addCommand("T", "BREAK", "BREAK", 0, [this] {
            addLine({0, 40, 0}, {10, 40, 0});
            throw std::runtime_error("broken");
        });
    }
    db::Database& database() { return *app_.documentManager().curDocument()->database(); }
    void addLine(const ge::Point3d& from, const ge::Point3d& to) {
        db::ObjectId id;
        db::open<db::BlockTableRecord>(database().modelSpaceId(), db::OpenMode::ForWrite)
            ->appendEntity(std::make_unique<db::Line>(from, to), id);
    }
    // Runs the typed text and answers the drawing and what the command line showed for it.
    Picture run(const std::string& typed) {
        const std::size_t from = shown().size();
        app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(), typed);
        app_.commandProcessor().runPending();
        EXPECT_EQ(database().openObjectCount(), 0) << typed;
        said_ = shown().substr(from);
        return picture(database());
    }
    std::string shown() { return app_.editor().commandLine().text(); }

    Application app_;
    ed::ScriptInputSource script_;
    std::string said_;
};

TEST_F(UndoCommandsTest, EachCommandIsOneStepBackAndForth) {
    const Picture empty = picture(database());
    const Picture drawn = run("_LINE 0,0 10,0 10,10\n\n");
    const Picture moved = run("_MOVE W -1,-1 11,1\n\n0,0 5,5\n");
    script_ = ed::ScriptInputSource({"<esc>"});
    const Picture cancelled = run("_LINE 20,0 30,0\n");
    const Picture twoLines = run("_TWOLINES E\n");
    const Picture failed = run("_BREAK\n");
    ASSERT_EQ(drawn.size(), empty.size() + 2);
    ASSERT_NE(moved, drawn);
    ASSERT_EQ(cancelled.size(), moved.size() + 1);
    ASSERT_EQ(twoLines.size(), cancelled.size() + 2);
    ASSERT_EQ(failed.size(), twoLines.size() + 1);

    EXPECT_EQ(run("_U\n"), twoLines);
    EXPECT_EQ(said_, "_U\nBREAK\nCommand: ");
    EXPECT_EQ(run("_U\n"), cancelled);
    EXPECT_EQ(said_, "_U\nTWOLINES\nCommand: ");
    EXPECT_EQ(run("_UNDO 2\n"), drawn);
    EXPECT_EQ(said_, "_UNDO\nEnter the number of operations to undo <1>: 2\nLINE MOVE\nCommand: ");
    EXPECT_EQ(run("_REDO\n"), moved);
    EXPECT_EQ(said_, "_REDO\nMOVE\nCommand: ");
    // A command that changes nothing is no step and leaves what can be brought again.
    EXPECT_EQ(run("_ZOOM E\n"), moved);
    EXPECT_EQ(run("_REDO\n_REDO\n"), twoLines);
    EXPECT_EQ(run("_UNDO\n\n"), cancelled);

    // A new change: what was taken back cannot be brought again.
    const Picture again = run("_LINE 0,50 10,50\n\n");
    EXPECT_EQ(run("_REDO\n"), again);
    EXPECT_EQ(said_, "_REDO\nNothing to redo\nCommand: ");
    EXPECT_EQ(run("_UNDO 10\n"), empty);
    EXPECT_EQ(said_,
              "_UNDO\nEnter the number of operations to undo <1>: 10\nLINE LINE MOVE LINE\n"
              "Everything has been undone\nCommand: ");
    EXPECT_EQ(run("_U\n"), empty);
    EXPECT_EQ(said_, "_U\nNothing to undo\nCommand: ");
    EXPECT_EQ(run("_REDO\n_REDO\n_REDO\n_REDO\n"), again);
}

}  // namespace
}  // namespace cad::app
