// The sample supplier's logo: a ring, a "V" and three bars on a dark blue ground.
#include "apps/make-sample-library/SampleLogo.h"

#include <cstdint>
#include <cstdlib>

namespace vantor::sample {

namespace {

struct Rgb {
    std::uint8_t r, g, b;
};

void putLittleEndian(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

// x from the left, y from the top.
Rgb pixelAt(int x, int y) {
    const Rgb ground{0x1F, 0x3A, 0x6E};
    const Rgb white{0xFF, 0xFF, 0xFF};
    const Rgb orange{0xF2, 0x8C, 0x28};
    const int dx = x - 20;
    const int dy = y - 20;
    const int distance2 = dx * dx + dy * dy;
    if (distance2 <= 15 * 15 && distance2 >= 10 * 10) return orange;
    if (distance2 <= 4 * 4) return orange;
    // The V: two strokes from the top corners of its box down to the middle of its foot.
    if (y >= 6 && y <= 34) {
        const int depth = y - 6;  // 0 .. 28
        const int left = 42 + depth / 2;
        const int right = 78 - depth / 2;
        if ((x >= left && x <= left + 5) || (x >= right - 5 && x <= right)) return white;
    }
    if (x >= 88 && x <= 144 &&
        ((y >= 9 && y <= 14) || (y >= 18 && y <= 22) || (y >= 26 && y <= 30)))
        return y < 15 ? white : Rgb{0xB8, 0xC8, 0xE0};
    if (x == 0 || y == 0 || x == kLogoWidth - 1 || y == kLogoHeight - 1) return orange;
    return ground;
}

}  // namespace

std::string sampleLogoBmp() {
    const int rowBytes = (kLogoWidth * 3 + 3) / 4 * 4;
    const std::uint32_t imageBytes = static_cast<std::uint32_t>(rowBytes * kLogoHeight);
    std::string bmp = "BM";
    putLittleEndian(bmp, 14 + 40 + imageBytes, 4);
    putLittleEndian(bmp, 0, 4);
    putLittleEndian(bmp, 14 + 40, 4);
    putLittleEndian(bmp, 40, 4);
    putLittleEndian(bmp, kLogoWidth, 4);
    putLittleEndian(bmp, kLogoHeight, 4);  // positive: rows bottom-up
    putLittleEndian(bmp, 1, 2);
    putLittleEndian(bmp, 24, 2);
    putLittleEndian(bmp, 0, 4);  // no compression
    putLittleEndian(bmp, imageBytes, 4);
    putLittleEndian(bmp, 2835, 4);  // 72 dots per inch
    putLittleEndian(bmp, 2835, 4);
    putLittleEndian(bmp, 0, 4);
    putLittleEndian(bmp, 0, 4);
    for (int row = kLogoHeight - 1; row >= 0; --row) {
        for (int x = 0; x < kLogoWidth; ++x) {
            const Rgb p = pixelAt(x, row);
            bmp += static_cast<char>(p.b);
            bmp += static_cast<char>(p.g);
            bmp += static_cast<char>(p.r);
        }
        bmp.append(static_cast<std::size_t>(rowBytes - kLogoWidth * 3), '\0');
    }
    return bmp;
}

}  // namespace vantor::sample
