// Input requests driven by scripts: what each answer reads as, the result codes, the refusals
// the command line shows, and where input comes from (typed ahead, queued, the source).
#include "cad/ed/Editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "cad/ed/InputPointMonitor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::ed {
namespace {

using testing::HasSubstr;

constexpr double kPi = std::numbers::pi;

class EditorTest : public testing::Test {
protected:
    void feed(std::vector<std::string> lines) {
        script_ = ScriptInputSource(std::move(lines));
        editor_.setInputSource(&script_);
    }
    std::string shown() const { return editor_.commandLine().text(); }
    // A point request's result code and point.
    std::pair<int, ge::Point3d> point(const char* prompt = "") {
        ge::Point3d p{-1, -1, -1};
        const int code = editor_.getPoint(prompt, p);
        return {code, p};
    }
    std::string word(bool spacesAllowed) {
        std::string text = "<none>";
        EXPECT_EQ(editor_.getString("\nWord: ", text, spacesAllowed), RTNORM);
        return text;
    }

    Editor editor_;
    ScriptInputSource script_;
};

// ---- Points ----

struct PointCase {
    const char* name;
    std::vector<std::string> lines;
    int flags;
    int code;
    ge::Point3d point;
    const char* shows = "";  // a text the command line must hold
};

class GetPoint : public EditorTest, public testing::WithParamInterface<PointCase> {};

TEST_P(GetPoint, ReadsTheAnswer) {
    const PointCase& row = GetParam();
    editor_.setLastPoint({10, 20, 0});
    feed(row.lines);
    editor_.initGet(row.flags, "Undo eXit");
    ge::Point3d point{-1, -1, -1};
    EXPECT_EQ(editor_.getPoint("\nSpecify point: ", point), row.code);
    if (row.code == RTNORM) {
        EXPECT_TRUE(point.isEqualTo(row.point, {1e-9, 1e-9}))
            << point.x << "," << point.y << "," << point.z;
        EXPECT_TRUE(editor_.lastPoint().isEqualTo(row.point, {1e-9, 1e-9}));
    }
    EXPECT_THAT(shown(), HasSubstr(row.shows));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, GetPoint, testing::Values(
    PointCase{"Absolute2d", {"3,4"}, 0, RTNORM, {3, 4, 0}, "Specify point: 3,4"},
    PointCase{"Absolute3d", {"3,4,5"}, 0, RTNORM, {3, 4, 5}},
    PointCase{"RelativeToLastPoint", {"@5,-5"}, 0, RTNORM, {15, 15, 0}},
    PointCase{"AtAloneIsTheLastPoint", {"@"}, 0, RTNORM, {10, 20, 0}},
    PointCase{"RelativePolar", {"@10<90"}, 0, RTNORM, {10, 30, 0}},
    PointCase{"Picked", {"<pick> 7,8"}, 0, RTNORM, {7, 8, 0}},
    PointCase{"MovesAreNotAnswers", {"<move> 1,1", "<move> 2,2", "9,9"}, 0, RTNORM, {9, 9, 0}},
    PointCase{"GarbageRefusedThenPoint", {"abc", "1,2"}, 0, RTNORM, {1, 2, 0},
              "\nInvalid point.\nSpecify point: 1,2"},
    PointCase{"EnterIsNone", {""}, 0, RTNONE, {}},
    PointCase{"NoNullRefusesEnter", {"", "1,1"}, RSG_NONULL, RTNORM, {1, 1, 0}},
    PointCase{"EscCancels", {"<esc>"}, 0, RTCAN, {}, "*Cancel*"},
    PointCase{"EndOfScriptCancels", {}, 0, RTCAN, {}},
    PointCase{"KeywordByCapital", {"x"}, 0, RTKWORD, {}},
    PointCase{"OtherTextAccepted", {"hello"}, RSG_OTHER, RTKWORD, {}}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_F(EditorTest, KeywordAnswersAreReportedByGetInput) {
    feed({"ex", "U", "hello"});
    std::string text;
    editor_.initGet(0, "Undo eXit");
    ASSERT_EQ(point().first, RTKWORD);
    editor_.getInput(text);
    EXPECT_EQ(text, "eXit");
    editor_.initGet(0, "Undo eXit _Undo Exit");
    ASSERT_EQ(point().first, RTKWORD);
    editor_.getInput(text);
    EXPECT_EQ(text, "Undo");  // the global name
    // initGet holds for one request only: the keyword list is gone now.
    EXPECT_EQ(point().first, RTCAN);  // "hello" refused, then the script ends
}

// ---- Angles ----

struct AngleCase {
    const char* name;
    std::vector<std::string> lines;
    std::optional<ge::Point3d> base;
    int flags;
    int code;
    double angle;
    const char* shows = "";
};

class GetAngle : public EditorTest, public testing::WithParamInterface<AngleCase> {};

TEST_P(GetAngle, ReadsDegreesOrPoints) {
    const AngleCase& row = GetParam();
    feed(row.lines);
    editor_.initGet(row.flags);
    double angle = -1;
    EXPECT_EQ(editor_.getAngle("\nAngle: ", angle, row.base), row.code);
    if (row.code == RTNORM) {
        EXPECT_NEAR(angle, row.angle, 1e-12);
    }
    EXPECT_THAT(shown(), HasSubstr(row.shows));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, GetAngle, testing::Values(
    AngleCase{"DegreesTyped", {"90"}, {}, 0, RTNORM, kPi / 2},
    AngleCase{"NegativeWrapsAround", {"-90"}, {}, 0, RTNORM, 3 * kPi / 2},
    AngleCase{"FullTurnsFold", {"450"}, {}, 0, RTNORM, kPi / 2},
    AngleCase{"PointFromBase", {"0,10"}, ge::Point3d{0, 0, 0}, 0, RTNORM, kPi / 2},
    AngleCase{"PickFromOffsetBase", {"<pick> 5,5"}, ge::Point3d{10, 10, 0}, 0, RTNORM, 5 * kPi / 4},
    AngleCase{"TwoPointsWithoutBase", {"0,0", "10,10"}, {}, 0, RTNORM, kPi / 4,
              "Specify second point: 10,10"},
    AngleCase{"NoZeroRefusesZero", {"0", "45"}, {}, RSG_NOZERO, RTNORM, kPi / 4,
              "\nValue must be nonzero."},
    AngleCase{"TextRefused", {"abc"}, {}, 0, RTCAN, 0, "\nRequires numeric angle or second point."},
    AngleCase{"Enter", {""}, {}, 0, RTNONE, 0}),
    [](const auto& row) { return row.param.name; });
// clang-format on

// ---- Numbers, keywords and texts ----

TEST_F(EditorTest, IntegersAndRealsHonourTheFlags) {
    feed({"x", "40000", "0", "-1", "7", "2.5", "-3", "1e2"});
    int value = 0;
    editor_.initGet(RSG_NOZERO | RSG_NONEG);
    EXPECT_EQ(editor_.getInteger("\nCount: ", value), RTNORM);
    EXPECT_EQ(value, 7);
    for (const char* refusal :
         {"\nRequires an integer value.", "\nRequires an integer between -32768 and 32767.",
          "\nValue must be nonzero.", "\nValue must be positive."})
        EXPECT_THAT(shown(), HasSubstr(refusal));

    double real = 0;
    EXPECT_EQ(editor_.getReal("", real), RTNORM);
    EXPECT_EQ(real, 2.5);
    editor_.initGet(RSG_NONEG);
    EXPECT_EQ(editor_.getReal("", real), RTNORM);
    EXPECT_EQ(real, 100.0);
}

struct KeywordCase {
    const char* name;
    const char* list;
    std::vector<std::string> lines;
    int flags;
    int code;
    const char* answer;
};

class GetKeyword : public EditorTest, public testing::WithParamInterface<KeywordCase> {};

TEST_P(GetKeyword, MatchesAbbreviations) {
    const KeywordCase& row = GetParam();
    feed(row.lines);
    editor_.initGet(row.flags, row.list);
    std::string answer;
    EXPECT_EQ(editor_.getKeyword("\nOption: ", answer), row.code);
    EXPECT_EQ(answer, row.answer);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, GetKeyword, testing::Values(
    KeywordCase{"Capitals", "Setting eXit", {"X"}, 0, RTNORM, "eXit"},
    KeywordCase{"LowerCaseCapitals", "Setting eXit", {"s"}, 0, RTNORM, "Setting"},
    KeywordCase{"StartThroughTheCapital", "Setting eXit", {"exi"}, 0, RTNORM, "eXit"},
    KeywordCase{"StartShortOfTheCapitalRefused", "Setting eXit", {"e", "x"}, 0, RTNORM, "eXit"},
    KeywordCase{"NoCapitalsNeedsAll", "Load load2", {"load2"}, 0, RTNORM, "load2"},
    KeywordCase{"GlobalTyped", "Undo eXit _Undo Exit", {"_Exit"}, 0, RTNORM, "Exit"},
    KeywordCase{"Enter", "Undo eXit", {""}, 0, RTNONE, ""},
    KeywordCase{"NoNull", "Undo eXit", {"", "u"}, RSG_NONULL, RTNORM, "Undo"},
    KeywordCase{"OtherText", "Undo eXit", {"zzz"}, RSG_OTHER, RTKWORD, "zzz"},
    KeywordCase{"NoListIsRejected", "", {"u"}, 0, RTREJ, ""}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_F(EditorTest, StringsEndAtSpaceUnlessSpacesAllowed) {
    feed({"부품 이름 A", "two words", ""});
    EXPECT_EQ(word(true), "부품 이름 A");
    EXPECT_EQ(word(false), "two");
    EXPECT_EQ(word(false), "words");
    EXPECT_EQ(word(false), "");  // Enter: the empty text
}

// ---- Where input comes from ----

TEST_F(EditorTest, TypedAheadTextComesFirstAndEchoesOnlyWhenAsked) {
    feed({"5,5"});
    editor_.typeAhead("1,1 2,2\n", false);
    editor_.typeAhead("\x03", true);
    EXPECT_EQ(point("\nA: "), std::pair(RTNORM, ge::Point3d(1, 1, 0)));
    EXPECT_EQ(point("\nB: "), std::pair(RTNORM, ge::Point3d(2, 2, 0)));
    EXPECT_EQ(point("\nC: ").first, RTCAN);                              // 0x03 is Esc
    EXPECT_EQ(point("\nD: "), std::pair(RTNORM, ge::Point3d(5, 5, 0)));  // now the source
    EXPECT_EQ(shown(), "\nA: \nB: \nC: *Cancel*\nD: 5,5");
}

TEST_F(EditorTest, TextWithoutEnterWaitsForTheRestOfTheAnswer) {
    feed({"0"});
    editor_.typeAhead("12,");
    std::deque<std::pair<std::string, bool>> queue{{"3", true}};
    editor_.setQueuedTextSource([&](std::string& text, bool& echo) {
        if (queue.empty()) return false;
        std::tie(text, echo) = queue.front();
        queue.pop_front();
        return true;
    });
    // "12," + "3" + "0" from the script's Enter-ended line
    EXPECT_EQ(point(), std::pair(RTNORM, ge::Point3d(12, 30, 0)));
}

// ---- Filters and monitors ----

std::vector<WindowMessage> filtered;
bool recordAndSwallowCtrl(WindowMessage* message) {
    filtered.push_back(*message);
    return message->ctrl;
}

struct Watcher : InputPointMonitor {
    std::vector<ge::Point3d> points;
    std::vector<int> windowX;
    ErrorStatus monitorInputPoint(const InputPoint& input, InputPointMonitorResult&) override {
        points.push_back(input.computedPoint);
        windowX.push_back(input.windowX);
        return ErrorStatus::eOk;
    }
};

TEST_F(EditorTest, FiltersSeeEventsWithModifiersAndMaySwallowThem) {
    filtered.clear();
    Watcher watcher;
    editor_.addInputPointMonitor(&watcher);
    ASSERT_TRUE(editor_.registerMessageFilter(&recordAndSwallowCtrl));
    EXPECT_FALSE(editor_.registerMessageFilter(&recordAndSwallowCtrl));
    feed({"<key> shift", "<move> 4,4 shift", "<pick> 1,1 ctrl", "<pick> 2,3"});
    EXPECT_EQ(point(), std::pair(RTNORM, ge::Point3d(2, 3, 0)));  // the ctrl pick was swallowed

    ASSERT_EQ(filtered.size(), 4u);
    EXPECT_EQ(std::tuple(filtered[0].message, filtered[0].keyCode, filtered[0].shift),
              std::tuple(WM_KEYDOWN, VK_SHIFT, true));
    EXPECT_EQ(std::tuple(filtered[1].message, filtered[1].shift, filtered[1].lParam()),
              std::tuple(WM_MOUSEMOVE, true, (4ul << 16) | 4ul));
    EXPECT_EQ(std::tuple(filtered[2].message, filtered[2].ctrl), std::tuple(WM_LBUTTONDOWN, true));

    // The monitor saw the move and the accepted pick, not the swallowed one.
    EXPECT_EQ(watcher.points, (std::vector<ge::Point3d>{{4, 4, 0}, {2, 3, 0}}));
    EXPECT_EQ(watcher.windowX, (std::vector<int>{4, 2}));

    EXPECT_TRUE(editor_.removeMessageFilter(&recordAndSwallowCtrl));
    EXPECT_FALSE(editor_.removeMessageFilter(&recordAndSwallowCtrl));
    editor_.removeInputPointMonitor(&watcher);
}

TEST_F(EditorTest, PostedMessagesComeBeforeOtherInput) {
    feed({"9,9"});
    WindowMessage click;
    click.message = WM_LBUTTONDOWN;
    click.point = {6, 6, 0};
    editor_.postWindowMessage(click);
    EXPECT_EQ(point(), std::pair(RTNORM, ge::Point3d(6, 6, 0)));
}

}  // namespace
}  // namespace cad::ed
