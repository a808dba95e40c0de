// The 16-bit check value DWG files put after their header, sections, object map pages and
// objects (the reflected 0xA001 polynomial, each use with its own seed).
#pragma once

#include <cstdint>
#include <string_view>

namespace cad::db::dwg {

std::uint16_t dwgCrc16(std::string_view bytes, std::uint16_t seed);

}  // namespace cad::db::dwg
