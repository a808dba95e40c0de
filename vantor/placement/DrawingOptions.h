// The drawing options of a placement as bits of the settings' option word ("Option" in
// Vantor.ini), and the options a placement reads from it.
#pragma once

namespace vantor {

struct DrawingOptions {
    // The bits, one per check box of the drawing-options dialog. The default word 3073 keeps
    // grouping, the coordinate line and the specification line on.
    static constexpr int kGroup = 0x0001;
    static constexpr int kExplode = 0x0002;
    static constexpr int kMirrorX = 0x0004;
    static constexpr int kMirrorY = 0x0008;
    static constexpr int kFixedAngle = 0x0010;  // no angle stage: the dialog's angle is kept
    static constexpr int kInfoPoint = 0x0020;
    static constexpr int kEnglishName = 0x0080;  // the information text names the part in English
    static constexpr int kShowCoordinates = 0x0400;
    static constexpr int kShowSpecification = 0x0800;

    bool explode = false;
    bool group = false;
    bool mirrorX = false;
    bool mirrorY = false;
    bool infoPoint = false;

    static DrawingOptions fromBits(int bits) {
        return {(bits & kExplode) != 0, (bits & kGroup) != 0, (bits & kMirrorX) != 0,
                (bits & kMirrorY) != 0, (bits & kInfoPoint) != 0};
    }
};

}  // namespace vantor
