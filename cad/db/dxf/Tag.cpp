// Parsing of tag values. Values are views into the file, so parsing never copies the text.
#include "cad/db/dxf/Tag.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "cad/db/dxf/GroupCode.h"

namespace cad::db::dxf {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::string_view withoutPlus(std::string_view text) {
    // from_chars refuses a leading '+', which some writers put before exponents and values.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

}  // namespace

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<double> toDouble(const Tag& tag) {
    const std::string_view text = withoutPlus(trimBlanks(tag.value));
    double value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size()) return {};
    // "nan" and "inf" parse, but no writer produces them and they would poison geometry.
    if (!std::isfinite(value)) return {};
    return value;
}

std::optional<std::int64_t> toInt(const Tag& tag) {
    const std::string_view text = withoutPlus(trimBlanks(tag.value));
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
    const std::string_view text = trimBlanks(tag.value);
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
    const std::string_view text = trimBlanks(tag.value);
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
