// The supplier logo of the sample library: a 150 x 40 pixel, 24-bit BMP file made in code so
// that the committed copy can be reproduced byte for byte.
#pragma once

#include <string>

namespace vantor::sample {

inline constexpr int kLogoWidth = 150;
inline constexpr int kLogoHeight = 40;

// The whole file, header included (18,134 bytes).
std::string sampleLogoBmp();

}  // namespace vantor::sample
