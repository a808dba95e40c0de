// The insert-mode rule of the insertion command.
#include "vantor/placement/InsertionState.h"

namespace vantor {

bool applyInsertMode(InsertionState& state) {
    switch (state.insertMode) {
        case 0:
            state.outcome = InsertionState::kOutcomeCancelled;
            return true;
        case 1:
            state.outcome = InsertionState::kOutcomeSetting;
            return true;
        default:
            return false;
    }
}

}  // namespace vantor
