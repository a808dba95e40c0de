// Which of the library window's tool buttons are shown and enabled: none of the drawing
// buttons before a side of the upper-left pane is chosen; then by the side and by what is
// selected in it.
#pragma once

namespace vantor {

enum class LeftPane { None, DrawingTree, Explorer };

struct ToolbarSelection {
    LeftPane side = LeftPane::None;
    bool drawingSelected = false;  // a drawing is chosen in the pane shown
    bool captureAllowed = false;   // a block may be added to it (a library drawing)
};

struct ButtonState {
    bool visible = true;
    bool enabled = true;
};

// The state of button `id` of the main tool bar; buttons the rule does not govern are shown
// and enabled.
ButtonState buttonState(int id, const ToolbarSelection& selection);

}  // namespace vantor
