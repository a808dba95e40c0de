// ERASE, MOVE, COPY and ROTATE on a selection made by window or pick, or on the pick-first
// set, with base and second points or a displacement; Esc changes nothing.
#include "cad/app/EditCommands.h"

#include <gtest/gtest.h>

#include <deque>

#include <cmath>
#include <cstdio>

#include "cad/app/Application.h"
#include "cad/app/TestNumbers.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::app {
namespace {

std::string describe(db::ObjectId id) {
    auto entity = db::open<db::Entity>(id, db::OpenMode::ForRead);
    if (auto* line = dynamic_cast<db::Line*>(entity.get()))
        return "LINE " + num(line->startPoint().x) + "," + num(line->startPoint().y) + " " +
               num(line->endPoint().x) + "," + num(line->endPoint().y);
    if (auto* circle = dynamic_cast<db::Circle*>(entity.get()))
        return "CIRCLE " + num(circle->center().x) + "," + num(circle->center().y);
    return "?";
}

class EditCommandsTest : public testing::Test {
protected:
    // A short line along X at the origin and a circle well away from it.
    EditCommandsTest() {
        app_.documentManager().appContextNewDocument();
        app_.editor().setInputSource(&script_);
        auto space = db::open<db::BlockTableRecord>(db()->modelSpaceId(), db::OpenMode::ForWrite);
        space->appendEntity(std::make_unique<db::Line>(ge::Point3d(0, 0, 0), ge::Point3d(10, 0, 0)),
                            line_);
        space->appendEntity(
            std::make_unique<db::Circle>(ge::Point3d(50, 50, 0), ge::Vector3d::kZAxis, 2.0),
            circle_);
    }
    db::Database* db() { return app_.documentManager().curDocument()->database(); }
    std::vector<std::string> run(const std::string& typed) {
        app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(), typed);
        app_.commandProcessor().runPending();
        EXPECT_EQ(db()->openObjectCount(), 0) << typed;
        std::vector<std::string> out;
        auto space = db::open<db::BlockTableRecord>(db()->modelSpaceId(), db::OpenMode::ForRead);
        std::vector<db::ObjectId> ids = space->entityIds();
        space.close();
        for (db::ObjectId id : ids) out.push_back(describe(id));
        return out;
    }
    std::string shown() { return app_.editor().commandLine().text(); }

    Application app_;
    ed::ScriptInputSource script_;
    db::ObjectId line_, circle_;
};

using Entities = std::vector<std::string>;

// Selects the line alone by a window around it.
const std::string kLineByWindow = "W -1,-1 11,1\n\n";

TEST_F(EditCommandsTest, MoveBySecondPointOrDisplacement) {
    const struct {
        const char* name;
        std::string typed;
        const char* expected;
    } rows[] = {
        {"base and second point", "_MOVE " + kLineByWindow + "0,0 5,5\n", "LINE 5,5 15,5"},
        {"first point as displacement", "_MOVE " + kLineByWindow + "-5,-5\n\n", "LINE -5,-5 5,-5"},
        {"typed displacement", "_MOVE " + kLineByWindow + "D 3,4\n", "LINE 3,4 13,4"},
        {"Enter for the displacement", "_MOVE " + kLineByWindow + "\n-3,-4\n", "LINE -3,-4 7,-4"},
        {"relative second point", "_MOVE " + kLineByWindow + "1,1 @0,2\n", "LINE 0,2 10,2"},
        {"picked", "_MOVE 5,1\n\n0,0 0,-2\n", "LINE 0,-2 10,-2"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.typed), (Entities{row.expected, "CIRCLE 50,50"})) << row.name;
        auto line = db::open<db::Line>(line_, db::OpenMode::ForWrite);
        line->setStartPoint({0, 0, 0});
        line->setEndPoint({10, 0, 0});
    }
    EXPECT_NE(shown().find(
                  "Select objects: W\nFirst corner: -1,-1\nSpecify opposite corner: 11,1\n1 found"
                  "\nSelect objects: \nSpecify base point or [Displacement] <Displacement>: 0,0"
                  "\nSpecify second point or <use first point as displacement>: 5,5"),
              std::string::npos)
        << shown();
}

