// $ACADVER names of the DXF versions.
#include "cad/db/DxfVersion.h"

#include <charconv>

namespace cad::db {

std::string_view acadVer(DxfVersion version) {
    switch (version) {
        case DxfVersion::R12: return "AC1009";
        case DxfVersion::R13: return "AC1012";
        case DxfVersion::R14: return "AC1014";
        case DxfVersion::R2000: return "AC1015";
        case DxfVersion::R2004: return "AC1018";
        case DxfVersion::R2007: return "AC1021";
        case DxfVersion::R2010: return "AC1024";
        case DxfVersion::R2013: return "AC1027";
        case DxfVersion::R2018: return "AC1032";
    }
    return "AC1015";
}

std::optional<DxfVersion> dxfVersionFromAcadVer(std::string_view acadver) {
    while (!acadver.empty() && (acadver.back() == ' ' || acadver.back() == '\r'))
        acadver.remove_suffix(1);
    while (!acadver.empty() && acadver.front() == ' ') acadver.remove_prefix(1);
    if (acadver.size() != 6 || acadver.substr(0, 2) != "AC") return std::nullopt;
    int number = 0;
    auto [ptr, ec] = std::from_chars(acadver.data() + 2, acadver.data() + 6, number);
    if (ec != std::errc{} || ptr != acadver.data() + 6) return std::nullopt;
    constexpr DxfVersion known[] = {DxfVersion::R2018, DxfVersion::R2013, DxfVersion::R2010,
                                    DxfVersion::R2007, DxfVersion::R2004, DxfVersion::R2000,
                                    DxfVersion::R14,   DxfVersion::R13};
    for (DxfVersion v : known) {
        if (number >= static_cast<int>(v)) return v;
    }
    if (number >= 1006) return DxfVersion::R12;
    return std::nullopt;
}

}  // namespace cad::db
