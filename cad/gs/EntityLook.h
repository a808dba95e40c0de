// How an entity asks to be drawn (colour, layer, linetype, lineweight), before the layers
// and the inserting references decide: BYLAYER and BYBLOCK are resolved when drawn, so one
// block's geometry serves every reference whatever its layer and colour.
#pragma once

#include <cstdint>

namespace cad::gs {

struct EntityLook {
    // Colours: 0xRRGGBB, or one of these.
    static constexpr std::int32_t kByLayer = -1;
    static constexpr std::int32_t kByBlock = -2;
    static constexpr std::int32_t kForeground = -3;  // index 7: white on dark, black on light
    // Linetypes: an index into the scene's linetypes (0 is continuous), or one of these.
    static constexpr std::int32_t kLinetypeByLayer = -1;
    static constexpr std::int32_t kLinetypeByBlock = -2;

    std::int32_t color = kByLayer;
    std::int32_t layer = 0;  // index into the scene's layers
    std::int32_t linetype = kLinetypeByLayer;
    std::int16_t lineWeight = -1;  // hundredths of a mm; -1 by layer, -2 by block, -3 default
    float linetypeScale = 1.0f;

    friend bool operator==(const EntityLook&, const EntityLook&) = default;
};

}  // namespace cad::gs
