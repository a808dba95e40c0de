// Capture from the current drawing into a library drawing by block and by entities, with its
// refusals and the caller hidden and shown; the BOM mark's point picked with the view on the
// part and the view and limits check given back.
#include "vantor/authoring/BlockCapture.h"

#include <gtest/gtest.h>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/TestDrawing.h"
#include "cad/ed/ScriptInputSource.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::db::BlockTableRecord;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::testing_support::addBlock;
using cad::db::testing_support::append;
using cad::db::testing_support::entitiesOf;
using cad::db::testing_support::lookUp;
using cad::ge::Point3d;
using testing_support::boxesShown;

// Answers from a script and notes where the view stood when the point was asked for.
struct WatchingInput : cad::ed::InputSource {
    cad::ed::Editor* editor = nullptr;
    cad::ed::ScriptInputSource script;
    std::optional<cad::ed::ViewRecord> viewAtPoint;
    cad::ed::SysVarValue limcheckAtPoint;
    cad::ed::InputEvent next(const cad::ed::InputRequest& request) override {
        if (request.kind == cad::ed::InputRequest::Kind::Point && !viewAtPoint) {
            viewAtPoint = editor->currentView();
            editor->getVar("LIMCHECK", limcheckAtPoint);
        }
        return script.next(request);
    }
};

class Capture : public ::testing::Test {
protected:
    Capture() {
        // The user's drawing: a reference to "NUT" at (100, 50) and a loose line.
        cad::db::Database drawing;
        const ObjectId nut = addBlock(drawing, "NUT", {1, 1, 0});
        append(nut, std::make_unique<cad::db::Line>(Point3d(0, 0, 0), Point3d(4, 0, 0)));
        append(nut, std::make_unique<cad::db::Line>(Point3d(0, 0, 0), Point3d(0, 2, 0)));
        reference = handleOf(append(drawing.modelSpaceId(),
                                    std::make_unique<cad::db::BlockReference>(
                                        Point3d(100, 50, 0), nut)));
        line = handleOf(append(drawing.modelSpaceId(), std::make_unique<cad::db::Line>(
                                                           Point3d(0, 0, 0), Point3d(8, 6, 0))));
        EXPECT_EQ(drawing.saveAs(folder.file("work.dxf")), cad::ErrorStatus::eOk);
        EXPECT_EQ(app.documentManager().appContextOpenDocument(folder.file("work.dxf")),
                  cad::ErrorStatus::eOk);
        input.editor = &app.editor();
        app.editor().setInputSource(&input);
        caller.hide = [this] { visibility += "hide "; };
        caller.show = [this] { visibility += "show "; };
    }
    ~Capture() override { app.editor().setInputSource(nullptr); }

    static std::string handleOf(ObjectId id) { return id.handle().toHex(); }
    void type(std::vector<std::string> lines) { input.script = cad::ed::ScriptInputSource(lines); }
    BlockCapture capture() { return BlockCapture(app.editor(), app.documentManager(), dialogs); }
    std::string commandLine() { return app.editor().commandLine().text(); }
    ObjectId libraryBlock(std::string_view name) {
        return lookUp(library.blockTableId(), name);
    }

    cad::sys::TestTempFolder folder;
    cad::app::Application app;
    cad::app::ScriptedDialogs dialogs;
    WatchingInput input;
    CallerWindow caller;
    std::string visibility;
    std::string reference, line;
    cad::db::Database library;
};

TEST_F(Capture, OnePickedReferenceCopiesItsDefinitionExceptIntoTheDrawingItStandsIn) {
    type({reference, ""});
    const auto copied = capture().capture(&library, false, caller);
    ASSERT_TRUE(copied);
    EXPECT_EQ(copied->name, "NUT");
    EXPECT_EQ(copied->id, libraryBlock("NUT"));
    EXPECT_TRUE(copied->basePoint.isEqualTo({1, 1, 0}));
    EXPECT_EQ(entitiesOf(copied->id).size(), 2u);
    EXPECT_NE(commandLine().find(BlockCapture::kSelectPrompt), std::string::npos);
    EXPECT_EQ(visibility, "hide show ");
    EXPECT_TRUE(dialogs.calls().empty());

    EXPECT_TRUE(capture().isCurrentDrawing(folder.path().string() + "/./work.dxf"));
    EXPECT_FALSE(capture().isCurrentDrawing(folder.file("parts.dxf")));
    cad::db::Database current;
    type({reference, ""});
    visibility.clear();
    EXPECT_FALSE(capture().capture(&current, true, caller));
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"중첩 에러: 현재 도면에 존재하는 블록입니다. [error]"});
    EXPECT_TRUE(lookUp(current.blockTableId(), "NUT").isNull());
    EXPECT_EQ(visibility, "hide show ");
}

TEST_F(Capture, EntitiesBecomeANamedBlockAndAnExistingNameAnsweredNoMakesNothing) {
    // Two picks, one of them a reference: the entity path, the reference inside the new block.
    type({reference, line, "", "FLANGE", "10,0"});
    const auto made = capture().capture(&library, false, caller);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->name, "FLANGE");
    EXPECT_TRUE(made->basePoint.isEqualTo({10, 0, 0}));
    const std::vector<ObjectId> inside = entitiesOf(made->id);
    ASSERT_EQ(inside.size(), 2u);
    EXPECT_TRUE(cad::db::open<cad::db::BlockReference>(inside[0], OpenMode::ForRead));
    EXPECT_FALSE(libraryBlock("NUT").isNull());  // what the reference needs came along

    dialogs.pushAnswer(cad::app::IDCANCEL);
    type({line, "", "FLANGE", "0,0"});
    EXPECT_FALSE(capture().capture(&library, false, caller));
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{
                  "블록 갱신: 동일한 이름을 가진 블록이 존재합니다. \n갱신하시겠습니까? "
                  "[warning ok-cancel]"});
    EXPECT_EQ(entitiesOf(libraryBlock("FLANGE")), inside);
    EXPECT_TRUE(cad::db::open<BlockTableRecord>(libraryBlock("FLANGE"), OpenMode::ForRead)
                    ->origin()
                    .isEqualTo({10, 0, 0}));
    EXPECT_TRUE(commandLine().ends_with("\n*Making Block Failed(or Canceled)*\nCommand:"));
    EXPECT_EQ(library.openObjectCount(), 0);
}

