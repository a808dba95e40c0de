// Decoding a block's preview icon.
#include "vantor/placement/PreviewBitmap.h"

#include <cstdlib>

#include "cad/db/BlockTableRecord.h"

namespace vantor {

namespace {

constexpr std::size_t kHeaderSize = 40;
constexpr std::uint32_t kRgb = 0;
constexpr std::uint32_t kBitFields = 3;

std::uint32_t u32(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[at])) |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[at + 1])) << 8 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[at + 2])) << 16 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[at + 3])) << 24;
}

std::uint16_t u16(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(bytes[at]) |
                                      static_cast<std::uint8_t>(bytes[at + 1]) << 8);
}

// A colour table entry: blue, green, red, reserved.
PreviewImage::Rgb tableEntry(std::string_view bytes, std::size_t at) {
    return {static_cast<std::uint8_t>(bytes[at + 2]), static_cast<std::uint8_t>(bytes[at + 1]),
            static_cast<std::uint8_t>(bytes[at])};
}

// The channel of a packed pixel under `mask`, scaled to eight bits.
std::uint8_t channel(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return 0;
    int shift = 0;
    while (((mask >> shift) & 1u) == 0) ++shift;
    const std::uint32_t top = mask >> shift;
    return static_cast<std::uint8_t>(((pixel & mask) >> shift) * 255u / top);
}

}  // namespace

int PreviewBitmap::decode(std::string_view icon, PreviewImage& image) {
    if (icon.size() < kHeaderSize || icon.size() > kPreviewIconBuffer) return -1;
    const auto width = static_cast<std::int32_t>(u32(icon, 4));
    const auto rawHeight = static_cast<std::int32_t>(u32(icon, 8));
    const int bitCount = u16(icon, 14);
    const std::uint32_t compression = u32(icon, 16);
    const std::uint32_t usedColors = u32(icon, 32);
    if (width <= 0 || rawHeight == 0 || width > 4096 || std::abs(rawHeight) > 4096) return -1;
    if (compression != kRgb && compression != kBitFields) return -1;
    if (compression == kBitFields && bitCount != 16 && bitCount != 32) return -1;

    PreviewImage decoded;
    decoded.width = width;
    decoded.height = std::abs(rawHeight);
    decoded.bitCount = bitCount;
    decoded.colorCount =
        usedColors != 0 ? std::int64_t{usedColors} : std::int64_t{1} << std::min(bitCount, 32);
    std::size_t entries = bitCount <= 8 ? static_cast<std::size_t>(decoded.colorCount)
                                        : usedColors + (compression == kBitFields ? 3 : 0);
    const std::size_t pixelsAt = kHeaderSize + 4 * entries;
    const std::size_t rowBytes = (static_cast<std::size_t>(width) * bitCount + 31) / 32 * 4;
    if (pixelsAt + rowBytes * decoded.height > icon.size()) return -1;

    // With bit fields the three masks stand first in the table, the colours after them.
    const std::size_t colorsAt = kHeaderSize + (compression == kBitFields ? 12 : 0);
    if (decoded.colorCount <= 256) {
        const std::size_t colors = bitCount <= 8 ? entries : usedColors;
        for (std::size_t i = 0; i < colors; ++i)
            decoded.palette.push_back(tableEntry(icon, colorsAt + 4 * i));
    }

    std::uint32_t masks[3] = {0x7C00, 0x03E0, 0x001F};  // 16 bits: five per channel
    if (bitCount == 32) {
        masks[0] = 0xFF0000;
        masks[1] = 0x00FF00;
        masks[2] = 0x0000FF;
    }
    if (compression == kBitFields)
        for (int i = 0; i < 3; ++i) masks[i] = u32(icon, kHeaderSize + 4 * i);

    decoded.pixels.reserve(static_cast<std::size_t>(width) * decoded.height);
    for (int y = 0; y < decoded.height; ++y) {
        // Rows are stored from the bottom unless the height is negative.
        const int row = rawHeight > 0 ? decoded.height - 1 - y : y;
        const std::string_view bytes = icon.substr(pixelsAt + rowBytes * row, rowBytes);
        for (int x = 0; x < width; ++x) {
            switch (bitCount) {
                case 1:
                case 4:
                case 8: {
                    const std::size_t bit = static_cast<std::size_t>(x) * bitCount;
                    const auto byte = static_cast<std::uint8_t>(bytes[bit / 8]);
                    const std::size_t index =
                        (byte >> (8 - bitCount - bit % 8)) & ((1u << bitCount) - 1);
                    if (index >= entries) return -1;
                    decoded.pixels.push_back(tableEntry(icon, colorsAt + 4 * index));
                    break;
                }
                case 24:
                    decoded.pixels.push_back(tableEntry(bytes, 3 * static_cast<std::size_t>(x)));
                    break;
                case 16:
                case 32: {
                    const std::uint32_t pixel = bitCount == 16
                                                    ? u16(bytes, 2 * static_cast<std::size_t>(x))
                                                    : u32(bytes, 4 * static_cast<std::size_t>(x));
                    decoded.pixels.push_back({channel(pixel, masks[0]), channel(pixel, masks[1]),
                                              channel(pixel, masks[2])});
                    break;
                }
                default:
                    return -1;
            }
        }
    }
    image = std::move(decoded);
    return 0;
}

int PreviewBitmap::fromBlock(const cad::db::BlockTableRecord& block, PreviewImage& image) {
    return block.hasPreviewIcon() ? decode(block.previewIcon(), image) : -1;
}

}  // namespace vantor
