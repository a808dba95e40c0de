// The 14 attribute tags of a BOM mark and the rule that fills a block reference's attributes
// from a part record by tag: the marker references of the BOM mark and the part's own
// reference both take their values this way.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "cad/db/ObjectId.h"
#include "cad/sys/ErrorStatus.h"

namespace vantor {

struct PartRecord;

class BomAttributes {
public:
    static constexpr std::size_t kTagCount = 14;
    // The fields' tags at their rows in the field table, and QTY, in the order of the marker's
    // attribute definitions.
    static const std::array<std::string_view, kTagCount>& tags();
    // The text of the attribute tagged `tag`: its record field, "1" for QTY, and the tag itself
    // for a tag that is none of the 14 (compared byte for byte, so "name" is not "NAME").
    static std::string textFor(std::string_view tag, const PartRecord& record);
    // Gives the reference (in a database, not open) one attribute per non-constant attribute
    // definition of its block, placed by the reference's block transform, invisible as the
    // definition. With a record each text comes from textFor; without one (an ordinary block)
    // the definition's default text is kept, as a plain insertion keeps it. Attributes the
    // reference had are erased first, so a marker can be filled again.
    static cad::ErrorStatus fill(cad::db::ObjectId reference, const PartRecord* record);
};

}  // namespace vantor
