// The sections of a DXF file and the structures inside them, as runs of its tags: what the
// structure loader hands to the database stage. A run says where its tags stand, not what they
// are: a large file's tags are read again, one structure at a time, when they are needed, so
// they are never all held at once.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Handle.h"
#include "cad/db/dxf/Tag.h"

namespace cad::db::dxf {

using TagSpan = std::span<const Tag>;

struct TagRun {
    // Where its first tag starts: the byte offset in a text file; for tags already held in
    // a vector (binary files), that tag's index.
    std::uint32_t start = 0;
    std::uint32_t line = 0;   // the line at `start`, in a text file
    std::uint32_t count = 0;  // its tags
    Handle handle;            // the handle the structure gives itself; null when it gives none
};

struct Section {
    std::string name;  // "HEADER", "BLOCKS", ... or whatever an unknown section is called
    // One run per structure, each from its code-0 tag up to the next one: TABLE, a table
    // entry, ENDTAB, BLOCK, an entity, ENDBLK, SEQEND, an object, a CLASS ...
    std::vector<TagRun> items;
    std::uint32_t line = 0;  // where its 0/SECTION stands
};

// A HEADER variable: the tags after "9 $NAME" up to the next 9 or the end of the section.
struct HeaderVariable {
    std::string_view name;  // with its '$'
    TagSpan tags;
};

struct DxfStructure {
    DxfStructure() = default;
    // The variables view into headerTags, so a structure is moved, never copied.
    DxfStructure(DxfStructure&&) = default;
    DxfStructure& operator=(DxfStructure&&) = default;
    DxfStructure(const DxfStructure&) = delete;
    DxfStructure& operator=(const DxfStructure&) = delete;

    std::vector<Section> sections;  // in file order
    std::vector<HeaderVariable> header;
    // The HEADER's tags, held for good: the header is small and read more than once.
    std::vector<Tag> headerTags;
    // $ACADVER and $DWGCODEPAGE as written, or what an R12 writer meant by leaving them out.
    std::string_view acadVersion = "AC1009";
    std::string_view codePageName = "ANSI_1252";

    // The first section or variable of that name, or nullptr.
    const Section* section(std::string_view name) const;
    const HeaderVariable* variable(std::string_view name) const;
};

}  // namespace cad::db::dxf
