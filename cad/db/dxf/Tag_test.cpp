// Value accessors: tolerant of the blanks writers put around numbers, strict about garbage and
// about values the code's type cannot hold.
#include "cad/db/dxf/Tag.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace cad::db::dxf {
namespace {

struct DoubleRow {
    const char* name;
    const char* text;
    std::optional<double> expected;
};

class ToDouble : public testing::TestWithParam<DoubleRow> {};

TEST_P(ToDouble, ParsesOrRefuses) {
    EXPECT_EQ(toDouble(Tag{10, GetParam().text, 1}), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, ToDouble,
    testing::Values(DoubleRow{"plain", "1.5", 1.5}, DoubleRow{"leading_blanks", "   -2.25", -2.25},
                    DoubleRow{"trailing_blanks_and_cr", "3.0 \t\r", 3.0},
                    DoubleRow{"plus_sign", "+4", 4.0}, DoubleRow{"exponent", "1.0E-08", 1e-8},
                    DoubleRow{"no_integer_part", ".5", 0.5},

                    DoubleRow{"empty", "", std::nullopt}, DoubleRow{"blank", "   ", std::nullopt},
                    DoubleRow{"trailing_garbage", "1.5x", std::nullopt},
                    DoubleRow{"comma_decimal", "1,5", std::nullopt},

                    DoubleRow{"two_signs", "+-1", std::nullopt},
                    DoubleRow{"nan", "nan", std::nullopt}, DoubleRow{"inf", "inf", std::nullopt},
                    DoubleRow{"overflow", "1e999", std::nullopt}),
    [](const testing::TestParamInfo<DoubleRow>& row) { return row.param.name; });

struct IntRow {
    const char* name;
    int code;
    const char* text;
    std::optional<std::int64_t> expected;
};

class ToInt : public testing::TestWithParam<IntRow> {};

TEST_P(ToInt, ParsesWithinTheRangeOfTheCode) {
    EXPECT_EQ(toInt(Tag{GetParam().code, GetParam().text, 1}), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, ToInt,
    testing::Values(
        IntRow{"right_aligned_int16", 70, "     0", 0}, IntRow{"int16_max", 62, "32767", 32767},
        IntRow{"int16_above_max", 62, "32768", std::nullopt},
        IntRow{"int16_below_min", 1070, "-32769", std::nullopt},
        IntRow{"int32_max", 90, "2147483647", 2147483647},
        IntRow{"int32_above_max", 1071, "2147483648", std::nullopt},
        IntRow{"int64", 160, "-9223372036854775808", INT64_MIN},
        IntRow{"int64_overflow", 160, "9223372036854775808", std::nullopt},
        IntRow{"bool_one", 290, "1", 1}, IntRow{"bool_negative", 290, "-1", std::nullopt},
        IntRow{"bool_above_byte", 290, "256", std::nullopt}, IntRow{"plus_sign", 70, "+5", 5},
        IntRow{"decimal_point", 70, "1.0", std::nullopt},
        IntRow{"garbage", 70, "abc", std::nullopt}),
    [](const testing::TestParamInfo<IntRow>& row) { return row.param.name; });

TEST(ToHandle, ReadsHexadecimalOfEitherCase) {
    EXPECT_EQ(toHandle(Tag{5, "1F", 1}), 0x1Fu);
    EXPECT_EQ(toHandle(Tag{330, "a54b ", 1}), 0xA54Bu);
    EXPECT_EQ(toHandle(Tag{5, "0", 1}), 0u);
    EXPECT_EQ(toHandle(Tag{5, "FFFFFFFFFFFFFFFF", 1}), UINT64_MAX);
    EXPECT_EQ(toHandle(Tag{5, "10000000000000000", 1}), std::nullopt);
    EXPECT_EQ(toHandle(Tag{5, "", 1}), std::nullopt);
    EXPECT_EQ(toHandle(Tag{5, "1G", 1}), std::nullopt);
    EXPECT_EQ(toHandle(Tag{5, "-1", 1}), std::nullopt);
}

TEST(ToBinary, TurnsHexPairsIntoBytes) {
    EXPECT_EQ(toBinary(Tag{310, "00FFa0", 1}), std::string("\x00\xFF\xA0", 3));
    EXPECT_EQ(toBinary(Tag{310, "", 1}), std::string());
    EXPECT_EQ(toBinary(Tag{310, "ABC", 1}), std::nullopt);
    EXPECT_EQ(toBinary(Tag{310, "0G", 1}), std::nullopt);
}

}  // namespace
}  // namespace cad::db::dxf
