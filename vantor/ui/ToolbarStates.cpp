// The tool buttons' states.
#include "vantor/ui/ToolbarStates.h"

namespace vantor {

ButtonState buttonState(int id, const ToolbarSelection& selection) {
    // 1203 to 1211 wait for a side: they act on a drawing of one of them.
    if (id < 1203 || id > 1211) return {};
    if (selection.side == LeftPane::None) return {false, false};
    switch (id) {
        case 1203:  // the data pane lists an explored file's blocks
            return {true, selection.side == LeftPane::Explorer};
        case 1207:
            return {true, selection.drawingSelected && selection.captureAllowed};
        case 1209:
        case 1210:
            return {true, selection.drawingSelected};
        default:
            return {};
    }
}

}  // namespace vantor
