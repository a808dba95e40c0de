// Decoding a block's preview icon: palette and 24-bit icons, and the icons refused.
#include "vantor/placement/PreviewBitmap.h"

#include <gtest/gtest.h>

#include <string>

#include "cad/db/BlockTableRecord.h"

namespace vantor {
namespace {

void put32(std::string& bytes, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
}

// A packed bitmap: the 40-byte header, `table` (4 bytes per colour, blue first) and `pixels`.
std::string icon(int width, int height, int bits, std::uint32_t used, const std::string& table,
                 const std::string& pixels) {
    std::string bytes;
    put32(bytes, 40);
    put32(bytes, static_cast<std::uint32_t>(width));
    put32(bytes, static_cast<std::uint32_t>(height));
    bytes += std::string("\x01\x00", 2) + static_cast<char>(bits) + '\0';
    put32(bytes, 0);  // no compression
    put32(bytes, static_cast<std::uint32_t>(pixels.size()));
    put32(bytes, 0);
    put32(bytes, 0);
    put32(bytes, used);
    put32(bytes, 0);
    return bytes + table + pixels;
}

using Rgb = PreviewImage::Rgb;

TEST(PreviewBitmap, PaletteIconTakesItsColoursFromTheTableBottomRowFirst) {
    // 256 colours (used count 0 means all of them): entry i is (i, 255 - i, 7).
    std::string table;
    for (int i = 0; i < 256; ++i)
        table += std::string{'\x07', static_cast<char>(255 - i), static_cast<char>(i), '\0'};
    const std::string pixels = std::string("\x01\x02\0\0", 4) + std::string("\x03\x04\0\0", 4);
    PreviewImage image;
    ASSERT_EQ(PreviewBitmap::decode(icon(2, 2, 8, 0, table, pixels), image), 0);
    EXPECT_EQ(image.colorCount, 256);
    ASSERT_EQ(image.palette.size(), 256u);
    EXPECT_EQ(image.palette[200], (Rgb{200, 55, 7}));
    EXPECT_EQ(image.at(0, 0), (Rgb{3, 252, 7}));  // the top row is stored last
    EXPECT_EQ(image.at(1, 1), (Rgb{2, 253, 7}));
}

TEST(PreviewBitmap, TrueColourIconHasNoPalette) {
    PreviewImage image;
    const std::string pixels = std::string("\x10\x20\x30\x40\x50\x60\0\0", 8);
    ASSERT_EQ(PreviewBitmap::decode(icon(2, 1, 24, 0, "", pixels), image), 0);
    EXPECT_EQ(image.colorCount, std::int64_t{1} << 24);
    EXPECT_TRUE(image.palette.empty());
    EXPECT_EQ(image.pixels, (std::vector<Rgb>{{0x30, 0x20, 0x10}, {0x60, 0x50, 0x40}}));
}

TEST(PreviewBitmap, RefusedIconsLeaveTheImageAlone) {
    PreviewImage image;
    image.width = 99;
    const std::string row(8, '\0');
    // One byte over the buffer, and an icon whose pixels stop short.
    EXPECT_EQ(
        PreviewBitmap::decode(icon(2, 1, 24, 0, "", row) + std::string(2088 - 48 + 1, 'x'), image),
        -1);
    EXPECT_EQ(PreviewBitmap::decode(icon(2, 4, 24, 0, "", row), image), -1);
    EXPECT_EQ(PreviewBitmap::decode("", image), -1);
    cad::db::BlockTableRecord block;
    EXPECT_EQ(PreviewBitmap::fromBlock(block, image), -1);
    EXPECT_EQ(image.width, 99);
    // Exactly the buffer's size is still read.
    EXPECT_EQ(
        PreviewBitmap::decode(icon(2, 1, 24, 0, "", row) + std::string(2088 - 48, 'x'), image), 0);
}

}  // namespace
}  // namespace vantor
