// The conversions the reader and the writer share come back as they went.
#include "cad/db/dwg/DwgValues.h"

#include <gtest/gtest.h>

#include <string>

namespace cad::db::dwg {
namespace {

TEST(DwgValues, WhatTheWriterStoresTheReaderTakesBack) {
    // Line weights: every stored index, by layer, by block and the default.
    for (int index = 0; index < 24; ++index) {
        EXPECT_EQ(lineweightIndex(lineweightFromIndex(index)), index) << index;
    }
    for (const int index : {29, 30, 31}) {
        EXPECT_EQ(lineweightIndex(lineweightFromIndex(index)), index) << index;
    }
    // A weight between two standard ones is stored as the heavier.
    EXPECT_EQ(lineweightFromIndex(lineweightIndex(16)), 18);

    // Multiline-style flags: every combination of the bits DXF uses; fill on is DWG's bit 1.
    constexpr int kDxfBits = 1 | 2 | 16 | 32 | 64 | 256 | 512 | 1024;
    for (int flags = 0; flags <= kDxfBits; ++flags) {
        if ((flags & ~kDxfBits) != 0) continue;
        EXPECT_EQ(mlineStyleFlagsFromDwg(mlineStyleFlagsToDwg(flags)), flags) << flags;
    }
    EXPECT_EQ(mlineStyleFlagsToDwg(2), 1);

    // Binary data of every byte value, and hexadecimal text in either case.
    std::string bytes;
    for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
    EXPECT_EQ(bytesFromHex(hexBytes(bytes)), bytes);
    EXPECT_EQ(bytesFromHex("0aFf"), std::string("\x0A\xFF", 2));
    EXPECT_EQ(hexHandle(0x1A2BC), "1A2BC");
}

}  // namespace
}  // namespace cad::db::dwg
