// Writes the bit codes of DWG files, most significant bit first within each byte: the
// counterpart of BitReader, choosing for each value the shortest form the format allows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cad/ge/Point3d.h"

namespace cad::db::dwg {

class BitWriter {
public:
    std::size_t bitPosition() const { return bits_; }
    const std::string& bytes() const { return out_; }
    std::string take() { return std::move(out_); }

    void bit(bool value);
    void twoBits(std::uint8_t value);
    void rawChar(std::uint8_t value);
    void rawShort(std::int16_t value);
    void rawLong(std::int32_t value);
    void rawDouble(double value);
    void bitShort(std::int16_t value);
    void bitLong(std::int32_t value);
    void bitDouble(double value);
    void defaultDouble(double value, double defaultValue);
    void modularChar(std::uint64_t value);
    void signedModularChar(std::int64_t value);
    void modularShort(std::uint64_t value);
    // A handle reference with its code; the value is written in as few bytes as it needs.
    void handle(std::uint8_t code, std::uint64_t value);
    void text(std::string_view bytes);
    void bytes(std::string_view bytes);
    void point2Raw(const ge::Point3d& p);
    void point3Raw(const ge::Point3d& p);
    void point3Bit(const ge::Point3d& p);
    // BT and BE: from R2000 on a bit stands for the usual value; before, the value is written
    // whole. setCompact(false) writes them the R13 and R14 way.
    void thickness(double value);
    void extrusion(const ge::Point3d& direction);
    void setCompact(bool compact) { compact_ = compact; }
    // Overwrites 32 bits at a bit position already written (a size known only later).
    void patchRawLong(std::size_t bitPosition, std::int32_t value);
    // Pads with zero bits to the next byte.
    void alignToByte();

private:
    std::string out_;
    std::size_t bits_ = 0;
    bool compact_ = true;
};

}  // namespace cad::db::dwg
