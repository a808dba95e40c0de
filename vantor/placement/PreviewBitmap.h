// The preview of a block made from the icon stored with its definition: a packed
// device-independent bitmap (header, colour table, pixels) decoded into plain RGB pixels for
// the preview pane to show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace cad::db {
class BlockTableRecord;
}

namespace vantor {

struct PreviewImage {
    struct Rgb {
        std::uint8_t red = 0;
        std::uint8_t green = 0;
        std::uint8_t blue = 0;
        friend bool operator==(const Rgb&, const Rgb&) = default;
    };
    int width = 0;
    int height = 0;
    int bitCount = 0;
    // The header's used-colour count, or 2 to the power of the bit count when that is 0.
    std::int64_t colorCount = 0;
    // The palette a display with 256 colours or fewer realises; empty for more colours.
    std::vector<Rgb> palette;
    std::vector<Rgb> pixels;  // rows from the top, width * height of them

    const Rgb& at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

// Icons are read through a fixed buffer of this size (a 32 x 32 icon of 256 colours with its
// header and table); longer icons are refused rather than read in part.
inline constexpr std::size_t kPreviewIconBuffer = 2088;

class PreviewBitmap {
public:
    // 0 with the image filled; -1 for an empty, too long, truncated or unsupported icon, with
    // `image` left as it was.
    static int decode(std::string_view icon, PreviewImage& image);
    // The block's stored icon decoded; -1 when it has none.
    static int fromBlock(const cad::db::BlockTableRecord& block, PreviewImage& image);
};

}  // namespace vantor
