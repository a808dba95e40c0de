// The persistent handle of a database object: the hexadecimal name it carries in a DXF file.
// A strong type, so a handle cannot be confused with a count, an index or an object id.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cad::db {

struct Handle {
    std::uint64_t value = 0;

    constexpr Handle() = default;
    constexpr explicit Handle(std::uint64_t v) : value(v) {}

    constexpr bool isNull() const { return value == 0; }
    constexpr Handle next() const { return Handle{value + 1}; }
    constexpr auto operator<=>(const Handle&) const = default;

    // Upper-case hexadecimal without leading zeros, as DXF writes it ("1F"); "0" for null.
    std::string toHex() const;
    // Accepts upper or lower case and surrounding blanks; nullopt for anything else or overflow.
    static std::optional<Handle> fromHex(std::string_view text);
};

}  // namespace cad::db

template <>
struct std::hash<cad::db::Handle> {
    std::size_t operator()(const cad::db::Handle& h) const noexcept {
        return std::hash<std::uint64_t>{}(h.value);
    }
};
