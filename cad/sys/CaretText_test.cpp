// The caret form: every control character and a caret survive a round trip, and carets that
// are not escapes read as themselves.
#include "cad/sys/CaretText.h"

#include <gtest/gtest.h>

#include <string>

namespace cad::sys {
namespace {

TEST(CaretText, EveryByteRoundTrips) {
    std::string all;
    for (int c = 0; c < 0x80; ++c) all += static_cast<char>(c);
    all += "한글^";
    const std::string careted = toCaretForm(all);
    for (const char c : careted) EXPECT_GE(static_cast<unsigned char>(c), 0x20);
    EXPECT_EQ(fromCaretForm(careted), all);
    EXPECT_EQ(toCaretForm("a\nb\r\t\x1A^"), "a^Jb^M^I^Z^ ");
}

TEST(CaretText, CaretsThatAreNoEscapeStay) {
    const std::pair<const char*, const char*> rows[] = {
        {"2^3", "2^3"},    // a digit is no control letter
        {"^a", "^a"},      // nor is a lower-case letter
        {"end^", "end^"},  // nothing after it
        {"^^J", "\036J"},  // "^^" is 0x1E, as the rule makes it
        {"^  x", "^ x"},   // an escaped caret, then a blank of the text
    };
    for (const auto& [stored, text] : rows) EXPECT_EQ(fromCaretForm(stored), text) << stored;
    EXPECT_EQ(fromCaretForm("^@"), std::string(1, '\0'));
}

}  // namespace
}  // namespace cad::sys
