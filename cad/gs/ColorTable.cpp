// The colour index table, computed rather than listed: every entry of 10-249 follows from its
// hue step, brightness and paleness, so 240 numbers cannot be mistyped.
#include "cad/gs/ColorTable.h"

#include <array>

namespace cad::gs {

namespace {

std::uint32_t rgb(int r, int g, int b) {
    return (static_cast<std::uint32_t>(r) << 16) | (static_cast<std::uint32_t>(g) << 8) |
           static_cast<std::uint32_t>(b);
}

std::uint32_t wheelColor(int index) {
    constexpr int kBrightness[5] = {255, 165, 127, 76, 38};
    const int hueStep = index / 10 - 1;  // 0..23, 15 degrees each
    const int shade = index % 10;
    const int top = kBrightness[shade / 2];
    const int bottom = shade % 2 == 1 ? top / 2 : 0;  // odd shades are the pale ones
    // Position within the hue's sixth of the wheel, in quarters of 60 degrees.
    const int sextant = hueStep / 4;
    const int quarter = hueStep % 4;
    auto ramp = [&](int quarters) { return bottom + (top - bottom) * quarters / 4; };
    const int rising = ramp(quarter), falling = ramp(4 - quarter);
    switch (sextant) {
    case 0: return rgb(top, rising, bottom);
    case 1: return rgb(falling, top, bottom);
    case 2: return rgb(bottom, top, rising);
    case 3: return rgb(bottom, falling, top);
    case 4: return rgb(rising, bottom, top);
    default: return rgb(top, bottom, falling);
    }
}

std::array<std::uint32_t, 256> makeTable() {
    std::array<std::uint32_t, 256> table{};
    const std::uint32_t named[10] = {0,        0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                     0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    for (int i = 0; i < 10; ++i) table[i] = named[i];
    for (int i = 10; i < 250; ++i) table[i] = wheelColor(i);
    const int greys[6] = {51, 80, 105, 130, 190, 255};
    for (int i = 0; i < 6; ++i) table[250 + i] = rgb(greys[i], greys[i], greys[i]);
    return table;
}

}  // namespace

std::uint32_t indexColor(int index) {
    static const std::array<std::uint32_t, 256> table = makeTable();
    if (index < 1 || index > 255) return table[7];
    return table[index];
}

}  // namespace cad::gs
