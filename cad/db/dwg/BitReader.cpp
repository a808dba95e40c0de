// The bit codes of DWG files, read most significant bit first within each byte.
#include "cad/db/dwg/BitReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace cad::db::dwg {

std::uint64_t HandleRef::absolute(std::uint64_t own) const {
    switch (code) {
        case 0x6: return own + 1;
        case 0x8: return own - 1;
        case 0xA: return own + value;
        case 0xC: return own - value;
        default: return value;
    }
}

void BitReader::setBitPosition(std::size_t bit) {
    if (bit > std::min(sizeInBits(), limit_)) {
        fail();
        return;
    }
    bit_ = bit;
}

void BitReader::setBitLimit(std::size_t end) { limit_ = end; }

void BitReader::fail() {
    if (!failed_) failedAt_ = bit_;
    failed_ = true;
}

std::int16_t BitReader::rawShort() {
    if (!need(16)) return 0;
    const std::uint16_t low = rawChar();
    const std::uint16_t high = rawChar();
    return static_cast<std::int16_t>(low | (high << 8));
}

std::int32_t BitReader::rawLong() {
    if (!need(32)) return 0;
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(rawChar()) << (8 * i);
    return static_cast<std::int32_t>(value);
}

double BitReader::rawDouble() {
    if (!need(64)) return 0.0;
    std::uint64_t value = 0;
    if (std::endian::native == std::endian::little && bit_ % 8 == 0) {
        // Aligned: the eight bytes as they stand, least significant first.
        std::memcpy(&value, data_.data() + bit_ / 8, 8);
        bit_ += 64;
        return std::bit_cast<double>(value);
    }
    for (int i = 0; i < 8; ++i) value |= static_cast<std::uint64_t>(rawChar()) << (8 * i);
    return std::bit_cast<double>(value);
}

std::int16_t BitReader::bitShort() {
    switch (twoBits()) {
        case 0: return rawShort();
        case 1: return rawChar();
        case 2: return 0;
        default: return 256;
    }
}

std::int32_t BitReader::bitLong() {
    switch (twoBits()) {
        case 0: return rawLong();
        case 1: return rawChar();
        case 2: return 0;
        default: fail(); return 0;  // no writer uses the fourth code
    }
}

double BitReader::bitDouble() {
    switch (twoBits()) {
        case 0: return rawDouble();
        case 1: return 1.0;
        case 2: return 0.0;
        default: fail(); return 0.0;
    }
}

double BitReader::defaultDouble(double defaultValue) {
    // The cheaper forms patch bytes of the default: the low four, or bytes 4 and 5 and then
    // the low four, which is how a value close to the previous one is stored.
    auto bytes = std::bit_cast<std::array<std::uint8_t, 8>>(defaultValue);
    switch (twoBits()) {
        case 0: return defaultValue;
        case 1:
            for (int i = 0; i < 4; ++i) bytes[i] = rawChar();
            break;
        case 2:
            bytes[4] = rawChar();
            bytes[5] = rawChar();
            for (int i = 0; i < 4; ++i) bytes[i] = rawChar();
            break;
        default: return rawDouble();
    }
    return std::bit_cast<double>(bytes);
}

std::uint64_t BitReader::modularChar() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7) {
        const std::uint8_t byte = rawChar();
        if (failed_) return 0;
        value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if (!(byte & 0x80)) return value;
    }
    fail();
    return 0;
}

std::int64_t BitReader::signedModularChar() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 63; shift += 7) {
        const std::uint8_t byte = rawChar();
        if (failed_) return 0;
        if (!(byte & 0x80)) {
            // The last byte keeps its 0x40 bit for the sign.
            value |= static_cast<std::uint64_t>(byte & 0x3F) << shift;
            const auto magnitude = static_cast<std::int64_t>(value);
            return (byte & 0x40) ? -magnitude : magnitude;
        }
        value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    }
    fail();
    return 0;
}

std::uint64_t BitReader::modularShort() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 60; shift += 15) {
        const auto word = static_cast<std::uint16_t>(rawShort());
        if (failed_) return 0;
        value |= static_cast<std::uint64_t>(word & 0x7FFF) << shift;
        if (!(word & 0x8000)) return value;
    }
    fail();
    return 0;
}

HandleRef BitReader::handle() {
    HandleRef ref;
    const std::uint8_t head = rawChar();
    ref.code = head >> 4;
    const int counter = head & 0x0F;
    if (counter > 8) {
        fail();
        return {};
    }
    for (int i = 0; i < counter; ++i) ref.value = (ref.value << 8) | rawChar();
    return failed_ ? HandleRef{} : ref;
}

std::string BitReader::bytes(std::size_t count) {
    if (count > sizeInBits() / 8 || !need(count * 8)) {
        fail();
        return {};
    }
    std::string out(count, '\0');
    if (bit_ % 8 == 0) {
        std::memcpy(out.data(), data_.data() + bit_ / 8, count);
        bit_ += count * 8;
    } else {
        for (char& c : out) c = static_cast<char>(rawChar());
    }
    return out;
}

std::string BitReader::text() {
    const auto length = static_cast<std::uint16_t>(bitShort());
    std::string out = bytes(length);
    while (!out.empty() && out.back() == '\0') out.pop_back();
    return out;
}

ge::Point3d BitReader::point2Raw() {
    const double x = rawDouble();
    return {x, rawDouble(), 0.0};
}

ge::Point3d BitReader::point3Raw() {
    const double x = rawDouble();
    const double y = rawDouble();
    return {x, y, rawDouble()};
}

ge::Point3d BitReader::point3Bit() {
    const double x = bitDouble();
    const double y = bitDouble();
    return {x, y, bitDouble()};
}

ge::Point3d BitReader::point2Default(const ge::Point3d& defaultValue) {
    const double x = defaultDouble(defaultValue.x);
    return {x, defaultDouble(defaultValue.y), 0.0};
}

ge::Vector3d BitReader::vector3Bit() {
    const ge::Point3d p = point3Bit();
    return {p.x, p.y, p.z};
}

double BitReader::thickness(bool r2000) {
    if (r2000 && bit()) return 0.0;
    return bitDouble();
}

ge::Vector3d BitReader::extrusion(bool r2000) {
    if (r2000 && bit()) return {0.0, 0.0, 1.0};
    return vector3Bit();
}

}  // namespace cad::db::dwg
