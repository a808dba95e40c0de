// The sample library drawing shipped in data/samples: a supplier library of valves and
// flanges with its supplier record and logo, and a user library of bolts, nuts and washers,
// every part with its view blocks, BOM mark points and catalogue data.
#pragma once

#include <string>
#include <string_view>

#include "cad/sys/ErrorStatus.h"

namespace vantor::sample {

inline constexpr std::string_view kSampleDrawingName = "standard-parts.dxf";
inline constexpr std::string_view kSampleLogoName = "supplier-logo.bmp";

// Writes both files into `folder` (which must exist); the logo first, as the supplier record
// is read from it.
cad::ErrorStatus writeSampleLibrary(const std::string& folder);

}  // namespace vantor::sample
