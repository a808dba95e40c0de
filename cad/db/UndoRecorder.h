// The undo history of one database's objects: while a group is open, the state each object had
// before its first change in the group and the objects the group added; closed groups are
// taken back (undo) and brought again (redo) one at a time.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "cad/sys/ErrorStatus.h"

namespace cad::db {

class DbObject;
struct ObjectSlot;

class UndoRecorder {
public:
    // Older groups are let go beyond this many; a group holds one copy per object it changed,
    // so the history stays a small part of the drawing whatever the commands did.
    static constexpr std::size_t kMaxGroups = 100;

    UndoRecorder();
    ~UndoRecorder();
    UndoRecorder(const UndoRecorder&) = delete;
    UndoRecorder& operator=(const UndoRecorder&) = delete;
    // The history goes with the slots it names (ObjectStore moves it along with them).
    UndoRecorder(UndoRecorder&&) noexcept;
    UndoRecorder& operator=(UndoRecorder&&) noexcept;

    // Groups nest: only the outermost one is a step, named by its start. A step is kept only
    // when something changed in it, and then the redo history goes. An end without a start
    // (the content was replaced by a read while the group was open) does nothing.
    void startGroup(const std::string& name);
    void endGroup();
    bool isRecording() const { return depth_ > 0; }

    // Hooks of the database, called only while recording. willChange: the object in `slot` is
    // about to be changed (opened for write, its reactors edited); its state is copied the
    // first time in the group. willErase: only the erase mark is about to change (an owner's
    // erase reaching what it owns). added: the slot has just received a new object.
    void willChange(ObjectSlot& slot);
    void willErase(ObjectSlot& slot);
    void added(ObjectSlot& slot);

    std::size_t undoCount() const { return undo_.size(); }
    std::size_t redoCount() const { return redo_.size(); }
    // The name of the step undo (redo) would take back (bring again); empty when none.
    std::string nextUndoName() const;
    std::string nextRedoName() const;

    // Takes back the last step, names it in `name`, and keeps it for redo. eNotApplicable when
    // there is none; eInvalidOpenState when the open group has changes of its own (they would
    // be mixed with the step's). The caller makes sure that no object is open: each changed
    // object's slot gets back the object it had.
    ErrorStatus undo(std::string& name);
    ErrorStatus redo(std::string& name);
    // Forgets every step and what the open group holds so far; an open group records on.
    void clear();

private:
    // One object's part of a step. Undo and redo both swap the slot's state with the one kept
    // here, so a step taken back holds what it took back, ready to be brought again.
    struct Change {
        ObjectSlot* slot = nullptr;
        std::unique_ptr<DbObject> object;  // the other state; null when the content is the same
        bool erased = false;               // the other state's erase mark
        bool contentKept = false;  // object holds the content (or needs none: added, a table)
    };
    struct Group {
        std::string name;
        std::vector<Change> changes;
    };

    Change& changeOf(ObjectSlot& slot, bool& made);
    static void swapState(Change& change);

    std::deque<Group> undo_;
    std::deque<Group> redo_;
    Group open_;
    int depth_ = 0;
    // Where each slot changed in the open group is in open_.changes.
    std::unordered_map<const ObjectSlot*, std::size_t> index_;
};

}  // namespace cad::db
