// The library window's layout rules without a widget: pane sizes from the settings' geometry
// texts, the frame's smallest size, and the geometry written back as the user sizes it.
#pragma once

namespace vantor {

class ModuleSettings;

struct PaneSizes {
    // Each splitter's first pane: its ideal size and the least the user may drag it to.
    int leftWidth = 0;
    int subTree = 0;
    int subPreview = 0;
    int subList = 0;

    static constexpr int kLeftWidthFloor = 240;
    static constexpr int kLeftWidthMinimum = 240;
    static constexpr int kRowFloor = 100;
    static constexpr int kRowMinimum = 40;

    // Texts read as atoi reads them, so an empty or damaged entry is 0. The preview row keeps
    // its value as it is, with no floor, unlike the others.
    static PaneSizes fromSettings(const ModuleSettings& settings);
};

struct FrameGeometry {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    // The frame is never sized smaller than this.
    static constexpr int kMinimumWidth = 800;
    static constexpr int kMinimumHeight = 600;

    // Written on every sizing step as decimal texts: width, height, left and top.
    void store(ModuleSettings& settings) const;
};

// The splitters' first panes as the user left them, back into the geometry texts.
void storePaneSizes(ModuleSettings& settings, const PaneSizes& sizes);

}  // namespace vantor
