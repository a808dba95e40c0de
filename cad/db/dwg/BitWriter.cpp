// The bit codes of DWG files, written.
#include "cad/db/dwg/BitWriter.h"

#include <bit>

namespace cad::db::dwg {

void BitWriter::bit(bool value) {
    if (bits_ % 8 == 0) out_ += '\0';
    if (value) out_.back() = static_cast<char>(out_.back() | (0x80 >> (bits_ % 8)));
    ++bits_;
}

void BitWriter::twoBits(std::uint8_t value) {
    bit(value & 2);
    bit(value & 1);
}

void BitWriter::rawChar(std::uint8_t value) {
    for (int i = 7; i >= 0; --i) bit((value >> i) & 1);
}

void BitWriter::rawShort(std::int16_t value) {
    const auto v = static_cast<std::uint16_t>(value);
    rawChar(static_cast<std::uint8_t>(v));
    rawChar(static_cast<std::uint8_t>(v >> 8));
}

void BitWriter::rawLong(std::int32_t value) {
    const auto v = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 4; ++i) rawChar(static_cast<std::uint8_t>(v >> (8 * i)));
}

void BitWriter::rawDouble(double value) {
    const auto v = std::bit_cast<std::uint64_t>(value);
    for (int i = 0; i < 8; ++i) rawChar(static_cast<std::uint8_t>(v >> (8 * i)));
}

void BitWriter::bitShort(std::int16_t value) {
    if (value == 0) {
        twoBits(2);
    } else if (value == 256) {
        twoBits(3);
    } else if (value > 0 && value < 256) {
        twoBits(1);
        rawChar(static_cast<std::uint8_t>(value));
    } else {
        twoBits(0);
        rawShort(value);
    }
}

void BitWriter::bitLong(std::int32_t value) {
    if (value == 0) {
        twoBits(2);
    } else if (value > 0 && value < 256) {
        twoBits(1);
        rawChar(static_cast<std::uint8_t>(value));
    } else {
        twoBits(0);
        rawLong(value);
    }
}

void BitWriter::bitDouble(double value) {
    // Only an exact 0.0 (not -0.0) and 1.0 have the short forms.
    if (std::bit_cast<std::uint64_t>(value) == 0) {
        twoBits(2);
    } else if (value == 1.0) {
        twoBits(1);
    } else {
        twoBits(0);
        rawDouble(value);
    }
}

void BitWriter::defaultDouble(double value, double defaultValue) {
    const auto v = std::bit_cast<std::uint64_t>(value);
    const auto d = std::bit_cast<std::uint64_t>(defaultValue);
    if (v == d) {
        twoBits(0);
    } else if ((v >> 32) == (d >> 32)) {
        twoBits(1);
        for (int i = 0; i < 4; ++i) rawChar(static_cast<std::uint8_t>(v >> (8 * i)));
    } else if ((v >> 48) == (d >> 48)) {
        twoBits(2);
        rawChar(static_cast<std::uint8_t>(v >> 32));
        rawChar(static_cast<std::uint8_t>(v >> 40));
        for (int i = 0; i < 4; ++i) rawChar(static_cast<std::uint8_t>(v >> (8 * i)));
    } else {
        twoBits(3);
        rawDouble(value);
    }
}

void BitWriter::modularChar(std::uint64_t value) {
    do {
        std::uint8_t byte = value & 0x7F;
        value >>= 7;
        if (value != 0) byte |= 0x80;
        rawChar(byte);
    } while (value != 0);
}

void BitWriter::signedModularChar(std::int64_t value) {
    const bool negative = value < 0;
    std::uint64_t magnitude = negative ? static_cast<std::uint64_t>(-value)
                                       : static_cast<std::uint64_t>(value);
    // Seven bits a byte; the last byte holds six and the sign.
    while (magnitude >= 0x40) {
        rawChar(static_cast<std::uint8_t>(0x80 | (magnitude & 0x7F)));
        magnitude >>= 7;
    }
    rawChar(static_cast<std::uint8_t>(magnitude | (negative ? 0x40 : 0)));
}

void BitWriter::modularShort(std::uint64_t value) {
    do {
        std::uint16_t word = value & 0x7FFF;
        value >>= 15;
        if (value != 0) word |= 0x8000;
        rawShort(static_cast<std::int16_t>(word));
    } while (value != 0);
}

void BitWriter::handle(std::uint8_t code, std::uint64_t value) {
    int count = 0;
    for (std::uint64_t v = value; v != 0; v >>= 8) ++count;
    rawChar(static_cast<std::uint8_t>((code << 4) | count));
    for (int i = count - 1; i >= 0; --i) rawChar(static_cast<std::uint8_t>(value >> (8 * i)));
}

void BitWriter::text(std::string_view bytes) {
    // Texts carry their terminating NUL in the count, as the programs that wrote R13 to 2000
    // files did.
    if (bytes.empty()) {
        bitShort(0);
        return;
    }
    bitShort(static_cast<std::int16_t>(bytes.size() + 1));
    this->bytes(bytes);
    rawChar(0);
}

void BitWriter::bytes(std::string_view bytes) {
    for (const char c : bytes) rawChar(static_cast<std::uint8_t>(c));
}

void BitWriter::point2Raw(const ge::Point3d& p) {
    rawDouble(p.x);
    rawDouble(p.y);
}

void BitWriter::point3Raw(const ge::Point3d& p) {
    rawDouble(p.x);
    rawDouble(p.y);
    rawDouble(p.z);
}

void BitWriter::point3Bit(const ge::Point3d& p) {
    bitDouble(p.x);
    bitDouble(p.y);
    bitDouble(p.z);
}

void BitWriter::thickness(double value) {
    if (!compact_) {
        bitDouble(value);
        return;
    }
    if (value == 0.0) {
        bit(true);
        return;
    }
    bit(false);
    bitDouble(value);
}

void BitWriter::extrusion(const ge::Point3d& direction) {
    if (!compact_) {
        point3Bit(direction);
        return;
    }
    if (direction.x == 0.0 && direction.y == 0.0 && direction.z == 1.0) {
        bit(true);
        return;
    }
    bit(false);
    point3Bit(direction);
}

void BitWriter::patchRawLong(std::size_t bitPosition, std::int32_t value) {
    const auto v = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 32; ++i) {
        const std::size_t at = bitPosition + static_cast<std::size_t>(i);
        const int byteIndex = i / 8;
        const bool set = (v >> (8 * byteIndex + (7 - i % 8))) & 1;
        char& byte = out_[at / 8];
        const auto mask = static_cast<char>(0x80 >> (at % 8));
        byte = static_cast<char>(set ? (byte | mask) : (byte & ~mask));
    }
}

void BitWriter::alignToByte() {
    while (bits_ % 8 != 0) bit(false);
}

}  // namespace cad::db::dwg
