// One catalogue entry of a group in memory: six view slots, the general fields and six user
// fields, and its stored form, the chain of 26 typed values read and written by position.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "cad/db/ObjectId.h"
#include "cad/db/ResBuf.h"
#include "cad/ge/Point3d.h"
#include "vantor/ui/PartFields.h"

namespace vantor {

struct PartRecord {
    static constexpr std::size_t kViewCount = PartFields::kViewCount;  // front .. drawing 3
    static constexpr std::size_t kTextCount = PartFields::kTextCount;  // group .. User6
    static constexpr std::size_t kChainLength = PartFields::kChainLength;

    bool loaded = false;  // read from the store
    cad::db::ObjectId recordId;
    std::string key;  // the record's key in its group, "QRB_VANTORDATA-<n>"

    std::array<std::string, kViewCount> viewBlocks;  // empty for a slot without a block
    // The BOM mark's offset from each view block's insertion point.
    std::array<cad::ge::Point3d, kViewCount> viewPoints{};

    std::string group;
    std::string kname;
    std::string ename;
    std::string spec;
    std::string material;
    std::string weight;  // as typed: no number is parsed
    std::string price;   // as typed
    std::string remark;
    std::array<std::string, 6> user;

    // The text of a field: a view's is its block name.
    const std::string& text(PartFields::Id field) const;
    std::string& text(PartFields::Id field);
    // The BOM-mark point of a view.
    const cad::ge::Point3d& viewPoint(PartFields::Id view) const;
    // The 14 texts in stored order: the group, then KName to User6.
    const std::string& text(std::size_t index) const;
    std::string& text(std::size_t index);

    // The 26 values at the positions and with the codes of the field table: six pairs of block
    // name and point, then the 14 texts. Every position is present, empty slots included.
    cad::db::ResBufChain toChain() const;
    // Overwrites `chain` position by position, keeping the codes and whatever follows the 26
    // values; a chain too short or with a value of the wrong type at a position is replaced
    // by a fresh one, as there is no shape left to keep.
    void writeInto(cad::db::ResBufChain& chain) const;

    // The fields by position. A chain shorter than 26 values, or with a value of the wrong
    // type at a position, answers nullopt and says why in `problem`; values after the 26th
    // are ignored. The key, id and loaded flag are left for the caller.
    static std::optional<PartRecord> fromChain(const cad::db::ResBufChain& chain,
                                               std::string* problem = nullptr);
    // The specification of a stored chain, or an empty text when it has none at its place.
    static std::string specOf(const cad::db::ResBufChain& chain);
};

}  // namespace vantor
