// The sections of a DXF file and the structures inside them, as spans of its tags: what the
// structure loader hands to the database stage.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/dxf/Tag.h"

namespace cad::db::dxf {

using TagSpan = std::span<const Tag>;

struct Section {
    std::string name;  // "HEADER", "BLOCKS", ... or whatever an unknown section is called
    // Every tag between the name and ENDSEC, for sections kept raw (THUMBNAILIMAGE, unknown).
    TagSpan tags;
    // One span per structure, each from its code-0 tag up to the next one: TABLE, a table
    // entry, ENDTAB, BLOCK, an entity, ENDBLK, SEQEND, an object, a CLASS ...
    std::vector<TagSpan> items;
    std::uint32_t line = 0;  // where its 0/SECTION stands
};

// A HEADER variable: the tags after "9 $NAME" up to the next 9 or the end of the section.
struct HeaderVariable {
    std::string_view name;  // with its '$'
    TagSpan tags;
};

struct DxfStructure {
    std::vector<Section> sections;  // in file order
    std::vector<HeaderVariable> header;
    // $ACADVER and $DWGCODEPAGE as written, or what an R12 writer meant by leaving them out.
    std::string_view acadVersion = "AC1009";
    std::string_view codePageName = "ANSI_1252";

    // The first section or variable of that name, or nullptr.
    const Section* section(std::string_view name) const;
    const HeaderVariable* variable(std::string_view name) const;
};

}  // namespace cad::db::dxf
