// System variables: types and defaults, refusals, the drawing's own table, and making a view
// current.
#include "cad/ed/SystemVariables.h"

#include <gtest/gtest.h>

#include "cad/ed/Editor.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/ResultCodes.h"

namespace cad::ed {
namespace {

struct DefaultCase {
    const char* name;
    SysVarValue value;
};

class SysVarDefaults : public testing::TestWithParam<DefaultCase> {};

TEST_P(SysVarDefaults, HaveTheHostsTypeAndValue) {
    Editor editor;
    SysVarValue value;
    ASSERT_EQ(editor.getVar(GetParam().name, value), RTNORM);
    EXPECT_EQ(value.index(), GetParam().value.index());
    EXPECT_TRUE(value == GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Cases, SysVarDefaults,
                         testing::Values(DefaultCase{"SDI", 0}, DefaultCase{"LIMCHECK", 0},
                                         DefaultCase{"VIEWSIZE", 297.0},
                                         DefaultCase{"VIEWCTR", ge::Point3d(210, 148.5, 0)},
                                         DefaultCase{"VIEWDIR", ge::Point3d(0, 0, 1)},
                                         DefaultCase{"LENSLENGTH", 50.0},
                                         DefaultCase{"VIEWTWIST", 0.0}, DefaultCase{"FRONTZ", 0.0},
                                         DefaultCase{"BACKZ", 0.0}, DefaultCase{"VIEWMODE", 0},
                                         DefaultCase{"TILEMODE", 1}, DefaultCase{"CVPORT", 2},
                                         DefaultCase{"TARGET", ge::Point3d(0, 0, 0)},
                                         DefaultCase{"MIRRTEXT", 0}, DefaultCase{"OSMODE", 4133},
                                         DefaultCase{"CMDECHO", 1},
                                         DefaultCase{"DWGNAME", std::string("Drawing1.dwg")}),
                         [](const auto& row) { return std::string(row.param.name); });

struct Recorder : EditorReactor {
    std::vector<std::pair<std::string, bool>> changes;
    void sysVarChanged(const std::string& name, bool success) override {
        changes.emplace_back(name, success);
    }
};

TEST(SystemVariables, SetVarRefusesUnknownReadOnlyAndWrongTypes) {
    Editor editor;
    Recorder recorder;
    editor.addReactor(&recorder);
    EXPECT_EQ(editor.setVar("mirrtext", 1), RTNORM);  // names are not case-sensitive
    EXPECT_EQ(editor.setVar("MIRRTEXT", 2.5), RTERROR);
    EXPECT_EQ(editor.setVar("VIEWCTR", ge::Point3d(1, 2, 0)), RTERROR);  // the view sets it
    EXPECT_EQ(editor.setVar("NOSUCHVAR", 1), RTERROR);
    EXPECT_EQ(editor.setVar("ANGBASE", 1), RTNORM);  // an int is taken for a real
    SysVarValue value;
    editor.getVar("ANGBASE", value);
    EXPECT_EQ(std::get<double>(value), 1.0);
    editor.getVar("MIRRTEXT", value);
    EXPECT_EQ(std::get<int>(value), 1);
    EXPECT_EQ(recorder.changes,
              (std::vector<std::pair<std::string, bool>>{
                  {"MIRRTEXT", true}, {"MIRRTEXT", false}, {"VIEWCTR", false}, {"ANGBASE", true}}));
    editor.removeReactor(&recorder);
}

TEST(SystemVariables, DrawingVariablesFollowTheDocumentApplicationOnesDoNot) {
    Editor editor;
    SystemVariables drawingA, drawingB;
    editor.setDocumentContext(nullptr, &drawingA);
    editor.setVar("LIMCHECK", 1);
    editor.setVar("SDI", 1);
    editor.setDocumentContext(nullptr, &drawingB);
    SysVarValue value;
    editor.getVar("LIMCHECK", value);
    EXPECT_EQ(std::get<int>(value), 0);
    editor.getVar("SDI", value);
    EXPECT_EQ(std::get<int>(value), 1);
    EXPECT_EQ(std::get<int>(*drawingA.get("LIMCHECK")), 1);
}

TEST(SystemVariables, SetCurrentViewUpdatesTheViewVariables) {
    Editor editor;
    ViewRecord view;
    view.centerPoint = {50, 60};
    view.height = 80;
    view.width = 160;
    view.target = {1, 2, 3};
    view.viewDirection = {0, -1, 1};
    view.lensLength = 35;
    view.viewTwist = 0.5;
    view.frontClipDistance = 4;
    view.backClipDistance = -4;
    view.frontClipEnabled = true;
    view.frontClipAtEye = false;
    EXPECT_EQ(editor.setCurrentView(view), RTNORM);

    SysVarValue value;
    editor.getVar("VIEWCTR", value);
    EXPECT_EQ(std::get<ge::Point3d>(value), ge::Point3d(50, 60, 0));
    editor.getVar("VIEWSIZE", value);
    EXPECT_EQ(std::get<double>(value), 80.0);
    editor.getVar("VIEWDIR", value);
    EXPECT_EQ(std::get<ge::Point3d>(value), ge::Point3d(0, -1, 1));
    editor.getVar("VIEWMODE", value);
    EXPECT_EQ(std::get<int>(value), 2 | 16);

    ViewRecord back = editor.currentView();
    EXPECT_EQ(back.centerPoint, view.centerPoint);
    EXPECT_EQ(back.width, 160.0);
    EXPECT_EQ(back.target, view.target);
    EXPECT_EQ(back.lensLength, 35.0);
    EXPECT_EQ(back.viewTwist, 0.5);
    EXPECT_EQ(back.backClipDistance, -4.0);
    EXPECT_TRUE(back.frontClipEnabled);
    EXPECT_FALSE(back.frontClipAtEye);
    EXPECT_FALSE(back.perspectiveEnabled);
}

}  // namespace
}  // namespace cad::ed
