// The drawing commands driven by typed answers: the entities they make (type, points,
// closedness, layer), Undo and Close inside LINE and PLINE, what Esc leaves, and wrong answers
// refused with a message and asked for again.
#include "cad/app/DrawingCommands.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>

#include "cad/app/Application.h"
#include "cad/app/TestNumbers.h"
#include "cad/db/Arc.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Polyline.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Text.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::app {
namespace {

std::string pt(const ge::Point3d& p) {
    return num(p.x) + "," + num(p.y);
}

std::string degrees(double radians) {
    return num(radians * 180.0 / std::numbers::pi);
}

// One line per entity, so a test compares what was drawn with what it expects in one go.
std::string describe(db::ObjectId id) {
    auto entity = db::open<db::Entity>(id, db::OpenMode::ForRead);
    if (auto* line = dynamic_cast<db::Line*>(entity.get()))
        return "LINE " + pt(line->startPoint()) + " " + pt(line->endPoint());
    if (auto* circle = dynamic_cast<db::Circle*>(entity.get()))
        return "CIRCLE " + pt(circle->center()) + " r" + num(circle->radius());
    if (auto* arc = dynamic_cast<db::Arc*>(entity.get()))
        return "ARC " + pt(arc->center()) + " r" + num(arc->radius()) + " " +
               degrees(arc->startAngle()) + ">" +
               degrees(std::fmod(arc->endAngle(), 2 * std::numbers::pi));
    if (auto* polyline = dynamic_cast<db::Polyline*>(entity.get())) {
        std::string out = polyline->isClosed() ? "CLOSED" : "OPEN";
        for (unsigned i = 0; i < polyline->numVerts(); ++i) {
            ge::Point2d p;
            double bulge = 0, start = 0, end = 0;
            polyline->getPointAt(i, p);
            polyline->getBulgeAt(i, bulge);
            polyline->getWidthsAt(i, start, end);
            out += " " + num(p.x) + "," + num(p.y);
            if (bulge != 0) out += " b" + num(bulge);
            if (start != 0 || end != 0) out += " w" + num(start) + "/" + num(end);
        }
        return out;
    }
    if (auto* text = dynamic_cast<db::Text*>(entity.get()))
        return "TEXT " + pt(text->position()) + " h" + num(text->height()) + " " +
               degrees(text->rotation()) + " \"" + text->textString() + "\"";
    return entity ? std::string(entity->dxfName()) : "?";
}

class DrawingCommandsTest : public testing::Test {
protected:
    DrawingCommandsTest() {
        app_.documentManager().appContextNewDocument();
        app_.editor().setInputSource(&script_);
    }
    db::Database* db() { return app_.documentManager().curDocument()->database(); }
    std::vector<db::ObjectId> ids() {
        return db::open<db::BlockTableRecord>(db()->modelSpaceId(), db::OpenMode::ForRead)
            ->entityIds();
    }
    // Runs the typed text and answers the model space's entities afterwards.
    std::vector<std::string> run(const std::string& typed) {
        app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(), typed);
        app_.commandProcessor().runPending();
        EXPECT_EQ(db()->openObjectCount(), 0) << typed;
        std::vector<std::string> out;
        for (db::ObjectId id : ids()) out.push_back(describe(id));
        return out;
    }
    std::string shown() { return app_.editor().commandLine().text(); }
    std::size_t count(const std::string& part) {
        std::size_t n = 0;
        for (std::size_t at = shown().find(part); at != std::string::npos;
             at = shown().find(part, at + 1))
            ++n;
        return n;
    }

    Application app_;
    ed::ScriptInputSource script_;
};

using Entities = std::vector<std::string>;

TEST_F(DrawingCommandsTest, LineDrawsSegmentsUndoesAndCloses) {
    EXPECT_EQ(run("_LINE 0,0 10,0 10,10 U @0,5 0,10 C\n"),
              (Entities{"LINE 0,0 10,0", "LINE 10,0 10,5", "LINE 10,5 0,10", "LINE 0,10 0,0"}));
    EXPECT_NE(shown().find("Specify next point or [Undo]: 10,0\nSpecify next point or [Undo]: "
                           "10,10\nSpecify next point or [Close/Undo]: U"),
              std::string::npos)
        << shown();
}

TEST_F(DrawingCommandsTest, LineEndsOnEscOrEnterKeepingWhatWasDrawn) {
    EXPECT_EQ(run("_LINE 0,0 5,0 5,5\x03"), (Entities{"LINE 0,0 5,0", "LINE 5,0 5,5"}));
    EXPECT_EQ(run("_LINE 1,1 U 2,2\n").size(), 3u);
    EXPECT_NE(shown().find("\nAll segments already undone."), std::string::npos);
    EXPECT_EQ(run("_LINE 9,9\x03").size(), 3u);
    // Close is offered only once two segments make a figure.
    EXPECT_EQ(run("_LINE 0,0 1,0 C\n").size(), 4u);
    EXPECT_NE(shown().find("Invalid point."), std::string::npos);
}

