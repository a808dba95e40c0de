// The bit codes one at a time, built bit by bit, and unaligned, where a shift or a byte-order
// slip would misread every object after it.
#include "cad/db/dwg/BitReader.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <string>

#include "cad/db/dwg/DwgCrc.h"

namespace cad::db::dwg {
namespace {

// Writes bits most significant first, as DWG files hold them.
class Bits {
public:
    Bits& bits(std::uint64_t value, int count) {
        for (int i = count - 1; i >= 0; --i) push((value >> i) & 1);
        return *this;
    }
    Bits& byte(std::uint8_t value) { return bits(value, 8); }
    Bits& littleEndian(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) byte(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }
    Bits& real(double value) { return littleEndian(std::bit_cast<std::uint64_t>(value), 8); }
    std::string done() const { return out_; }

private:
    void push(bool bit) {
        if (used_ % 8 == 0) out_ += '\0';
        if (bit) out_.back() = static_cast<char>(out_.back() | (0x80 >> (used_ % 8)));
        ++used_;
    }
    std::string out_;
    std::size_t used_ = 0;
};

TEST(BitReader, CompressedShortsLongsAndDoublesInEveryForm) {
    // One odd bit first, so every value after it stands across byte boundaries.
    const std::string bytes = Bits()
                                  .bits(1, 1)
                                  .bits(0b00, 2).littleEndian(0xBEEF, 2)  // BS raw
                                  .bits(0b01, 2).byte(200)                // BS one byte
                                  .bits(0b10, 2)                          // BS zero
                                  .bits(0b11, 2)                          // BS 256
                                  .bits(0b00, 2).littleEndian(0x80000001, 4)  // BL raw
                                  .bits(0b01, 2).byte(7)                      // BL one byte
                                  .bits(0b00, 2).real(-2.5)                   // BD raw
                                  .bits(0b01, 2)                              // BD 1.0
                                  .bits(0b10, 2)                              // BD 0.0
                                  .done();
    BitReader r(bytes);
    EXPECT_TRUE(r.bit());
    EXPECT_EQ(r.bitShort(), static_cast<std::int16_t>(0xBEEF));
    EXPECT_EQ(r.bitShort(), 200);
    EXPECT_EQ(r.bitShort(), 0);
    EXPECT_EQ(r.bitShort(), 256);
    EXPECT_EQ(r.bitLong(), static_cast<std::int32_t>(0x80000001));
    EXPECT_EQ(r.bitLong(), 7);
    EXPECT_EQ(r.bitDouble(), -2.5);
    EXPECT_EQ(r.bitDouble(), 1.0);
    EXPECT_EQ(r.bitDouble(), 0.0);
    EXPECT_FALSE(r.failed());
}

TEST(BitReader, DefaultDoublesPatchTheDefaultsBytes) {
    const double base = 1234.5678;
    const auto baseBits = std::bit_cast<std::uint64_t>(base);
    const std::uint64_t low = 0x11223344;
    const std::uint64_t middle = 0x5566;
    const std::string bytes = Bits()
                                  .bits(0b00, 2)
                                  .bits(0b01, 2).littleEndian(low, 4)
                                  .bits(0b10, 2).littleEndian(middle, 2).littleEndian(low, 4)
                                  .bits(0b11, 2).real(9.75)
                                  .done();
    BitReader r(bytes);
    EXPECT_EQ(r.defaultDouble(base), base);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(r.defaultDouble(base)),
              (baseBits & ~0xFFFFFFFFull) | low);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(r.defaultDouble(base)),
              (baseBits & 0xFFFF000000000000ull) | (middle << 32) | low);
    EXPECT_EQ(r.defaultDouble(base), 9.75);
    EXPECT_FALSE(r.failed());
}

TEST(BitReader, ModularNumbersAndTheirSign) {
    const std::string bytes = Bits()
                                  .byte(0x82).byte(0x01)      // MC 130
                                  .byte(0x85).byte(0x41)      // signed MC -(5 + (1 << 7))
                                  .byte(0x05)                 // signed MC 5
                                  .littleEndian(0x8001, 2)    // MS: 1, more follows
                                  .littleEndian(0x0002, 2)    // ... + 2 << 15
                                  .done();
    BitReader r(bytes);
    EXPECT_EQ(r.modularChar(), 130u);
    EXPECT_EQ(r.signedModularChar(), -(5 + (1 << 7)));
    EXPECT_EQ(r.signedModularChar(), 5);
    EXPECT_EQ(r.modularShort(), 1u + (2u << 15));
    EXPECT_FALSE(r.failed());
}

