// What the part data dialog edits: one part record, whether it is a new one or a stored one
// being changed, and the base point of each drawing slot's block as far as it is known.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "cad/ge/Point3d.h"
#include "vantor/store/PartRecord.h"
#include "vantor/store/RequiredFields.h"
#include "vantor/ui/FieldLabels.h"

namespace vantor {

struct CapturedBlock;

struct PartDataEntry {
    enum class Mode { Add, Modify };
    static constexpr std::size_t kSlotCount = PartRecord::kViewCount;

    Mode mode = Mode::Add;
    PartRecord record;  // in modify mode a copy of the stored one, its key and id included
    // The base point of each slot's block, taken when a block is captured into the slot; the
    // record does not keep it, so a slot read from the store has (0, 0, 0) here.
    std::array<cad::ge::Point3d, kSlotCount> basePoints{};

    // "사용자 데이터 추가" or "사용자 데이터 수정".
    static std::string_view title(Mode mode);

    // The slot takes the block's name and base point; its BOM mark point stays.
    void takeBlock(std::size_t slot, const CapturedBlock& block);
    // Name empty, base and BOM mark points (0, 0, 0).
    void clearSlot(std::size_t slot);

    // The first required field left blank, with its message; nullopt when the record may be
    // stored.
    std::optional<MissingField> missingField(const FieldLabels::Texts& labels) const {
        return findMissingField(record.group, record.kname, labels);
    }
};

}  // namespace vantor