TEST_F(DrawingCommandsTest, CircleWaysOfGivingIt) {
    const struct {
        const char* name;
        const char* typed;
        const char* expected;
    } rows[] = {
        {"centre and radius", "_CIRCLE 5,5 3\n", "CIRCLE 5,5 r3"},
        {"radius by a point", "_CIRCLE 0,0 3,4\n", "CIRCLE 0,0 r5"},
        {"diameter", "_CIRCLE 0,0 D 8\n", "CIRCLE 0,0 r4"},
        {"two points", "_CIRCLE 2P 0,0 10,0\n", "CIRCLE 5,0 r5"},
        {"three points", "_CIRCLE 3P 0,0 10,0 5,5\n", "CIRCLE 5,0 r5"},
        {"last radius by Enter", "_CIRCLE 0,0 2\n_CIRCLE 9,9\n\n", "CIRCLE 9,9 r2"},
    };
    for (const auto& row : rows) {
        Entities made = run(row.typed);
        ASSERT_FALSE(made.empty()) << row.name;
        EXPECT_EQ(made.back(), row.expected) << row.name;
    }
    EXPECT_NE(shown().find("Specify radius of circle or [Diameter] <2.0000>: "), std::string::npos);
}

TEST_F(DrawingCommandsTest, WrongAnswersAreRefusedAndAskedAgain) {
    EXPECT_EQ(run("_CIRCLE 0,0 0 -1 abc 0,0 2\n"), Entities{"CIRCLE 0,0 r2"});
    for (const char* message :
         {"\nValue must be positive and nonzero.\nSpecify radius of circle or [Diameter]: -1",
          "\nValue must be positive.\nSpecify radius of circle or [Diameter]: abc",
          "\nRequires numeric distance, second point, or option keyword.\nSpecify radius",
          "0,0\nValue must be positive and nonzero.\nSpecify radius of circle or [Diameter]: 2"})
        EXPECT_NE(shown().find(message), std::string::npos) << message << "\n" << shown();

    const struct {
        const char* name;
        const char* typed;
        const char* message;
        const char* expected;
    } rows[] = {
        {"collinear circle", "_CIRCLE 3P 0,0 1,1 2,2 2,0\n", "no circle passes", "CIRCLE 1,0 r1"},
        {"collinear arc", "_ARC 0,0 1,1 2,2 2,0\n", "no arc passes", "ARC 1,0 r1 0>180"},
        {"flat rectangle", "_RECTANG 0,0 10,0 10,5\n", "must differ in both X and Y",
         "CLOSED 0,0 10,0 10,5 0,5"},
        {"zero text height", "_TEXT 0,0 0 3 0 A\n\n", "Value must be positive and nonzero.",
         "TEXT 0,0 h3 0 \"A\""},
        {"arc behind its tangent", "_PLINE 0,0 10,0 A 5,0 10,10\n", "no arc reaches it",
         "OPEN 0,0 10,0 b1 10,10"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.typed).back(), row.expected) << row.name;
        EXPECT_NE(shown().find(row.message), std::string::npos) << row.name;
    }
}

TEST_F(DrawingCommandsTest, ArcByThreePointsOrFromItsCentre) {
    const struct {
        const char* name;
        const char* typed;
        const char* expected;
    } rows[] = {
        {"counter-clockwise", "_ARC 10,0 0,10 -10,0\n", "ARC 0,0 r10 0>180"},
        {"clockwise runs the other way", "_ARC -10,0 0,10 10,0\n", "ARC 0,0 r10 0>180"},
        {"below the axis", "_ARC -10,0 0,-10 10,0\n", "ARC 0,0 r10 180>0"},
        {"centre, start, end", "_ARC C 0,0 10,0 0,5\n", "ARC 0,0 r10 0>90"},
        {"centre, start, angle", "_ARC C 0,0 10,0 A 45\n", "ARC 0,0 r10 0>45"},
        {"start, centre, angle", "_ARC 0,0 C 5,0 A 90\n", "ARC 5,0 r5 180>270"},
    };
    for (const auto& row : rows) EXPECT_EQ(run(row.typed).back(), row.expected) << row.name;
}

TEST_F(DrawingCommandsTest, PolylineSegmentsArcsAndWidths) {
    const struct {
        const char* name;
        const char* typed;
        const char* expected;
    } rows[] = {
        {"closed outline", "_PLINE 0,0 10,0 10,10 0,10 C\n", "CLOSED 0,0 10,0 10,10 0,10"},
        {"tangent arc, then lines", "_PLINE 0,0 10,0 A 10,10 L 0,10\n",
         "OPEN 0,0 10,0 b1 10,10 0,10"},
        {"arc after arc", "_PLINE 0,0 10,0 A 10,10 0,10\n", "OPEN 0,0 10,0 b1 10,10 0,10"},
        {"arc closes", "_PLINE 0,0 10,0 A 10,10 C\n", "CLOSED 0,0 10,0 b1 10,10 b0.4142"},
        {"first arc leaves along X", "_PLINE 0,0 A 5,5\n", "OPEN 0,0 b0.4142 5,5"},
        {"tapered, then the end width", "_PLINE 0,0 W 1 2 10,0 20,0\n",
         "OPEN 0,0 w1/2 10,0 w2/2 20,0 w2/2"},
        {"undo past the start, then on", "_PLINE 0,0 10,0 20,0 U U U 5,5\n",
         "OPEN 0,0 w2/2 5,5 w2/2"},
    };
    for (const auto& row : rows) {
        const std::size_t before = ids().size();
        Entities made = run(row.typed);
        EXPECT_EQ(made.size(), before + 1) << row.name;
        EXPECT_EQ(made.back(), row.expected) << row.name;
    }
    EXPECT_NE(shown().find("\nCurrent line-width is 2.0000"), std::string::npos);
    EXPECT_NE(shown().find("\nAll segments already undone."), std::string::npos);
}