TEST_F(Capture, RefusalsLeaveTheTargetAsItWasAndTheCallerShown) {
    SCOPED_TRACE("a command running");
    cad::app::Document* document = app.documentManager().curDocument();
    app.documentManager().commandStarted(document);
    type({reference, ""});
    EXPECT_FALSE(capture().capture(&library, false, caller));
    EXPECT_FALSE(capture().pickBomPoint(library, "NUT", caller));
    app.documentManager().commandFinished(document);
    const std::string busy =
        "명령 중첩 에러: AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 종료하신 후 다시 "
        "시도해 주십시오. [error]";
    EXPECT_EQ(boxesShown(dialogs), (std::vector<std::string>{busy, busy}));
    EXPECT_EQ(visibility, "");  // refused before anything was hidden
    EXPECT_EQ(input.script.linesRead(), 0u);

    const struct {
        const char* name;
        std::vector<std::string> typed;
        std::vector<std::string> boxes;
    } rows[] = {
        {"Esc at the prompt", {"<esc>"}, {}},
        {"Enter with nothing selected", {""}, {}},
        {"no drawing to make a block in, by block",
         {reference, ""},
         {"데이터베이스 에러: 블록이 생성되는 도면 정보가 없습니다. [error]"}},
        {"no drawing to make a block in, by entities",
         {line, ""},
         {"데이터베이스 에러: 블록이 생성되는 도면 정보가 없습니다. [error]"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        dialogs.clearCalls();
        visibility.clear();
        type(row.typed);
        const bool nullTarget = !row.boxes.empty();
        EXPECT_FALSE(capture().capture(nullTarget ? nullptr : &library, false, caller));
        EXPECT_EQ(boxesShown(dialogs), row.boxes);
        EXPECT_EQ(visibility, "hide show ");
    }
    EXPECT_TRUE(libraryBlock("NUT").isNull());
}

TEST_F(Capture, BomPointIsTheOffsetFromTheReferenceWithTheViewOnThePartAndGivenBack) {
    app.editor().setVar("LIMCHECK", 1);
    const cad::ed::ViewRecord before = app.editor().currentView();
    type({"<pick> 105,52"});
    const auto offset = capture().pickBomPoint(library, "NUT", caller);
    ASSERT_TRUE(offset);
    EXPECT_TRUE(offset->isEqualTo({5, 2, 0}));
    EXPECT_NE(commandLine().find(BlockCapture::kBomPrompt), std::string::npos);
    // The reference's lines run from (99, 49) to (103, 51): the view is centred on them.
    ASSERT_TRUE(input.viewAtPoint);
    EXPECT_NEAR(input.viewAtPoint->centerPoint.x, 101, 1e-9);
    EXPECT_NEAR(input.viewAtPoint->centerPoint.y, 50, 1e-9);
    EXPECT_LT(input.viewAtPoint->height, 10);
    EXPECT_TRUE(input.limcheckAtPoint == cad::ed::SysVarValue(1));  // given back before the pick
    const cad::ed::ViewRecord after = app.editor().currentView();
    EXPECT_EQ(after.centerPoint.x, before.centerPoint.x);
    EXPECT_EQ(after.centerPoint.y, before.centerPoint.y);
    EXPECT_EQ(after.height, before.height);
    EXPECT_EQ(visibility, "hide show ");
}

TEST_F(Capture, BomPointOfABlockTheDrawingDoesNotShowIsTakenFromTheBlocksOrigin) {
    const ObjectId washer = addBlock(library, "WASHER", {20, 20, 0});
    append(washer, std::make_unique<cad::db::Line>(Point3d(18, 20, 0), Point3d(22, 20, 0)));
    type({"<pick> 21,23"});
    const auto offset = capture().pickBomPoint(library, "WASHER", caller);
    ASSERT_TRUE(offset);
    EXPECT_TRUE(offset->isEqualTo({1, 3, 0}));
    ASSERT_TRUE(input.viewAtPoint);
    EXPECT_NEAR(input.viewAtPoint->centerPoint.x, 20, 1e-9);
    EXPECT_TRUE(entitiesOf(app.editor().database()->modelSpaceId()).size() == 2u);  // nothing added

    SCOPED_TRACE("Esc leaves the point as it was");
    type({"<esc>"});
    EXPECT_FALSE(capture().pickBomPoint(library, "WASHER", caller));
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(Capture, BomPointInAReadOnlyDrawingIsRefused) {
    // The same drawing opened a second time is read-only.
    ASSERT_EQ(app.documentManager().appContextOpenDocument(folder.file("work.dxf")),
              cad::ErrorStatus::eOk);
    ASSERT_TRUE(app.documentManager().curDocument()->isReadOnly());
    type({"<pick> 105,52"});
    EXPECT_FALSE(capture().pickBomPoint(library, "NUT", caller));
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"작업 중지: 열린도면이 읽기 전용입니다. [error]"});
    EXPECT_EQ(visibility, "");
}

}  // namespace
}  // namespace vantor
