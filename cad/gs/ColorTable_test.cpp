// The computed colour table against entries every drawing program agrees on.
#include "cad/gs/ColorTable.h"

#include <gtest/gtest.h>

namespace cad::gs {
namespace {

TEST(ColorTable, KnownEntries) {
    const std::pair<int, std::uint32_t> known[] = {
        {1, 0xFF0000},  {2, 0xFFFF00},  {5, 0x0000FF},  {7, 0xFFFFFF},  {8, 0x808080},
        {10, 0xFF0000}, {11, 0xFF7F7F}, {12, 0xA50000}, {19, 0x261313}, {20, 0xFF3F00},
        {21, 0xFF9F7F}, {30, 0xFF7F00}, {40, 0xFFBF00}, {50, 0xFFFF00}, {60, 0xBFFF00},
        {140, 0x00BFFF}, {150, 0x007FFF}, {200, 0xBF00FF}, {250, 0x333333}, {255, 0xFFFFFF}};
    for (const auto& [index, rgb] : known) EXPECT_EQ(indexColor(index), rgb) << "index " << index;
}

TEST(ColorTable, OutOfRangeIsWhite) {
    EXPECT_EQ(indexColor(0), 0xFFFFFFu);
    EXPECT_EQ(indexColor(256), 0xFFFFFFu);
    EXPECT_EQ(indexColor(-3), 0xFFFFFFu);
}

}  // namespace
}  // namespace cad::gs
