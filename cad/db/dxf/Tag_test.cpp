// Value accessors: tolerant of the blanks writers put around numbers, strict about garbage and
// about values the code's type cannot hold.
#include "cad/db/dxf/Tag.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <string_view>

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
    testing::Values(
        DoubleRow{"plain", "1.5", 1.5}, DoubleRow{"leading_blanks", "   -2.25", -2.25},
        DoubleRow{"trailing_blanks_and_cr", "3.0 \t\r", 3.0}, DoubleRow{"plus_sign", "+4", 4.0},
        DoubleRow{"exponent", "1.0E-08", 1e-8}, DoubleRow{"no_integer_part", ".5", 0.5},

        DoubleRow{"empty", "", std::nullopt}, DoubleRow{"blank", "   ", std::nullopt},
        DoubleRow{"trailing_garbage", "1.5x", std::nullopt},
        DoubleRow{"comma_decimal", "1,5", std::nullopt},

        DoubleRow{"tiny_exponent", "1e-05", 1e-5}, DoubleRow{"point_alone", ".", std::nullopt},
        DoubleRow{"exponent_without_digits", "1e", std::nullopt},
        DoubleRow{"two_signs", "+-1", std::nullopt}, DoubleRow{"nan", "nan", std::nullopt},
        DoubleRow{"negative_inf", "-inf", std::nullopt}, DoubleRow{"inf", "inf", std::nullopt},
        DoubleRow{"overflow", "1e999", std::nullopt},
        DoubleRow{"negative_overflow", "-1.8e308", std::nullopt}),
    [](const testing::TestParamInfo<DoubleRow>& row) { return row.param.name; });

// What a value is by from_chars alone, under the same rules for blanks, '+' and values that
// are not finite: the result every number must keep, bit for bit, however it is parsed.
std::optional<double> byFromChars(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    double value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return {};
    return value;
}

// Numbers of the shapes writers produce, and near misses of them.
class NumberMaker {
public:
    explicit NumberMaker(std::uint64_t seed) : random_(seed) {}

    std::string next() {
        std::string text;
        switch (pick(6)) {
            case 0:
                text = shortest(anyDouble());
                break;
            case 1:
                text = printed("%.17g", scaled());
                break;
            case 2:
                text = printed("%.*f", scaled(), static_cast<int>(pick(17)));
                break;
            case 3:
                text = printed("%.*e", scaled(), static_cast<int>(pick(17)));
                break;
            case 4:
                text = digits();
                break;
            default:
                text = mutated(digits());
                break;
        }
        if (pick(8) == 0) text = std::string(pick(3), ' ') + text + std::string(pick(3), ' ');
        return text;
    }

private:
    std::size_t pick(std::size_t count) { return random_() % count; }

    double anyDouble() {
        double value = 0;
        do {
            value = std::bit_cast<double>(static_cast<std::uint64_t>(random_()));
        } while (!std::isfinite(value));
        return value;
    }

    // Coordinates and sizes: a few significant digits at magnitudes from 1e-9 to 1e9.
    double scaled() {
        const double mantissa = std::uniform_real_distribution<double>(-1000.0, 1000.0)(random_);
        return mantissa * std::pow(10.0, static_cast<double>(pick(19)) - 9.0);
    }

    static std::string shortest(double value) {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        return std::string(buffer, result.ptr);
    }

    static std::string printed(const char* format, double value, int precision = -1) {
        char buffer[512];
        if (precision < 0) {
            std::snprintf(buffer, sizeof buffer, format, value);
        } else {
            std::snprintf(buffer, sizeof buffer, format, precision, value);
        }
        return buffer;
    }

    // Digit strings of any length around the limits of exact parsing (16 to 20 digits, powers
    // of ten near 22), with leading zeros, signs and exponents of every form.
    std::string digits() {
        std::string text;
        const std::size_t sign = pick(4);
        if (sign == 1) text += '-';
        if (sign == 2) text += '+';
        for (std::size_t n = pick(3); n > 0; --n) text += '0';
        const std::size_t count = pick(24);
        const std::size_t point = pick(count + 2);
        for (std::size_t i = 0; i < count; ++i) {
            if (i == point) text += '.';
            text += static_cast<char>('0' + pick(10));
        }
        if (point == count) text += '.';
        if (pick(3) == 0) {
            text += pick(2) ? 'e' : 'E';
            const std::size_t exponentSign = pick(3);
            if (exponentSign == 1) text += '-';
            if (exponentSign == 2) text += '+';
            text += std::to_string(pick(2) ? pick(30) : pick(400));
        }
        return text;
    }

    std::string mutated(std::string text) {
        static constexpr std::string_view kChars = "+-.eE0123456789 xin";
        const std::size_t at = pick(text.size() + 1);
        if (pick(2) == 0 && at < text.size()) {
            text.erase(at, 1);
        } else {
            text.insert(at, 1, kChars[pick(kChars.size())]);
        }
        return text;
    }

    std::mt19937_64 random_;
};

TEST(ToDouble, AgreesBitForBitWithFromChars) {
    NumberMaker maker(20261121);
    for (int i = 0; i < 300'000; ++i) {
        const std::string text = maker.next();
        const auto expected = byFromChars(text);
        const auto value = toDouble(Tag{10, text, 1});
        ASSERT_EQ(value.has_value(), expected.has_value()) << "'" << text << "'";
        if (value) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(*value), std::bit_cast<std::uint64_t>(*expected))
                << "'" << text << "'";
        }
    }
    // The limits of exact parsing, and signed zeros.
    // clang-format off
    for (const char* text : {
             "9007199254740992", "9007199254740993", "9007199254740992e22", "9007199254740993e-22",
             "1e22", "1e23", "1e-22", "1e-23", "123456789012345678", "1234567890123456789",
             "12345678901234567890", "0.30000000000000004", "4.9e-324", "2.2250738585072014e-308",
             "1.7976931348623157e308", "1e-400", "-0", "-0.0", "+0", "0e999", "-.0e-5", "1e+05",
             "00000000000000000000001.5", "0.0000000000000000000000001"}) {
        // clang-format on
        const auto expected = byFromChars(text);
        const auto value = toDouble(Tag{10, text, 1});
        ASSERT_EQ(value.has_value(), expected.has_value()) << text;
        if (value) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(*value), std::bit_cast<std::uint64_t>(*expected))
                << text;
        }
    }
}

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
