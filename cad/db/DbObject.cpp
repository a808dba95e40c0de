// DbObject: identity through the slot, open state, reactors, erase.
#include "cad/db/DbObject.h"

#include <algorithm>

#include "cad/db/Database.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {

const DbObject::Extras DbObject::kNoExtras;

DbObject::~DbObject() = default;

DbObject::DbObject(const DbObject& other)
    : owner_(other.owner_),
      extensionDictionary_(other.extensionDictionary_),
      extras_(other.extras_ ? std::make_unique<Extras>(*other.extras_) : nullptr) {}

DbObject::Extras& DbObject::extras() {
    if (!extras_) extras_ = std::make_unique<Extras>();
    return *extras_;
}

Handle DbObject::handle() const { return slot_ ? slot_->handle : Handle{}; }

Database* DbObject::database() const { return slot_ ? slot_->database : nullptr; }

ErrorStatus DbObject::setOwnerId(ObjectId owner) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    owner_ = owner;
    return ErrorStatus::eOk;
}

bool DbObject::isErased() const { return slot_ != nullptr && slot_->erased; }

ErrorStatus DbObject::erase(bool erasing) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (slot_ == nullptr) return ErrorStatus::eNotInDatabase;
    if (slot_->erased == erasing) return erasing ? ErrorStatus::eWasErased : ErrorStatus::eOk;
    UndoRecorder& undo = slot_->database->undoRecorder();
    if (undo.isRecording()) undo.willErase(*slot_);
    slot_->erased = erasing;
    // What this object owns goes with it; the owned objects are closed, so their slots can be
    // marked directly without opening each.
    std::vector<ObjectId> owned;
    ownedObjects(owned);
    while (!owned.empty()) {
        ObjectSlot* slot = owned.back().slot();
        owned.pop_back();
        if (slot == nullptr || !slot->object || slot->erased == erasing) continue;
        if (undo.isRecording()) undo.willErase(*slot);
        slot->erased = erasing;
        slot->object->ownedObjects(owned);
    }
    return ErrorStatus::eOk;
}

bool DbObject::isReadEnabled() const {
    return slot_ == nullptr || slot_->readers > 0 || slot_->writer;
}

bool DbObject::isWriteEnabled() const { return slot_ == nullptr || slot_->writer; }

void DbObject::addPersistentReactor(ObjectId id) {
    const std::vector<ObjectId>& reactors = persistentReactors();
    if (std::find(reactors.begin(), reactors.end(), id) != reactors.end()) return;
    willChange();
    extras().reactors.push_back(id);
}

void DbObject::removePersistentReactor(ObjectId id) {
    const std::vector<ObjectId>& reactors = persistentReactors();
    if (std::find(reactors.begin(), reactors.end(), id) == reactors.end()) return;
    willChange();
    std::erase(extras_->reactors, id);
}

void DbObject::willChange() {
    // A group's members get their back-links without being opened.
    if (slot_ == nullptr || slot_->database == nullptr) return;
    UndoRecorder& undo = slot_->database->undoRecorder();
    if (undo.isRecording()) undo.willChange(*slot_);
}

void DbObject::ownedObjects(std::vector<ObjectId>&) const {}

void DbObject::addedToDatabase() {}

ErrorStatus DbObject::checkWritable() const {
    return isWriteEnabled() ? ErrorStatus::eOk : ErrorStatus::eWasNotOpenedForWrite;
}

}  // namespace cad::db
