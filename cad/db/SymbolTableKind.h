// The nine symbol tables of a drawing and the names the TABLE records of a DXF file give them.
#pragma once

#include <optional>
#include <string_view>

namespace cad::db {

enum class SymbolTableKind {
    BlockRecord,
    Layer,
    Linetype,
    TextStyle,
    View,
    Ucs,
    Viewport,
    RegApp,
    DimStyle,
};

// "BLOCK_RECORD", "LAYER", "LTYPE", "STYLE", "VIEW", "UCS", "VPORT", "APPID", "DIMSTYLE".
std::string_view tableName(SymbolTableKind kind);
// The kind a TABLE's name (2) gives; case matters not, as some writers use lower case.
std::optional<SymbolTableKind> symbolTableKindFromName(std::string_view name);

}  // namespace cad::db