TEST_F(EditCommandsTest, ThePickFirstSetIsTakenWithoutAsking) {
    app_.editor().setPickfirst({circle_});
    EXPECT_EQ(run("_MOVE 0,0 10,0\n"), (Entities{"LINE 0,0 10,0", "CIRCLE 60,50"}));
    EXPECT_EQ(shown().find("Select objects"), std::string::npos);
    app_.editor().setPickfirst({line_, circle_});
    EXPECT_EQ(run("_ERASE\n"), Entities{});
}

// What the view is asked to show while MOVE and ROTATE wait: the selection following the
// cursor from the base point, or turning about it; nothing while the base point is asked for.
TEST_F(EditCommandsTest, TheSelectionFollowsTheCursorAfterTheBasePoint) {
    struct Recording : ed::InputSource {
        std::vector<ed::InputRequest> seen;
        std::deque<std::string> answers;
        ed::InputEvent next(const ed::InputRequest& request) override {
            seen.push_back(request);
            if (answers.empty()) return ed::InputEvent::end();
            std::string answer = answers.front();
            answers.pop_front();
            return ed::InputEvent::typed(answer);
        }
    } recording;
    app_.editor().setInputSource(&recording);
    using Motion = ed::InputRequest::Motion;
    for (auto [command, motion] : {std::pair{"_MOVE\n", Motion::Move}, std::pair{"_ROTATE\n", Motion::Rotate}}) {
        recording.seen.clear();
        recording.answers = {"0,0", "10,0"};
        app_.editor().setPickfirst({circle_});
        run(command);
        ASSERT_EQ(recording.seen.size(), 2u) << command;
        EXPECT_TRUE(recording.seen[0].dragged.empty()) << command;
        EXPECT_EQ(recording.seen[1].dragged, std::vector<db::ObjectId>{circle_}) << command;
        EXPECT_EQ(recording.seen[1].motion, motion) << command;
        EXPECT_TRUE(recording.seen[1].basePoint) << command;
    }
    app_.editor().setInputSource(&script_);
}

TEST_F(EditCommandsTest, CopyRepeatsUntilEnterAndUndoesTheLast) {
    EXPECT_EQ(run("_COPY " + kLineByWindow + "0,0 0,10 0,20 U 0,30\n\n"),
              (Entities{"LINE 0,0 10,0", "CIRCLE 50,50", "LINE 0,10 10,10", "LINE 0,30 10,30"}));
    EXPECT_NE(shown().find("\nSpecify second point or [Exit/Undo] <Exit>: U"), std::string::npos);
    // Enter at the first second point: one copy, by the base point as displacement.
    EXPECT_EQ(run("_COPY 50,48\n\n1,1\n\n").back(), "CIRCLE 51,51");
    app_.editor().setPickfirst({line_});
    EXPECT_EQ(run("_COPY D 0,-5\n").back(), "LINE 0,-5 10,-5");
}

TEST_F(EditCommandsTest, RotateAboutABasePointOrACopy) {
    EXPECT_EQ(run("_ROTATE " + kLineByWindow + "0,0 90\n"),
              (Entities{"LINE 0,0 0,10", "CIRCLE 50,50"}));
    // The angle by a point from the base; Copy leaves the original.
    EXPECT_EQ(run("_ROTATE 50,48\n\n50,40 C 40,40\n"),
              (Entities{"LINE 0,0 0,10", "CIRCLE 50,50", "CIRCLE 50,30"}));
    EXPECT_NE(shown().find("\nRotating a copy of the selected objects."), std::string::npos);
}

TEST_F(EditCommandsTest, EraseAndEscChangeWhatTheyShould) {
    const Entities untouched{"LINE 0,0 10,0", "CIRCLE 50,50"};
    EXPECT_EQ(run("_MOVE " + kLineByWindow + "0,0\x03"), untouched);
    EXPECT_EQ(run("_COPY " + kLineByWindow + "\x03"), untouched);
    EXPECT_EQ(run("_ROTATE 5,0\x03"), untouched);
    EXPECT_EQ(run("_ERASE\n"), untouched);  // nothing selected
    EXPECT_EQ(run("_ERASE C 49,49 -1,-1\n\n"), Entities{});
}

}  // namespace
}  // namespace cad::app
