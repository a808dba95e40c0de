// UBLI's insert-mode rule and the per-document states it reads.
#include "vantor/host/InsertionState.h"

#include <gtest/gtest.h>

#include "vantor/host/InsertionStates.h"

namespace vantor {
namespace {

struct ModeCase {
    const char* name;
    int insertMode;
    bool places;
    int outcome;
};

class InsertMode : public testing::TestWithParam<ModeCase> {};

TEST_P(InsertMode, SetsTheOutcomeAndSaysWhetherThePlacementRuns) {
    InsertionState state;
    state.insertMode = GetParam().insertMode;
    state.outcome = InsertionState::kOutcomeUndo;  // what an earlier drag left
    EXPECT_EQ(applyInsertMode(state), GetParam().places);
    EXPECT_EQ(state.outcome, GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, InsertMode,
    testing::Values(ModeCase{"mode0", 0, true, InsertionState::kOutcomeCancelled},
                    ModeCase{"mode1", 1, true, InsertionState::kOutcomeSetting},
                    ModeCase{"mode2", 2, false, InsertionState::kOutcomeUndo},
                    ModeCase{"unset", -1, false, InsertionState::kOutcomeUndo}),
    [](const testing::TestParamInfo<ModeCase>& row) { return row.param.name; });

TEST(InsertionStates, AreKeptPerDocumentUntilCleared) {
    InsertionStates states;
    const auto* first = reinterpret_cast<const cad::app::Document*>(0x10);
    const auto* second = reinterpret_cast<const cad::app::Document*>(0x20);
    EXPECT_EQ(states.find(first), nullptr);
    states.of(first).blockName = "BOLT";
    states.of(second).insertMode = 1;
    EXPECT_EQ(states.find(first)->blockName, "BOLT");
    EXPECT_EQ(states.find(second)->blockName, "");
    states.clear(first);
    EXPECT_EQ(states.find(first), nullptr);
    EXPECT_EQ(states.of(first).insertMode, -1);  // a new document at the old address starts empty
    EXPECT_EQ(states.find(second)->insertMode, 1);
}

}  // namespace
}  // namespace vantor