TEST(BitReader, HandlesAbsoluteAndRelativeToTheirObject) {
    const std::string bytes = Bits()
                                  .byte(0x52).byte(0x01).byte(0x2C)  // hard pointer 0x12C
                                  .byte(0x60)                        // own + 1
                                  .byte(0x80)                        // own - 1
                                  .byte(0xA1).byte(0x10)             // own + 0x10
                                  .byte(0xC1).byte(0x10)             // own - 0x10
                                  .done();
    BitReader r(bytes);
    const std::uint64_t own = 0x100;
    const HandleRef hard = r.handle();
    EXPECT_EQ(hard.code, 5);
    EXPECT_EQ(hard.absolute(own), 0x12Cu);
    EXPECT_EQ(r.handle().absolute(own), 0x101u);
    EXPECT_EQ(r.handle().absolute(own), 0xFFu);
    EXPECT_EQ(r.handle().absolute(own), 0x110u);
    EXPECT_EQ(r.handle().absolute(own), 0xF0u);
    EXPECT_FALSE(r.failed());
}

TEST(BitReader, TextsKeepTheirBytesAndLoseATrailingNul) {
    const std::string bytes = Bits()
                                  .bits(0, 3)
                                  .bits(0b01, 2).byte(4)
                                  .byte(0xB0).byte(0xA1).byte('x').byte(0)  // CP949 bytes
                                  .done();
    BitReader r(bytes);
    for (int i = 0; i < 3; ++i) r.bit();
    EXPECT_EQ(r.text(), "\xB0\xA1x");
    EXPECT_FALSE(r.failed());
}

TEST(BitReader, ReadingPastTheEndFailsAndStaysFailed) {
    // The reader views its bytes, so they are kept alive here.
    const std::string cut = Bits().bits(0b00, 2).byte(0x34).done();  // a raw BS cut short
    BitReader r(cut);
    EXPECT_EQ(r.bitShort(), 0);
    EXPECT_TRUE(r.failed());
    EXPECT_EQ(r.failedAt(), 2u);
    EXPECT_FALSE(r.bit());  // nothing more is read, even what would fit
    EXPECT_TRUE(r.failed());

    // A text whose length runs past the end must not allocate or read that far.
    const std::string longText = Bits().bits(0b00, 2).littleEndian(0xFFFF, 2).done();
    BitReader text(longText);
    EXPECT_EQ(text.text(), "");
    EXPECT_TRUE(text.failed());

    // The limit set for the data stream fails reads that reach the handles.
    const std::string twoBytes = Bits().byte(1).byte(2).done();
    BitReader limited(twoBytes);
    limited.setBitLimit(12);
    EXPECT_EQ(limited.rawChar(), 1);
    EXPECT_EQ(limited.rawChar(), 0);
    EXPECT_TRUE(limited.failed());
}

TEST(DwgCrc, MatchesTheReferenceCheckValue) {
    // The reflected 0xA001 polynomial's published check value for "123456789".
    EXPECT_EQ(dwgCrc16("123456789", 0), 0xBB3D);
    EXPECT_NE(dwgCrc16("123456789", 0xC0C1), 0xBB3D);
}

TEST(DwgCrc, EightBytesAStepAgreeWithOneBitAtATime) {
    // Every length around the eight-byte steps, every seed kind, bytes of every value.
    const auto bitwise = [](std::string_view bytes, std::uint16_t crc) {
        for (const char c : bytes) {
            crc ^= static_cast<std::uint8_t>(c);
            for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1;
        }
        return crc;
    };
    std::string bytes;
    for (int i = 0; i < 40; ++i) bytes += static_cast<char>(i * 37 + 11);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        for (const std::uint16_t seed : {0x0000, 0xC0C1, 0xFFFF}) {
            const std::string_view part(bytes.data(), length);
            EXPECT_EQ(dwgCrc16(part, seed), bitwise(part, seed)) << length << " " << seed;
        }
    }
}

}  // namespace
}  // namespace cad::db::dwg
