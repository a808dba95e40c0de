// The shared text rules: which entries count as blank, and atoi as the settings read numbers.
#include "vantor/ui/TextRules.h"

#include <gtest/gtest.h>

#include <string>

namespace vantor {
namespace {

struct BlankRow {
    const char* name;
    std::string text;
    bool blank;
};

class BlankText : public testing::TestWithParam<BlankRow> {};

TEST_P(BlankText, CountsOnlySpacesAsNothing) {
    EXPECT_EQ(isBlankText(GetParam().text), GetParam().blank);
}

INSTANTIATE_TEST_SUITE_P(Rows, BlankText,
                         testing::Values(BlankRow{"empty", "", true},
                                         BlankRow{"spaces", "   ", true},
                                         BlankRow{"text_between_spaces", "  a ", false},
                                         BlankRow{"korean_with_inner_spaces", "품   명", false},
                                         BlankRow{"tab_is_text", "\t", false}),
                         [](const auto& row) { return std::string(row.param.name); });

struct AtoiRow {
    const char* name;
    std::string text;
    int value;
};

class AtoiText : public testing::TestWithParam<AtoiRow> {};

TEST_P(AtoiText, ReadsLikeTheCLibrary) {
    EXPECT_EQ(atoiText(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AtoiText,
    testing::Values(AtoiRow{"plain", "3073", 3073}, AtoiRow{"leading_blanks", " \t 42", 42},
                    AtoiRow{"minus", "-7", -7}, AtoiRow{"plus", "+5", 5},
                    AtoiRow{"trailing_garbage", "12px", 12}, AtoiRow{"garbage", "wide", 0},
                    AtoiRow{"sign_only", "-", 0}, AtoiRow{"blank_before_sign_digit", "- 3", 0},
                    AtoiRow{"empty", "", 0}, AtoiRow{"above_32_bits", "99999999999", 2147483647},
                    AtoiRow{"below_32_bits", "-99999999999", -2147483647 - 1},
                    AtoiRow{"lowest", "-2147483648", -2147483647 - 1}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vantor
