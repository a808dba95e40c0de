// UBLI's insert-mode rule and the per-document states it reads.
#include "vantor/placement/InsertionState.h"

#include <gtest/gtest.h>

#include "vantor/host/InsertionStates.h"

namespace vantor {
namespace {

TEST(InsertMode, SetsTheOutcomeAndSaysWhetherThePlacementRuns) {
    const struct {
        int insertMode;
        bool places;
        int outcome;
    } rows[] = {
        {0, true, InsertionState::kOutcomeCancelled},
        {1, true, InsertionState::kOutcomeSetting},
        {2, false, InsertionState::kOutcomeUndo},
        {-1, false, InsertionState::kOutcomeUndo},  // unset
    };
    for (const auto& row : rows) {
        InsertionState state;
        state.insertMode = row.insertMode;
        state.outcome = InsertionState::kOutcomeUndo;  // what an earlier drag left
        EXPECT_EQ(applyInsertMode(state), row.places) << "mode " << row.insertMode;
        EXPECT_EQ(state.outcome, row.outcome) << "mode " << row.insertMode;
    }
}

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
