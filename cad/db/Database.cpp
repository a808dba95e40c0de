// The object store of a database: slots by handle, adding objects, the open/close rules
// (many readers or one writer; erased objects only when asked for) and undo.
#include "cad/db/Database.h"

#include "cad/db/DbObject.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {

namespace {
// The host refuses more readers than this on one object; a loop that forgets to close hits it.
constexpr int kMaxReaders = 256;
}  // namespace

Database::Database(bool buildDefaultDrawing, bool noDocument) : noDocument_(noDocument) {
    if (buildDefaultDrawing) this->buildDefaultDrawing();
}

Database::~Database() {
    // Objects may refer to each other in their destructors' eyes only through ids, so the
    // order does not matter; drop the objects before the slots their ids point at.
    slots_.forEach([](ObjectSlot& slot) { slot.object.reset(); });
}

ErrorStatus Database::addObject(std::unique_ptr<DbObject> object, ObjectId& id, ObjectId ownerId,
                                Handle handle) {
    if (ErrorStatus es = insertObject(std::move(object), id, ownerId, handle);
        es != ErrorStatus::eOk)
        return es;
    id.slot()->object->addedToDatabase();
    return ErrorStatus::eOk;
}

ErrorStatus Database::insertObject(std::unique_ptr<DbObject> object, ObjectId& id,
                                   ObjectId ownerId, Handle handle) {
    if (!object) return ErrorStatus::eNullObjectId;
    if (object->slot_ != nullptr) return ErrorStatus::eInvalidInput;  // already resident
    if (handle.isNull()) {
        while (slots_.find(handseed_) != nullptr) handseed_ = handseed_.next();
        handle = handseed_;
    }
    ObjectSlot* slot = slots_.findOrAdd(handle, this);
    if (slot->object) return ErrorStatus::eDuplicateKey;
    if (handseed_ <= handle) handseed_ = handle.next();
    object->slot_ = slot;
    object->owner_ = ownerId;
    slot->object = std::move(object);
    slot->erased = false;
    if (slots_.undoRecorder().isRecording()) slots_.undoRecorder().added(*slot);
    id = ObjectId(slot);
    return ErrorStatus::eOk;
}

ErrorStatus Database::getObjectId(ObjectId& id, bool createIfNotFound, Handle handle) {
    id = ObjectId::kNull;
    if (handle.isNull()) return ErrorStatus::eNullObjectId;
    if (!createIfNotFound) {
        ObjectSlot* slot = slots_.find(handle);
        if (slot == nullptr) return ErrorStatus::eKeyNotFound;
        id = ObjectId(slot);
        return ErrorStatus::eOk;
    }
    id = ObjectId(slots_.findOrAdd(handle, this));
    if (handseed_ <= handle) handseed_ = handle.next();
    return ErrorStatus::eOk;
}

std::vector<ObjectId> Database::objectIds() const {
    const std::vector<ObjectSlot*>& slots = slots_.inHandleOrder();
    std::vector<ObjectId> ids;
    ids.reserve(slots.size());
    for (ObjectSlot* slot : slots) {
        if (slot->object) ids.emplace_back(slot);
    }
    return ids;
}

ErrorStatus Database::openObject(DbObject*& object, ObjectId id, OpenMode mode, bool openErased) {
    object = nullptr;
    ObjectSlot* slot = id.slot();
    if (slot == nullptr) return ErrorStatus::eNullObjectId;
    if (slot->database != this) return ErrorStatus::eWrongDatabase;
    if (!slot->object) return ErrorStatus::eKeyNotFound;
    if (slot->erased && !openErased) return ErrorStatus::eWasErased;
    if (slot->writer) return ErrorStatus::eWasOpenedForWrite;
    if (mode == OpenMode::ForWrite) {
        if (slot->readers > 0) return ErrorStatus::eWasOpenedForRead;
        // Opening for write is where a change starts, so the state before it is kept here.
        if (slots_.undoRecorder().isRecording()) slots_.undoRecorder().willChange(*slot);
        slot->writer = true;
    } else {
        if (slot->readers >= kMaxReaders) return ErrorStatus::eAtMaxReaders;
        ++slot->readers;
    }
    ++openCount_;
    object = slot->object.get();
    return ErrorStatus::eOk;
}

ErrorStatus Database::closeObject(ObjectId id, OpenMode mode) {
    ObjectSlot* slot = id.slot();
    if (slot == nullptr || slot->database != this) return ErrorStatus::eNullObjectId;
    if (mode == OpenMode::ForWrite) {
        if (!slot->writer) return ErrorStatus::eNotOpenedForRead;
        slot->writer = false;
    } else {
        if (slot->readers == 0) return ErrorStatus::eNotOpenedForRead;
        --slot->readers;
    }
    --openCount_;
    return ErrorStatus::eOk;
}

ErrorStatus Database::undo(std::string& name) {
    // The step puts other objects into the slots; an open one would be left pointing at the
    // object the drawing no longer holds.
    if (openCount_ != 0) return ErrorStatus::eInvalidOpenState;
    return slots_.undoRecorder().undo(name);
}

ErrorStatus Database::redo(std::string& name) {
    if (openCount_ != 0) return ErrorStatus::eInvalidOpenState;
    return slots_.undoRecorder().redo(name);
}

}  // namespace cad::db
