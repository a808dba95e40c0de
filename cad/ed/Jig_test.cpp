// The drag loop: how every kind of ending comes out, that samples which change nothing skip
// update and redraw, and that a message filter can make the view sample again.
#include "cad/ed/Jig.h"

#include <gtest/gtest.h>

#include <numbers>

#include "cad/ed/DragPreview.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::ed {
namespace {

// A point jig like the insertion jig's first stage: a new point is a change, the same one is not.
class PointJig : public Jig {
public:
    using Jig::Jig;
    DragStatus sampler() override {
        setKeywordList("Setting eXit");
        ge::Point3d p;
        DragStatus status = acquirePoint(p);
        if (status != kNormal) return status;
        if (p.isEqualTo(point)) return kNoChange;
        point = p;
        return kNormal;
    }
    bool update() override {
        ++updates;
        return true;
    }
    db::Entity* entity() const override { return nullptr; }

    ge::Point3d point{-1e9, 0, 0};
    int updates = 0;
};

struct CountingPreview : DragPreview {
    int redraws = 0;
    int ends = 0;
    void dragImageChanged(const db::Entity*) override { ++redraws; }
    void dragEnded() override { ++ends; }
};

class JigTest : public testing::Test {
protected:
    void feed(std::vector<std::string> lines) {
        script_ = ScriptInputSource(std::move(lines));
        editor_.setInputSource(&script_);
        editor_.setDragPreview(&preview_);
    }
    Editor editor_;
    ScriptInputSource script_;
    CountingPreview preview_;
};

struct EndingCase {
    const char* name;
    std::vector<std::string> lines;
    int controls;
    Jig::DragStatus status;
    int updates;
    const char* shows = "";
};

class DragEnding : public JigTest, public testing::WithParamInterface<EndingCase> {};

TEST_P(DragEnding, EndsAsTheInputSays) {
    const EndingCase& row = GetParam();
    feed(row.lines);
    PointJig jig(editor_);
    jig.setUserInputControls(row.controls);
    jig.setDispPrompt("\n사양설정(S)/작도취소(X)/<삽입점>: ");
    EXPECT_EQ(jig.drag(), row.status);
    EXPECT_EQ(jig.updates, row.updates);
    EXPECT_EQ(preview_.redraws, row.updates);
    EXPECT_EQ(preview_.ends, 1);
    EXPECT_NE(editor_.commandLine().text().find(row.shows), std::string::npos)
        << editor_.commandLine().text();
}

constexpr int kNull = Jig::kNullResponseAccepted;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, DragEnding, testing::Values(
    EndingCase{"TypedPoint", {"5,5"}, 0, Jig::kNormal, 1, "<삽입점>: 5,5"},
    EndingCase{"Pick", {"<pick> 3,3"}, 0, Jig::kNormal, 1},
    EndingCase{"StillMouseSkipsUpdate", {"<move> 1,1", "<move> 1,1", "<move> 2,2", "<pick> 2,2"},
               0, Jig::kNormal, 2},
    EndingCase{"EnterAccepted", {"<move> 1,1", ""}, kNull, Jig::kNull, 1},
    EndingCase{"EnterRefusedWithoutTheControl", {"", "1,1"}, 0, Jig::kNormal, 1},
    EndingCase{"FirstKeyword", {"s"}, 0, Jig::kKW1, 0},
    EndingCase{"SecondKeyword", {"<move> 1,1", "X"}, 0, Jig::kKW2, 1},
    EndingCase{"Esc", {"<esc>"}, 0, Jig::kCancel, 0, "*Cancel*"},
    EndingCase{"InputRunsOut", {"<move> 4,4"}, 0, Jig::kCancel, 1},
    EndingCase{"OtherText", {"zzz"}, Jig::kAcceptOtherInputString, Jig::kOther, 0},
    EndingCase{"GarbageRefused", {"zzz", "1,1"}, 0, Jig::kNormal, 1, "\nInvalid point."},
    EndingCase{"ThreeDimensionalNeedsTheControl", {"1,2,3", "1,2"}, 0, Jig::kNormal, 1,
               "\nInvalid point."}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_F(JigTest, FinalPointBecomesTheLastPoint) {
    feed({"<move> 1,1", "@2,3"});
    editor_.setLastPoint({10, 10, 0});
    PointJig jig(editor_);
    EXPECT_EQ(jig.drag(), Jig::kNormal);
    EXPECT_EQ(jig.point, ge::Point3d(12, 13, 0));
    EXPECT_EQ(editor_.lastPoint(), ge::Point3d(12, 13, 0));
}

// The second stage: an angle about a base point, with Enter giving a full turn as the jig of
// the insertion does.
class AngleJig : public Jig {
public:
    using Jig::Jig;
    DragStatus sampler() override {
        setUserInputControls(kNullResponseAccepted);
        setSpecialCursorType(kRubberBand);
        double a = 0;
        DragStatus status = acquireAngle(a, ge::Point3d(10, 10, 0));
        if (status == kNull)
            a = 2 * std::numbers::pi;
        else if (status != kNormal)
            return status;
        angles.push_back(a);
        return kNormal;
    }
    bool update() override { return true; }
    db::Entity* entity() const override { return nullptr; }
    std::vector<double> angles;
};

TEST_F(JigTest, AnglesFromSamplesTypedDegreesAndEnter) {
    feed({"<move> 10,20", "45"});
    AngleJig typed(editor_);
    EXPECT_EQ(typed.drag(), Jig::kNormal);
    ASSERT_EQ(typed.angles.size(), 2u);
    EXPECT_NEAR(typed.angles[0], std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(typed.angles[1], std::numbers::pi / 4, 1e-12);

    feed({""});
    AngleJig entered(editor_);
    EXPECT_EQ(entered.drag(), Jig::kNull);
    EXPECT_EQ(entered.angles, std::vector<double>{2 * std::numbers::pi});
}

// As the insertion jig's filter does: Shift makes the view send a mouse move, which the jig
// samples at once.
int shiftSeen = 0;
bool resampleOnShift(WindowMessage* message) {
    if (message->message == WM_KEYDOWN && message->keyCode == VK_SHIFT && message->shift) {
        ++shiftSeen;
        WindowMessage move;
        move.point = {7, 7, 0};
        editor().postWindowMessage(move);
    }
    return false;
}

TEST_F(JigTest, FilterPostedMoveIsSampled) {
    shiftSeen = 0;
    setEditor(&editor_);
    editor_.registerMessageFilter(&resampleOnShift);
    feed({"<key> shift", "x"});
    PointJig jig(editor_);
    EXPECT_EQ(jig.drag(), Jig::kKW2);
    EXPECT_EQ(shiftSeen, 1);
    EXPECT_EQ(jig.point, ge::Point3d(7, 7, 0));
    EXPECT_EQ(jig.updates, 1);
    editor_.removeMessageFilter(&resampleOnShift);
    setEditor(nullptr);
}

}  // namespace
}  // namespace cad::ed
