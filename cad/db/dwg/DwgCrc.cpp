// The table-driven form of the DWG check value, eight bytes a step: every record of a file is
// checked, so this runs over the whole file once.
#include "cad/db/dwg/DwgCrc.h"

#include <array>

namespace cad::db::dwg {
namespace {

using Tables = std::array<std::array<std::uint16_t, 256>, 8>;

// tables[k][b]: the check value of byte b followed by k zero bytes.
constexpr Tables makeTables() {
    Tables tables{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned value = i;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1) ? (value >> 1) ^ 0xA001 : value >> 1;
        tables[0][i] = static_cast<std::uint16_t>(value);
    }
    for (std::size_t k = 1; k < 8; ++k) {
        for (unsigned i = 0; i < 256; ++i) {
            const std::uint16_t previous = tables[k - 1][i];
            tables[k][i] = static_cast<std::uint16_t>((previous >> 8) ^ tables[0][previous & 0xFF]);
        }
    }
    return tables;
}

constexpr Tables kTables = makeTables();

}  // namespace

std::uint16_t dwgCrc16(std::string_view bytes, std::uint16_t seed) {
    std::uint16_t crc = seed;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    for (; left >= 8; left -= 8, p += 8) {
        // The running value touches only the first two bytes; each byte's share is looked up
        // as if the bytes after it were zeros, and the shares combine by exclusive or.
        crc = static_cast<std::uint16_t>(
            kTables[7][(crc ^ p[0]) & 0xFF] ^ kTables[6][((crc >> 8) ^ p[1]) & 0xFF] ^
            kTables[5][p[2]] ^ kTables[4][p[3]] ^ kTables[3][p[4]] ^ kTables[2][p[5]] ^
            kTables[1][p[6]] ^ kTables[0][p[7]]);
    }
    for (; left > 0; --left, ++p) {
        crc = static_cast<std::uint16_t>((crc >> 8) ^ kTables[0][(crc ^ *p) & 0xFF]);
    }
    return crc;
}

}  // namespace cad::db::dwg
