// The 256 colour indices of drawing files as RGB: 1-9 the named colours, 10-249 the hue
// wheel in 24 steps of 15 degrees at five brightnesses, full and pale, 250-255 greys.
#pragma once

#include <cstdint>

namespace cad::gs {

// 0xRRGGBB of an index from 1 to 255; 7 is white here (the view draws it in the colour that
// stands out from its background). Other indices answer 7's colour.
std::uint32_t indexColor(int index);

}  // namespace cad::gs
