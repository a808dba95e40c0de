// The shared text rules: blank entries and atoi-style numbers.
#include "vantor/ui/TextRules.h"

#include <cstdint>
#include <limits>

namespace vantor {

bool isBlankText(std::string_view text) {
    return text.find_first_not_of(' ') == text.npos;
}

int atoiText(std::string_view text) {
    std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
    if (at == text.npos) return 0;
    bool negative = false;
    if (text[at] == '+' || text[at] == '-') negative = text[at++] == '-';

    constexpr std::int64_t kMax = std::numeric_limits<int>::max();
    constexpr std::int64_t kMin = std::numeric_limits<int>::min();
    std::int64_t value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        value = value * 10 + (text[at] - '0');
        if (value > kMax + 1) break;  // the limit is reached either way; stop before overflow
    }
    if (negative) value = -value;
    if (value > kMax) return static_cast<int>(kMax);
    if (value < kMin) return static_cast<int>(kMin);
    return static_cast<int>(value);
}

}  // namespace vantor
