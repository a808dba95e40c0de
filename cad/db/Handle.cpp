// Handle text conversions.
#include "cad/db/Handle.h"

#include <charconv>

namespace cad::db {

std::string Handle::toHex() const {
    char buffer[17];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, 16);
    std::string text(buffer, end);
    for (char& c : text) {
        if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::optional<Handle> Handle::fromHex(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    if (text.empty() || text.size() > 16) return std::nullopt;
    std::uint64_t value = 0;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (ec != std::errc{} || ptr != text.data() + text.size()) return std::nullopt;
    return Handle{value};
}

}  // namespace cad::db
