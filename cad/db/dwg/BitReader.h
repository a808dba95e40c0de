// Reads the bit-packed values DWG files are made of: single bits, the compressed shorts,
// longs and doubles, modular numbers, handle references and texts. A read past the end, or a
// value no writer makes, sets a sticky failure (with the bit where it happened) and yields
// zeros, so decoding code reads straight through and checks once at the end: a damaged file
// can never make the reader run off its buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db::dwg {

// A handle reference as stored: its code (what kind of link it is, or how it is relative to
// the referring object) and the value that follows.
struct HandleRef {
    std::uint8_t code = 0;
    std::uint64_t value = 0;

    // The handle it names. Codes 6, 8, 0xA and 0xC are relative to the handle of the object
    // that holds the reference; the others are absolute.
    std::uint64_t absolute(std::uint64_t own) const;
};

class BitReader {
public:
    BitReader() = default;
    explicit BitReader(std::string_view bytes) : data_(bytes) {}

    std::size_t bitPosition() const { return bit_; }
    // Byte offset of the bit position (rounded down), for messages.
    std::size_t byteOffset() const { return bit_ / 8; }
    std::size_t sizeInBits() const { return data_.size() * 8; }
    void setBitPosition(std::size_t bit);
    // Limits the readable bits to [0, end): reads beyond fail.
    void setBitLimit(std::size_t end);

    bool failed() const { return failed_; }
    // The bit at which the first failure happened.
    std::size_t failedAt() const { return failedAt_; }
    void fail();

    bool bit();                    // B
    std::uint8_t twoBits();        // BB
    std::uint8_t rawChar();        // RC
    std::int16_t rawShort();       // RS, little-endian
    std::int32_t rawLong();        // RL, little-endian
    double rawDouble();            // RD
    std::int16_t bitShort();       // BS
    std::int32_t bitLong();        // BL
    double bitDouble();            // BD
    double defaultDouble(double defaultValue);  // DD
    std::uint64_t modularChar();   // MC, unsigned
    std::int64_t signedModularChar();  // MC with the sign bit of its last byte
    std::uint64_t modularShort();  // MS
    HandleRef handle();            // H
    // TV: a length (BS) and that many bytes, in the drawing's code page; a trailing NUL, which
    // some writers count in the length, is dropped.
    std::string text();
    std::string bytes(std::size_t count);

    ge::Point3d point2Raw();       // 2RD
    ge::Point3d point3Raw();       // 3RD
    ge::Point3d point3Bit();       // 3BD
    ge::Point3d point2Default(const ge::Point3d& defaultValue);  // 2DD
    ge::Vector3d vector3Bit();     // 3BD as a direction
    // BT and BE: from R2000 on a bit says "the usual value" (0, or the Z axis); before, the
    // value is always written.
    double thickness(bool r2000);
    ge::Vector3d extrusion(bool r2000);
    // CMC for R13 to R2000: the color index as a BS.
    std::int16_t color() { return bitShort(); }

private:
    bool need(std::size_t bits) {
        if (failed_) return false;
        const std::size_t end = data_.size() * 8 < limit_ ? data_.size() * 8 : limit_;
        if (bit_ > end || end - bit_ < bits) {
            fail();
            return false;
        }
        return true;
    }

    std::string_view data_;
    std::size_t bit_ = 0;
    std::size_t limit_ = static_cast<std::size_t>(-1);
    bool failed_ = false;
    std::size_t failedAt_ = 0;
};

// The reads every field starts with, here so that they inline.
inline bool BitReader::bit() {
    if (!need(1)) return false;
    const auto byte = static_cast<std::uint8_t>(data_[bit_ / 8]);
    const bool value = (byte >> (7 - bit_ % 8)) & 1;
    ++bit_;
    return value;
}

inline std::uint8_t BitReader::twoBits() {
    if (!need(2)) return 0;
    const std::size_t shift = bit_ % 8;
    const auto first = static_cast<std::uint8_t>(data_[bit_ / 8]);
    std::uint8_t value;
    if (shift <= 6) {
        value = static_cast<std::uint8_t>((first >> (6 - shift)) & 3);
    } else {
        const auto second = static_cast<std::uint8_t>(data_[bit_ / 8 + 1]);
        value = static_cast<std::uint8_t>(((first & 1) << 1) | (second >> 7));
    }
    bit_ += 2;
    return value;
}

inline std::uint8_t BitReader::rawChar() {
    if (!need(8)) return 0;
    const std::size_t shift = bit_ % 8;
    const auto first = static_cast<std::uint8_t>(data_[bit_ / 8]);
    std::uint8_t value = first;
    if (shift != 0) {
        const auto second = static_cast<std::uint8_t>(data_[bit_ / 8 + 1]);
        value = static_cast<std::uint8_t>((first << shift) | (second >> (8 - shift)));
    }
    bit_ += 8;
    return value;
}

}  // namespace cad::db::dwg
