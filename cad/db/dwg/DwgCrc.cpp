// The table-driven form of the DWG check value.
#include "cad/db/dwg/DwgCrc.h"

#include <array>

namespace cad::db::dwg {
namespace {

constexpr std::array<std::uint16_t, 256> makeTable() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned value = i;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1) ? (value >> 1) ^ 0xA001 : value >> 1;
        table[i] = static_cast<std::uint16_t>(value);
    }
    return table;
}

constexpr auto kTable = makeTable();

}  // namespace

std::uint16_t dwgCrc16(std::string_view bytes, std::uint16_t seed) {
    std::uint16_t crc = seed;
    for (const char c : bytes) {
        crc = static_cast<std::uint16_t>((crc >> 8) ^
                                         kTable[(crc ^ static_cast<std::uint8_t>(c)) & 0xFF]);
    }
    return crc;
}

}  // namespace cad::db::dwg
