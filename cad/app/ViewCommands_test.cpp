// The viewing commands: each of ZOOM's answers reaches the view as the right call, a wrong
// answer is refused with a message, PAN takes two points or a displacement, and without a
// view the commands still take their input.
#include "cad/app/ViewCommands.h"

#include <gtest/gtest.h>

#include "cad/app/Application.h"
#include "cad/app/ViewPort.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::app {
namespace {

struct ViewLog : ViewPort {
    std::vector<std::string> calls;
    bool hasPrevious = true;
    static std::string p(const ge::Point3d& at) {
        return std::to_string(int(at.x)) + "," + std::to_string(int(at.y));
    }
    void zoomExtents() override { calls.push_back("extents"); }
    void zoomWindow(const ge::Point3d& a, const ge::Point3d& b) override {
        calls.push_back("window " + p(a) + " " + p(b));
    }
    bool zoomPrevious() override {
        calls.push_back("previous");
        return hasPrevious;
    }
    void zoomScale(double factor) override { calls.push_back("scale " + std::to_string(factor)); }
    void pan(const ge::Vector3d& d) override { calls.push_back("pan " + p({d.x, d.y, 0})); }
    void regen() override { calls.push_back("regen"); }
    void redraw() override { calls.push_back("redraw"); }
};

class ViewCommandsTest : public testing::Test {
protected:
    ViewCommandsTest() {
        app_.documentManager().appContextNewDocument();
        app_.editor().setInputSource(&script_);
        app_.viewCommands().setViewPort(&view_);
    }
    std::vector<std::string> run(const std::string& typed) {
        view_.calls.clear();
        app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(), typed);
        app_.commandProcessor().runPending();
        return view_.calls;
    }
    std::string shown() { return app_.editor().commandLine().text(); }

    Application app_;
    ed::ScriptInputSource script_;
    ViewLog view_;
};

TEST_F(ViewCommandsTest, ZoomAnswers) {
    using Calls = std::vector<std::string>;
    EXPECT_EQ(run("_ZOOM\n\n"), Calls{"extents"});
    EXPECT_EQ(run("_ZOOM E\n"), Calls{"extents"});
    EXPECT_EQ(run("_ZOOM P\n"), Calls{"previous"});
    EXPECT_EQ(run("_ZOOM 2x\n"), Calls{"scale 2.000000"});
    EXPECT_EQ(run("_ZOOM 0.5\n"), Calls{"scale 0.500000"});
    EXPECT_EQ(run("_ZOOM 1,2 30,40\n"), Calls{"window 1,2 30,40"});
    EXPECT_EQ(run("_ZOOM W 5,5 -5,-5\n"), Calls{"window 5,5 -5,-5"});
    EXPECT_EQ(run("_ZOOM -2x\n"), Calls{});
    EXPECT_NE(shown().find("Requires a point, a scale factor (nX) or an option keyword."), std::string::npos);
    view_.hasPrevious = false;
    run("_ZOOM P\n");
    EXPECT_NE(shown().find("No previous view saved."), std::string::npos);
}

TEST_F(ViewCommandsTest, PanRegenRedraw) {
    using Calls = std::vector<std::string>;
    EXPECT_EQ(run("_PAN 10,10 15,30\n"), Calls{"pan 5,20"});
    EXPECT_EQ(run("_PAN 7,-3\n\n"), Calls{"pan 7,-3"});
    EXPECT_EQ(run("_REGEN\n_REDRAW\n"), (Calls{"regen", "redraw"}));
}

TEST_F(ViewCommandsTest, WithoutAViewTheAnswersAreStillTaken) {
    app_.viewCommands().setViewPort(nullptr);
    run("_ZOOM 1,1 2,2\n_ZOOM 3x\n_PAN 1,1 2,2\n");
    EXPECT_NE(shown().rfind("Command: "), std::string::npos);
    EXPECT_EQ(shown().find("Unknown command"), std::string::npos);
    EXPECT_TRUE(view_.calls.empty());
}

}  // namespace
}  // namespace cad::app
