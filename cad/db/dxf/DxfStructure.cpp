// Look-ups in a loaded structure. Files hold a handful of sections and a few hundred header
// variables, so a linear search is all they need.
#include "cad/db/dxf/DxfStructure.h"

namespace cad::db::dxf {

const Section* DxfStructure::section(std::string_view name) const {
    for (const Section& candidate : sections) {
        if (candidate.name == name) return &candidate;
    }
    return nullptr;
}

const HeaderVariable* DxfStructure::variable(std::string_view name) const {
    for (const HeaderVariable& candidate : header) {
        if (candidate.name == name) return &candidate;
    }
    return nullptr;
}

}  // namespace cad::db::dxf
