// Parsing of tag values. Values are views into the file, so parsing never copies the text.
#include "cad/db/dxf/Tag.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "cad/db/dxf/GroupCode.h"

namespace cad::db::dxf {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

bool isDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

// trimBlanks for this file's parsers, which the compiler can inline.
std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Every handle of every object is parsed, so the digits are looked up rather than compared.
constexpr std::array<std::int8_t, 256> kHexDigits = [] {
    std::array<std::int8_t, 256> table{};
    for (auto& digit : table) digit = -1;
    for (int c = '0'; c <= '9'; ++c) table[c] = static_cast<std::int8_t>(c - '0');
    for (int c = 'A'; c <= 'F'; ++c) table[c] = static_cast<std::int8_t>(c - 'A' + 10);
    for (int c = 'a'; c <= 'f'; ++c) table[c] = static_cast<std::int8_t>(c - 'a' + 10);
    return table;
}();

int hexDigit(char c) {
    return kHexDigits[static_cast<unsigned char>(c)];
}

// Powers of ten that a double holds exactly.
constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kMaxExactPower = 22;
constexpr std::uint64_t kMaxExactMantissa = std::uint64_t{1} << 53;
constexpr int kMaxMantissaDigits = 19;  // all fit in 64 bits

// Numbers as writers put them ("-123.816", "8.182000000000002", "1e-05") make up most of a
// drawing. When the digits form an integer of at most 2^53 and the power of ten is at most 22,
// both are exact doubles and one multiplication or division rounds once, correctly: the result
// is the one from_chars gives. True with `value` set in that case; false leaves the text to
// from_chars (more digits, a large exponent, "inf", anything that is not a plain number).
bool parsePlainDecimal(std::string_view text, double& value) {
    const char* p = text.data();
    const char* const end = p + text.size();
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    // Zeros before the first significant digit only move the point. The digits are summed
    // without a check each; more than 19 may have wrapped around, and go to from_chars.
    const char* const integerStart = p;
    while (p != end && *p == '0') ++p;
    std::uint64_t mantissa = 0;
    const char* significant = p;
    for (; p != end && isDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    std::ptrdiff_t digits = p - significant;
    bool anyDigit = p != integerStart;
    std::int64_t exponent = 0;
    if (p != end && *p == '.') {
        const char* const fractionStart = ++p;
        if (mantissa == 0) {
            while (p != end && *p == '0') ++p;
        }
        significant = p;
        for (; p != end && isDigit(*p); ++p)
            mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
        digits += p - significant;
        exponent = -(p - fractionStart);
        anyDigit = anyDigit || p != fractionStart;
    }
    if (!anyDigit || digits > kMaxMantissaDigits) return false;
    if (p != end && (*p == 'e' || *p == 'E')) {
        ++p;
        const bool negativeExponent = p != end && *p == '-';
        if (p != end && (*p == '-' || *p == '+')) ++p;
        if (p == end || !isDigit(*p)) return false;
        int written = 0;
        for (; p != end && isDigit(*p); ++p) {
            if (written > 10000) return false;
            written = written * 10 + (*p - '0');
        }
        exponent += negativeExponent ? -written : written;
    }
    if (p != end) return false;
    if (mantissa == 0) {
        value = negative ? -0.0 : 0.0;
        return true;
    }
    if (mantissa > kMaxExactMantissa || exponent < -kMaxExactPower || exponent > kMaxExactPower)
        return false;
    double result = static_cast<double>(mantissa);
    if (exponent < 0) {
        result /= kExactPowersOfTen[-exponent];
    } else {
        result *= kExactPowersOfTen[exponent];
    }
    value = negative ? -result : result;
    return true;
}

std::string_view withoutPlus(std::string_view text) {
    // from_chars refuses a leading '+', which some writers put before exponents and values.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

}  // namespace

std::string_view trimBlanks(std::string_view text) {
    return trimmed(text);
}

std::optional<double> toDouble(const Tag& tag) {
    const std::string_view text = withoutPlus(trimmed(tag.value));
    double value = 0;
    if (parsePlainDecimal(text, value)) return value;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size()) return {};
    // "nan" and "inf" parse, but no writer produces them and they would poison geometry.
    if (!std::isfinite(value)) return {};
    return value;
}

std::optional<std::int64_t> toInt(const Tag& tag) {
    const std::string_view text = withoutPlus(trimmed(tag.value));
    std::int64_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size()) return {};
    std::int64_t low = std::numeric_limits<std::int64_t>::min();
    std::int64_t high = std::numeric_limits<std::int64_t>::max();
    switch (valueTypeOf(tag.code)) {
        case ValueType::Int16:
            low = std::numeric_limits<std::int16_t>::min();
            high = std::numeric_limits<std::int16_t>::max();
            break;
        case ValueType::Int32:
            low = std::numeric_limits<std::int32_t>::min();
            high = std::numeric_limits<std::int32_t>::max();
            break;
        case ValueType::Bool:
            low = 0;
            high = 255;
            break;
        default:
            break;
    }
    if (value < low || value > high) return {};
    return value;
}

std::optional<std::uint64_t> toHandle(const Tag& tag) {
    const std::string_view text = trimmed(tag.value);
    if (text.empty() || text.size() > 16) return {};
    std::uint64_t value = 0;
    for (const char c : text) {
        const int digit = hexDigit(c);
        if (digit < 0) return {};
        value = value << 4 | static_cast<std::uint64_t>(digit);
    }
    return value;
}

std::optional<std::string> toBinary(const Tag& tag) {
    const std::string_view text = trimmed(tag.value);
    if (text.size() % 2 != 0) return {};
    std::string bytes(text.size() / 2, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int high = hexDigit(text[2 * i]);
        const int low = hexDigit(text[2 * i + 1]);
        if (high < 0 || low < 0) return {};
        bytes[i] = static_cast<char>(high << 4 | low);
    }
    return bytes;
}

}  // namespace cad::db::dxf
