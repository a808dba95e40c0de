// The name fold: ASCII letters only, whatever the bytes around them.
#include "cad/sys/AsciiCase.h"

#include <gtest/gtest.h>

namespace cad::sys {
namespace {

TEST(AsciiCase, FoldsAsciiLettersOnly) {
    EXPECT_EQ(asciiUpper("Layer_0-a.z"), "LAYER_0-A.Z");
    EXPECT_EQ(asciiLower("ANSI_949"), "ansi_949");
    // UTF-8 Korean and Latin-1 look-alikes stay as they are, as does the Turkish dotless i.
    EXPECT_EQ(asciiUpper("볼트 é ı"), "볼트 é ı");
    EXPECT_EQ(asciiLower("\xC9\xD0\x7F"), "\xC9\xD0\x7F");

    EXPECT_TRUE(equalNoCase("Standard", "STANDARD"));
    EXPECT_FALSE(equalNoCase("Standard", "Standards"));
    EXPECT_FALSE(equalNoCase("_a", "_A_"));
    EXPECT_FALSE(equalNoCase("[", "{"));  // 0x5B and 0x7B differ by the case bit but are no letters
}

}  // namespace
}  // namespace cad::sys
