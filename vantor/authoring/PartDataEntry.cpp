// The part data dialog's working copy.
#include "vantor/authoring/PartDataEntry.h"

#include "vantor/authoring/BlockCapture.h"

namespace vantor {

std::string_view PartDataEntry::title(Mode mode) {
    return mode == Mode::Add ? "사용자 데이터 추가" : "사용자 데이터 수정";
}

void PartDataEntry::takeBlock(std::size_t slot, const CapturedBlock& block) {
    record.viewBlocks.at(slot) = block.name;
    basePoints.at(slot) = block.basePoint;
}

void PartDataEntry::clearSlot(std::size_t slot) {
    record.viewBlocks.at(slot).clear();
    record.viewPoints.at(slot) = {};
    basePoints.at(slot) = {};
}

}  // namespace vantor