TEST_F(DrawingCommandsTest, PolylineOnEscKeepsItsSegmentsButNotALonePoint) {
    EXPECT_EQ(run("_PLINE 0,0 10,0 20,5\x03"), Entities{"OPEN 0,0 10,0 20,5"});
    EXPECT_EQ(run("_PLINE 0,0 10,0 U\x03").size(), 1u);
    EXPECT_EQ(run("_PLINE 3,3\x03").size(), 1u);
    // The lone polyline is one entity however many segments came and went.
    EXPECT_EQ(run("_PLINE 0,0 1,0 2,0 U 2,1 3,1\n").back(), "OPEN 0,0 1,0 2,1 3,1");
}

TEST_F(DrawingCommandsTest, RectangleIsAClosedPolyline) {
    EXPECT_EQ(run("_RECTANG 10,20 0,0\n"), Entities{"CLOSED 10,20 0,20 0,0 10,0"});
    EXPECT_EQ(run("_RECTANG 0,0\x03").size(), 1u);
}

TEST_F(DrawingCommandsTest, TextTakesHeightRotationAndLinesWithSpaces) {
    EXPECT_EQ(run("_TEXT 1,2 5 90 Part A-1\nsecond line\n\n"),
              (Entities{"TEXT 1,2 h5 90 \"Part A-1\"", "TEXT 8.5,2 h5 90 \"second line\""}));
    // The last height and angle are the next defaults.
    EXPECT_EQ(run("_TEXT 0,0\n\n\nHello world\n\n").back(), "TEXT 0,0 h5 90 \"Hello world\"");
    EXPECT_NE(shown().find("Specify height <5.0000>: \nSpecify rotation angle of text <90>: "),
              std::string::npos)
        << shown();
    // Enter at the first line, or Esc, makes nothing.
    EXPECT_EQ(run("_TEXT 0,0 1 0\n\n").size(), 3u);
    EXPECT_EQ(run("_TEXT 0,0 1 0\x03").size(), 3u);
}

TEST_F(DrawingCommandsTest, EntitiesGoOnTheDrawingsCurrentLayer) {
    auto record = std::make_unique<db::LayerTableRecord>();
    record->setName("PARTS");
    db::ObjectId parts;
    ASSERT_EQ(db::open<db::SymbolTable>(db()->layerTableId(), db::OpenMode::ForWrite)
                  ->add(std::move(record), parts),
              ErrorStatus::eOk);
    run("_LINE 0,0 1,1\n\n");
    ASSERT_EQ(db()->setClayer(parts), ErrorStatus::eOk);
    run("_CIRCLE 0,0 1\n_PLINE 0,0 1,0\n\n_TEXT 0,0 1 0 x\n\n");
    std::vector<db::ObjectId> layers;
    for (db::ObjectId id : ids())
        layers.push_back(db::open<db::Entity>(id, db::OpenMode::ForRead)->layerId());
    EXPECT_EQ(layers, (std::vector<db::ObjectId>{db()->layerZero(), parts, parts, parts}));
}

// The view draws between requests, so no request may come while an object is open.
TEST_F(DrawingCommandsTest, NothingIsOpenWhileInputIsAwaited) {
    struct Watch : ed::ScriptInputSource {
        Watch(db::Database* database, std::vector<std::string> lines)
            : ScriptInputSource(std::move(lines)), db(database) {}
        ed::InputEvent next(const ed::InputRequest& request) override {
            if (db->openObjectCount() != 0) ADD_FAILURE() << "open at: " << request.prompt;
            return ScriptInputSource::next(request);
        }
        db::Database* db;
    } watch(db(), {"LINE", "0,0", "1,0", "1,1",   "U",      "",      "PLINE", "0,0",  "2,0", "A",
                   "2,2",  "U",   "C",   "<esc>", "CIRCLE", "0,0",   "1",     "COPY", "0,1", "",
                   "0,0",  "3,0", "U",   "",      "ROTATE", "ALL",   "",      "0,0",  "C",   "45",
                   "MOVE", "ALL", "",    "D",     "1,1",    "ERASE", "ALL",   ""});
    app_.editor().setInputSource(&watch);
    app_.commandProcessor().run();
    EXPECT_TRUE(watch.atEnd());
    EXPECT_TRUE(ids().empty());
}

}  // namespace
}  // namespace cad::app
