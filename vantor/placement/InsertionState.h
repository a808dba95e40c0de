// What the library window prepares for one document before it queues "_UBLI\n": the part to
// insert and how, and what the last drag came to.
#pragma once

#include <string>

#include "vantor/store/PartRecord.h"

namespace vantor {

struct InsertionState {
    // Outcome codes the drag leaves for the window.
    static constexpr int kOutcomeNone = -1;
    static constexpr int kOutcomeSetting = 0;  // show the insertion dialog again
    static constexpr int kOutcomeCancelled = 1;
    static constexpr int kOutcomeUndo = 2;

    std::string libraryPath;  // the library drawing the block comes from
    std::string blockName;
    PartRecord record;   // the chosen catalogue record; record.loaded is false for none
    double scale = 1.0;  // as the insertion dialog accepted it
    int outcome = kOutcomeNone;
    int insertMode = -1;    // 0 or 1 when the window asked for an insertion; else nothing runs
    bool dragDrop = false;  // the part was dropped from the library window
};

// UBLI's first step: insert mode 0 starts from "cancelled" and mode 1 from "setting", so a
// drag that ends without writing an outcome reports the one its mode expects. Answers
// whether the placement runs: any other mode leaves the state alone and places nothing.
bool applyInsertMode(InsertionState& state);

}  // namespace vantor
