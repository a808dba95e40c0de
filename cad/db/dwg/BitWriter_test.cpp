// Every bit code written and read back at the value edges where the writer switches forms,
// starting off a byte boundary; what is written must also be the shortest form.
#include "cad/db/dwg/BitWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "cad/db/dwg/BitReader.h"

namespace cad::db::dwg {
namespace {

TEST(BitWriter, EveryCodeReadsBackAtItsEdges) {
    const std::int16_t shorts[] = {0, 1, 255, 256, 257, -1, 32767, -32768};
    const std::int32_t longs[] = {0, 1, 255, 256, -1, 2147483647, -2147483647 - 1};
    const double doubles[] = {0.0, -0.0, 1.0, -1.0, 0.1, 1e300,
                              std::numeric_limits<double>::denorm_min()};
    const std::uint64_t modular[] = {0, 1, 127, 128, 16383, 16384, 0xFFFFFFFFull};
    const std::int64_t signedModular[] = {0, 1, -1, 63, 64, -64, 8191, 8192, -100000};

    BitWriter w;
    w.bit(true);
    for (const auto v : shorts) w.bitShort(v);
    for (const auto v : longs) w.bitLong(v);
    for (const auto v : doubles) w.bitDouble(v);
    for (const auto v : doubles) w.defaultDouble(v, 0.1);
    for (const auto v : modular) w.modularChar(v);
    for (const auto v : signedModular) w.signedModularChar(v);
    for (const auto v : modular) w.modularShort(v);
    w.handle(5, 0);
    w.handle(3, 0x12C);
    w.handle(4, 0x123456789Aull);
    w.text("");
    w.text("\xB0\xA1 name");
    w.thickness(0.0);
    w.thickness(2.5);
    w.extrusion({0, 0, 1});
    w.extrusion({0, 0, -1});
    w.rawLong(0);
    const std::size_t patched = w.bitPosition() - 32;
    w.patchRawLong(patched, 0x01020304);

    BitReader r(w.bytes());
    EXPECT_TRUE(r.bit());
    for (const auto v : shorts) EXPECT_EQ(r.bitShort(), v);
    for (const auto v : longs) EXPECT_EQ(r.bitLong(), v);
    for (const auto v : doubles) {
        const double read = r.bitDouble();
        EXPECT_EQ(read, v);
        EXPECT_EQ(std::signbit(read), std::signbit(v)) << "-0.0 must keep its sign";
    }
    for (const auto v : doubles) EXPECT_EQ(r.defaultDouble(0.1), v);
    for (const auto v : modular) EXPECT_EQ(r.modularChar(), v);
    for (const auto v : signedModular) EXPECT_EQ(r.signedModularChar(), v);
    for (const auto v : modular) EXPECT_EQ(r.modularShort(), v);
    EXPECT_EQ(r.handle().value, 0u);
    const HandleRef owner = r.handle();
    EXPECT_EQ(owner.code, 3);
    EXPECT_EQ(owner.value, 0x12Cu);
    EXPECT_EQ(r.handle().value, 0x123456789Aull);
    EXPECT_EQ(r.text(), "");
    EXPECT_EQ(r.text(), "\xB0\xA1 name");
    EXPECT_EQ(r.thickness(true), 0.0);
    EXPECT_EQ(r.thickness(true), 2.5);
    EXPECT_EQ(r.extrusion(true).z, 1.0);
    EXPECT_EQ(r.extrusion(true).z, -1.0);
    EXPECT_EQ(r.rawLong(), 0x01020304);
    EXPECT_FALSE(r.failed());
}

TEST(BitWriter, ChoosesTheShortForms) {
    const auto bitsOf = [](auto write) {
        BitWriter w;
        write(w);
        return w.bitPosition();
    };
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.bitShort(0); }), 2u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.bitShort(256); }), 2u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.bitShort(200); }), 10u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.bitDouble(1.0); }), 2u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.defaultDouble(5.0, 5.0); }), 2u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.handle(5, 0x1F); }), 16u);
    EXPECT_EQ(bitsOf([](BitWriter& w) { w.modularChar(127); }), 8u);
}

}  // namespace
}  // namespace cad::db::dwg
