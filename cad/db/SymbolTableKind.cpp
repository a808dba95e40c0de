// Table names of the TABLES section.
#include "cad/db/SymbolTableKind.h"

#include <array>
#include <utility>

#include "cad/db/NameCompare.h"

namespace cad::db {
namespace {

constexpr std::array<std::pair<SymbolTableKind, std::string_view>, 9> kNames{{
    {SymbolTableKind::BlockRecord, "BLOCK_RECORD"},
    {SymbolTableKind::Layer, "LAYER"},
    {SymbolTableKind::Linetype, "LTYPE"},
    {SymbolTableKind::TextStyle, "STYLE"},
    {SymbolTableKind::View, "VIEW"},
    {SymbolTableKind::Ucs, "UCS"},
    {SymbolTableKind::Viewport, "VPORT"},
    {SymbolTableKind::RegApp, "APPID"},
    {SymbolTableKind::DimStyle, "DIMSTYLE"},
}};

}  // namespace

std::string_view tableName(SymbolTableKind kind) {
    for (const auto& [k, name] : kNames) {
        if (k == kind) return name;
    }
    return {};
}

std::optional<SymbolTableKind> symbolTableKindFromName(std::string_view name) {
    for (const auto& [kind, n] : kNames) {
        if (equalNames(n, name)) return kind;
    }
    return std::nullopt;
}

}  // namespace cad::db
