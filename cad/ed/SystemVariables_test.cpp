// System variables: types and defaults, refusals, the drawing's own table, and making a view
// current.
#include "cad/ed/SystemVariables.h"

#include <gtest/gtest.h>

#include "cad/ed/Editor.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/ResultCodes.h"

namespace cad::ed {
namespace {

// The value of `name`, with its type: an int 1 is not the real 1.0.
SysVarValue var(Editor& editor, const char* name) {
    SysVarValue value = std::string("<unset>");
    EXPECT_EQ(editor.getVar(name, value), RTNORM) << name;
    return value;
}

TEST(SystemVariables, DefaultsHaveTheHostsTypeAndValue) {
    Editor editor;
    const std::pair<const char*, SysVarValue> rows[] = {
        // clang-format off
        {"SDI", 0}, {"LIMCHECK", 0}, {"VIEWSIZE", 297.0}, {"VIEWCTR", ge::Point3d(210, 148.5, 0)},
        {"VIEWDIR", ge::Point3d(0, 0, 1)}, {"LENSLENGTH", 50.0}, {"VIEWTWIST", 0.0}, {"FRONTZ", 0.0},
        {"BACKZ", 0.0}, {"VIEWMODE", 0}, {"TILEMODE", 1}, {"CVPORT", 2}, {"TARGET", ge::Point3d()},
        {"MIRRTEXT", 0}, {"OSMODE", 4133}, {"CMDECHO", 1}, {"DWGNAME", std::string("Drawing1.dwg")},
        // clang-format on
    };
    for (const auto& [name, expected] : rows) EXPECT_TRUE(var(editor, name) == expected) << name;
}

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
    EXPECT_TRUE(var(editor, "ANGBASE") == SysVarValue(1.0));
    EXPECT_TRUE(var(editor, "MIRRTEXT") == SysVarValue(1));
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
    EXPECT_TRUE(var(editor, "LIMCHECK") == SysVarValue(0));
    EXPECT_TRUE(var(editor, "SDI") == SysVarValue(1));
    EXPECT_EQ(std::get<int>(*drawingA.get("LIMCHECK")), 1);
}

TEST(SystemVariables, SetCurrentViewUpdatesTheViewVariables) {
    Editor editor;
    // clang-format off
    const ViewRecord view{.centerPoint = {50, 60}, .height = 80, .width = 160, .target = {1, 2, 3},
                          .viewDirection = {0, -1, 1}, .lensLength = 35, .viewTwist = 0.5,
                          .frontClipDistance = 4, .backClipDistance = -4,
                          .frontClipEnabled = true, .frontClipAtEye = false};
    // clang-format on
    EXPECT_EQ(editor.setCurrentView(view), RTNORM);
    EXPECT_TRUE(var(editor, "VIEWCTR") == SysVarValue(ge::Point3d(50, 60, 0)));
    EXPECT_TRUE(var(editor, "VIEWSIZE") == SysVarValue(80.0));
    EXPECT_TRUE(var(editor, "VIEWDIR") == SysVarValue(ge::Point3d(0, -1, 1)));
    EXPECT_TRUE(var(editor, "VIEWMODE") == SysVarValue(2 | 16));

    const ViewRecord back = editor.currentView();
    EXPECT_EQ(std::tuple(back.centerPoint, back.width, back.target, back.lensLength, back.viewTwist,
                         back.backClipDistance),
              std::tuple(view.centerPoint, 160.0, view.target, 35.0, 0.5, -4.0));
    EXPECT_TRUE(back.frontClipEnabled && !back.frontClipAtEye && !back.perspectiveEnabled);
}

}  // namespace
}  // namespace cad::ed
