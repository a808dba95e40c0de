// vantor-cad run headless on a script that draws a small part with the drawing and editing
// commands, typed and picked, and saves it: another DXF reader finds the drawing sound and
// holding exactly the entities drawn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using vantor::test::shellQuoted;

TEST(DrawingSession, APartDrawnSavedAndReadByAnotherReader) {
    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    cad::sys::TestTempFolder folder;
    const std::string saved = folder.file("bracket.dxf");
    // One command to a line, as a user would read it.
    // clang-format off
    const std::vector<std::string> lines = {
        // The plate, a hole and its copy.
        "RECTANG", "0,0", "<pick> 80,50",
        "CIRCLE", "20,25", "5",
        "COPY", "W", "14,19", "26,31", "", "20,25", "<pick> 60,25", "",
        // A slot: a line, a tangent arc, a line back, closed.
        "PLINE", "30,5", "50,5", "A", "50,15", "L", "30,15", "C",
        "ARC", "C", "40,25", "50,25", "A", "90",
        "TEXT", "5,55", "3.5", "0", "PART A-100 BRACKET", "",
        // A centre line drawn too low and moved up, a stray segment undone, a circle erased.
        "LINE", "-5,20", "85,20", "10,20", "U", "",
        "MOVE", "W", "-6,19", "86,21", "", "0,0", "@0,5",
        "CIRCLE", "100,100", "D", "4",
        "ERASE", "C", "99,99", "101,101", "",
        "LINE", "90,0", "<esc>",
        "SAVEAS", saved, "QUIT"};
    // clang-format on
    std::string script;
    for (const std::string& line : lines) script += line + "\n";
    folder.writeBytes("draw.script", script);
    const auto run = vantor::test::runCommand(shellQuoted(VANTOR_CAD) + " --headless --script " +
                                              shellQuoted(folder.file("draw.script")));
    ASSERT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(run.output,
                HasSubstr("[Close/Undo]: U\nSpecify next point or [Undo]: \nCommand: MOVE"));
    EXPECT_THAT(run.output, Not(HasSubstr("Unknown command")));

    const auto read = vantor::test::runEzdxf(R"PY(import sys, ezdxf
doc = ezdxf.readfile(sys.argv[1])
auditor = doc.audit()
for e in auditor.errors: print('error', e.code, e.message)
def p(v): return '%g,%g' % (round(v[0], 4) + 0.0, round(v[1], 4) + 0.0)
for e in doc.modelspace():
    t = e.dxftype()
    if t == 'LINE': print(t, e.dxf.layer, p(e.dxf.start), p(e.dxf.end))
    elif t == 'CIRCLE': print(t, e.dxf.layer, p(e.dxf.center), '%g' % e.dxf.radius)
    elif t == 'ARC': print(t, e.dxf.layer, p(e.dxf.center), '%g' % e.dxf.radius,
                           '%g' % e.dxf.start_angle, '%g' % e.dxf.end_angle)
    elif t == 'LWPOLYLINE':
        print(t, e.dxf.layer, 'closed' if e.closed else 'open',
              ' '.join(p(v) + ('' if v[2] == 0 else ' b%g' % round(v[2], 4))
                       for v in e.get_points('xyb')))
    elif t == 'TEXT': print(t, e.dxf.layer, p(e.dxf.insert), '%g' % e.dxf.height, repr(e.dxf.text))
    else: print(t)
)PY",
                                             saved);
    EXPECT_EQ(read.exitCode, 0) << read.output;
    EXPECT_EQ(read.output,
              "LWPOLYLINE 0 closed 0,0 80,0 80,50 0,50\n"
              "CIRCLE 0 20,25 5\n"
              "CIRCLE 0 60,25 5\n"
              "LWPOLYLINE 0 closed 30,5 50,5 b1 50,15 30,15\n"
              "ARC 0 40,25 10 0 90\n"
              "TEXT 0 5,55 3.5 'PART A-100 BRACKET'\n"
              "LINE 0 -5,25 85,25\n");
}

}  // namespace
