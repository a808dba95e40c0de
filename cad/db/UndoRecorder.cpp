// Undo groups: copies taken on first change, and steps taken back and brought again by swapping
// each slot's object and erase mark with the ones kept.
#include "cad/db/UndoRecorder.h"

#include <utility>

#include "cad/db/DbObject.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"

namespace cad::db {

UndoRecorder::UndoRecorder() = default;
UndoRecorder::~UndoRecorder() = default;
UndoRecorder::UndoRecorder(UndoRecorder&&) noexcept = default;
UndoRecorder& UndoRecorder::operator=(UndoRecorder&&) noexcept = default;

void UndoRecorder::startGroup(const std::string& name) {
    if (depth_++ == 0) open_.name = name;
}

void UndoRecorder::endGroup() {
    if (depth_ == 0 || --depth_ > 0) return;
    index_.clear();
    Group group = std::exchange(open_, Group{});
    if (group.changes.empty()) return;
    // A new change makes the steps taken back meaningless: they were taken back from a
    // drawing that no longer is.
    redo_.clear();
    undo_.push_back(std::move(group));
    while (undo_.size() > kMaxGroups) undo_.pop_front();
}

UndoRecorder::Change& UndoRecorder::changeOf(ObjectSlot& slot, bool& made) {
    auto [at, inserted] = index_.try_emplace(&slot, open_.changes.size());
    made = inserted;
    if (inserted) {
        Change& change = open_.changes.emplace_back();
        change.slot = &slot;
        change.erased = slot.erased;
        return change;
    }
    return open_.changes[at->second];
}

void UndoRecorder::willChange(ObjectSlot& slot) {
    if (!slot.object) return;
    bool made = false;
    Change& change = changeOf(slot, made);
    if (change.contentKept) return;
    change.contentKept = true;
    // A table's copy leaves its records out (cloning fills the target's own tables), and a
    // table only ever gains records: the ones a step added are erased when it is taken back,
    // and an erased record is one the table no longer shows. So a table's content is not kept.
    if (dynamic_cast<const SymbolTable*>(slot.object.get()) != nullptr) return;
    change.object = slot.object->clone();
}

void UndoRecorder::willErase(ObjectSlot& slot) {
    if (!slot.object) return;
    bool made = false;
    changeOf(slot, made);
}

void UndoRecorder::added(ObjectSlot& slot) {
    bool made = false;
    Change& change = changeOf(slot, made);
    // Before the group the object did not exist: taking the step back erases it, which leaves
    // the ids that name it valid, and bringing the step again unerases it as it was left.
    change.contentKept = true;
    if (made) change.erased = true;
}

void UndoRecorder::swapState(Change& change) {
    ObjectSlot& slot = *change.slot;
    std::swap(slot.erased, change.erased);
    if (!change.object) return;
    slot.object.swap(change.object);
    slot.object->slot_ = &slot;
    change.object->slot_ = nullptr;
}

std::string UndoRecorder::nextUndoName() const {
    return undo_.empty() ? std::string() : undo_.back().name;
}

std::string UndoRecorder::nextRedoName() const {
    return redo_.empty() ? std::string() : redo_.back().name;
}

ErrorStatus UndoRecorder::undo(std::string& name) {
    if (!open_.changes.empty()) return ErrorStatus::eInvalidOpenState;
    if (undo_.empty()) return ErrorStatus::eNotApplicable;
    Group group = std::move(undo_.back());
    undo_.pop_back();
    for (auto change = group.changes.rbegin(); change != group.changes.rend(); ++change)
        swapState(*change);
    name = group.name;
    redo_.push_back(std::move(group));
    return ErrorStatus::eOk;
}

ErrorStatus UndoRecorder::redo(std::string& name) {
    if (!open_.changes.empty()) return ErrorStatus::eInvalidOpenState;
    if (redo_.empty()) return ErrorStatus::eNotApplicable;
    Group group = std::move(redo_.back());
    redo_.pop_back();
    for (Change& change : group.changes) swapState(change);
    name = group.name;
    undo_.push_back(std::move(group));
    return ErrorStatus::eOk;
}

void UndoRecorder::clear() {
    undo_.clear();
    redo_.clear();
    open_.changes.clear();
    index_.clear();
}

}  // namespace cad::db
