// Deep and wblock cloning: copying objects within a database or from another one, with what
// they own, and (across databases) the records and objects they depend on; then translating
// every reference of the copies through the id map.
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Entity.h"
#include "cad/db/IdMapping.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/RawObject.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

// One clone call. Objects are copied in two phases, as the host does: first every copy is
// made and added to the destination (ids are known before anything refers to them), then
// the references of all copies are pointed at the copies. The map may carry copies of earlier
// calls whose translation was deferred; the first call that translates handles them too.
class Database::Cloner {
public:
    Cloner(Database& orig, Database& dest, IdMapping& map, DeepCloneContext context,
           DuplicateRecordCloning drc)
        : orig_(orig),
          dest_(dest),
          map_(map),
          wblock_(context == DeepCloneContext::WblockObjects),
          drc_(drc),
          madeHere_(map.untranslated_.begin(), map.untranslated_.end()) {
        map_.origDb_ = &orig;
        map_.destDb_ = &dest;
        map_.context_ = context;
        map_.drc_ = drc;
    }

    ErrorStatus run(const std::vector<ObjectId>& ids, ObjectId ownerId, bool deferTranslation);

private:
    // A source object's copy, detached from any database, and what it brings along.
    struct Copy {
        std::unique_ptr<DbObject> object;
        std::vector<ObjectId> owned;     // copied with it, owned by the copy
        std::vector<ObjectId> followed;  // across databases: hard pointers and symbols
        std::string key;                 // its record name, or its key in its dictionary
    };

    ErrorStatus copyOf(ObjectId source, Copy& copy);
    ErrorStatus cloneObject(ObjectId source, ObjectId destOwner, bool primary);
    ErrorStatus follow(ObjectId source);
    // Puts a copy under a container of the destination that was not copied in this call
    // (the clone call's owner, a table, a dictionary): through the container's own list, and
    // by name where the container holds names. `kept` is set when an existing object stands
    // in for the source instead.
    ErrorStatus placeInExisting(Copy& copy, ObjectId container, ObjectId& id, bool& kept);
    ErrorStatus placeInTable(Copy& copy, SymbolTable& table, ObjectId& id, bool& kept);
    ErrorStatus placeInDictionary(Copy& copy, Dictionary& dictionary, ObjectId& id, bool& kept);
    // Overwrites an existing record's data with the copy; the record keeps its id and handle.
    ErrorStatus replace(Copy& copy, ObjectId existing);
    std::string freeAnonymousName(const SymbolTable& table, const std::string& name);
    std::string freeDictionaryKey(const Dictionary& dictionary, const std::string& key);
    void premap(ObjectId source, ObjectId dest);
    bool isMapped(ObjectId source) const;
    ErrorStatus translate();

    Database& orig_;
    Database& dest_;
    IdMapping& map_;
    const bool wblock_;
    const DuplicateRecordCloning drc_;
    // Destination objects whose data is an untranslated copy: what they list (entries,
    // entities) is translated with them, so children are only added under them.
    std::unordered_set<ObjectId> madeHere_;
    std::unordered_map<std::string, int> nextAnonymous_;
};

namespace {

bool isOwnership(ReferenceWalker::Kind kind) {
    return kind == ReferenceWalker::Kind::SoftOwner || kind == ReferenceWalker::Kind::HardOwner;
}

// Across databases the host carries along what an object cannot do without: what it points
// at hard and the symbols it names. Soft pointers (a group an entity belongs to, an owner's
// back pointer) are translated only if their target is copied anyway.
bool isFollowed(ReferenceWalker::Kind kind) {
    return kind == ReferenceWalker::Kind::HardPointer || kind == ReferenceWalker::Kind::Symbol;
}

// Containers the cloner places copies in through their own lists.
bool canAdopt(ObjectId container) {
    auto object = open<DbObject>(container, OpenMode::ForRead);
    return object && (dynamic_cast<const SymbolTable*>(object.get()) != nullptr ||
                      dynamic_cast<const Dictionary*>(object.get()) != nullptr ||
                      dynamic_cast<const BlockTableRecord*>(object.get()) != nullptr);
}

// The entries of a dictionary the engine keeps raw: each a key (3) followed by the handle
// of what it names (350 or 360).
std::vector<std::pair<std::string, Handle>> rawDictionaryEntries(ObjectId dictionary) {
    std::vector<std::pair<std::string, Handle>> entries;
    auto raw = open<RawObject>(dictionary, OpenMode::ForRead);
    if (!raw) return entries;
    const std::string* key = nullptr;
    for (const RawTag& tag : raw->tags()) {
        if (tag.code == 3) {
            key = &tag.value;
        } else if (key != nullptr && (tag.code == 350 || tag.code == 360)) {
            if (auto handle = Handle::fromHex(tag.value)) entries.emplace_back(*key, *handle);
            key = nullptr;
        }
    }
    return entries;
}

std::string rawDictionaryKey(ObjectId dictionary, ObjectId entry) {
    for (const auto& [key, handle] : rawDictionaryEntries(dictionary)) {
        if (handle == entry.handle()) return key;
    }
    return {};
}

ObjectId rawDictionaryEntry(ObjectId dictionary, const std::string& key) {
    ObjectId id;
    if (key.empty()) return id;
    for (const auto& [name, handle] : rawDictionaryEntries(dictionary)) {
        if (equalNames(name, key)) {
            dictionary.database()->getObjectId(id, false, handle);
            break;
        }
    }
    return id.isLive() ? id : ObjectId::kNull;
}

void appendUnique(std::vector<ObjectId>& ids, std::unordered_set<ObjectId>& seen, ObjectId id) {
    if (!id.isNull() && seen.insert(id).second) ids.push_back(id);
}

}  // namespace

ErrorStatus Database::Cloner::run(const std::vector<ObjectId>& ids, ObjectId ownerId,
                                  bool deferTranslation) {
    if (!ids.empty()) {
        if (ownerId.isNull()) return ErrorStatus::eNullObjectId;
        if (ownerId.database() != &dest_) return ErrorStatus::eWrongDatabase;
        if (!ownerId.isValid()) return ErrorStatus::eKeyNotFound;
    }
    for (ObjectId id : ids) {
        if (id.isNull()) return ErrorStatus::eNullObjectId;
        if (id.database() != &orig_) return ErrorStatus::eWrongDatabase;
    }

    // The primaries' owner stands for the clone call's owner, so a copy that points at the
    // block it came from points at the block it went to.
    for (ObjectId id : ids) {
        if (id.slot()->object) premap(id.slot()->object->ownerId(), ownerId);
    }
    if (wblock_) {
        // The containers every drawing has are the destination's own, never copies.
        const WellKnownIds& from = orig_.wellKnownIds();
        const WellKnownIds& to = dest_.wellKnownIds();
        premap(from.blockTable, to.blockTable);
        premap(from.layerTable, to.layerTable);
        premap(from.linetypeTable, to.linetypeTable);
        premap(from.textStyleTable, to.textStyleTable);
        premap(from.viewTable, to.viewTable);
        premap(from.ucsTable, to.ucsTable);
        premap(from.viewportTable, to.viewportTable);
        premap(from.regAppTable, to.regAppTable);
        premap(from.dimStyleTable, to.dimStyleTable);
        premap(from.namedObjects, to.namedObjects);
        premap(from.modelSpace, to.modelSpace);
        premap(from.paperSpace, to.paperSpace);
    }

    for (ObjectId id : ids) {
        if (ErrorStatus es = cloneObject(id, ownerId, true); es != ErrorStatus::eOk) return es;
    }
    return deferTranslation ? ErrorStatus::eOk : translate();
}

void Database::Cloner::premap(ObjectId source, ObjectId dest) {
    if (source.isNull() || dest.isNull() || isMapped(source)) return;
    map_.assign(IdPair(source, dest, false));
}

bool Database::Cloner::isMapped(ObjectId source) const {
    IdPair pair(source, ObjectId::kNull, false);
    return map_.compute(pair);
}

ErrorStatus Database::Cloner::copyOf(ObjectId source, Copy& copy) {
    ObjectId sourceOwner;
    std::vector<ObjectId> owned;
    {
        auto object = open<DbObject>(source, OpenMode::ForRead);
        if (!object) return object.openStatus();
        copy.object = object->clone();
        if (!copy.object) return ErrorStatus::eNotApplicable;
        object->ownedObjects(owned);
        owned.push_back(object->extensionDictionary());
        if (auto* record = dynamic_cast<const SymbolTableRecord*>(object.get()))
            copy.key = record->name();
        sourceOwner = object->ownerId();
    }
    if (copy.key.empty() && !sourceOwner.isNull()) {
        auto dictionary = open<Dictionary>(sourceOwner, OpenMode::ForRead);
        if (dictionary) dictionary->nameAt(source, copy.key);
    }
    // The copy belongs nowhere until it is placed; its owner is set then.
    copy.object->setOwnerId(ObjectId::kNull);

    std::unordered_set<ObjectId> seenOwned;
    std::unordered_set<ObjectId> seenFollowed;
    for (ObjectId id : owned) appendUnique(copy.owned, seenOwned, id);
    ReferenceWalker collect(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            if (isOwnership(field.kind)) {
                appendUnique(copy.owned, seenOwned, id);
            } else if (wblock_ && isFollowed(field.kind)) {
                appendUnique(copy.followed, seenFollowed, id);
            }
        },
        &orig_);
    collect.walk(*copy.object);
    return ErrorStatus::eOk;
}

ErrorStatus Database::Cloner::cloneObject(ObjectId source, ObjectId destOwner, bool primary) {
    if (isMapped(source)) return ErrorStatus::eOk;  // copied already, in this call or before
    Copy copy;
    if (ErrorStatus es = copyOf(source, copy); es != ErrorStatus::eOk) {
        // What an owner lists but has erased is simply not copied.
        return es == ErrorStatus::eWasErased && !primary ? ErrorStatus::eOk : es;
    }

    ObjectId id;
    if (madeHere_.count(destOwner) != 0) {
        if (ErrorStatus es = dest_.insertObject(std::move(copy.object), id, destOwner);
            es != ErrorStatus::eOk)
            return es;
    } else {
        bool kept = false;
        if (ErrorStatus es = placeInExisting(copy, destOwner, id, kept); es != ErrorStatus::eOk)
            return es;
        if (kept) {
            map_.assign(IdPair(source, id, false, primary));
            return ErrorStatus::eOk;
        }
    }
    map_.assign(IdPair(source, id, true, primary));
    map_.untranslated_.push_back(id);
    madeHere_.insert(id);

    for (ObjectId child : copy.owned) {
        if (ErrorStatus es = cloneObject(child, id, false); es != ErrorStatus::eOk) return es;
    }
    for (ObjectId target : copy.followed) {
        if (ErrorStatus es = follow(target); es != ErrorStatus::eOk) return es;
    }
    return ErrorStatus::eOk;
}

ErrorStatus Database::Cloner::follow(ObjectId source) {
    // A reference that names nothing, or something already erased, has no counterpart;
    // translation makes it null.
    if (source.database() != &orig_ || !source.isValid() || source.isErased())
        return ErrorStatus::eOk;
    if (isMapped(source)) return ErrorStatus::eOk;
    ObjectId owner = source.slot()->object->ownerId();
    IdPair ownerPair(owner, ObjectId::kNull, false);
    if (!owner.isNull() && !map_.compute(ownerPair)) {
        // The owner comes first: copying it brings the source along as one of its own, or
        // finds the destination's counterpart by name, under which the source is then placed.
        if (ErrorStatus es = follow(owner); es != ErrorStatus::eOk) return es;
        if (isMapped(source)) return ErrorStatus::eOk;
        if (!map_.compute(ownerPair)) return ErrorStatus::eOk;
    }
    const ObjectId destOwner = ownerPair.value();
    if (!destOwner.isNull() && madeHere_.count(destOwner) == 0 && !canAdopt(destOwner)) {
        // The owner's counterpart keeps its own list, which the cloner cannot add to (a
        // dictionary kept raw, such as the plot style names; an object that was kept). Its
        // entry of the same key stands in; failing that, the reference is cut.
        ObjectId existing = rawDictionaryEntry(destOwner, rawDictionaryKey(owner, source));
        if (!existing.isNull()) map_.assign(IdPair(source, existing, false));
        return ErrorStatus::eOk;
    }
    return cloneObject(source, destOwner, false);
}

ErrorStatus Database::Cloner::placeInExisting(Copy& copy, ObjectId container, ObjectId& id,
                                              bool& kept) {
    kept = false;
    if (container.isNull()) return dest_.insertObject(std::move(copy.object), id, container);
    auto owner = open<DbObject>(container, OpenMode::ForWrite);
    if (!owner) return owner.openStatus();
    if (auto* table = dynamic_cast<SymbolTable*>(owner.get())) {
        return placeInTable(copy, *table, id, kept);
    }
    if (auto* dictionary = dynamic_cast<Dictionary*>(owner.get())) {
        return placeInDictionary(copy, *dictionary, id, kept);
    }
    auto* block = dynamic_cast<BlockTableRecord*>(owner.get());
    const bool isEntity = dynamic_cast<const Entity*>(copy.object.get()) != nullptr;
    if (block != nullptr && !isEntity) return ErrorStatus::eWrongObjectType;
    if (ErrorStatus es = dest_.insertObject(std::move(copy.object), id, container);
        es != ErrorStatus::eOk)
        return es;
    return block != nullptr ? block->appendEntity(id) : ErrorStatus::eOk;
}

ErrorStatus Database::Cloner::placeInTable(Copy& copy, SymbolTable& table, ObjectId& id,
                                           bool& kept) {
    auto* record = dynamic_cast<SymbolTableRecord*>(copy.object.get());
    if (record == nullptr) return ErrorStatus::eWrongObjectType;
    auto* block = dynamic_cast<BlockTableRecord*>(record);
    if (block != nullptr && block->isLayout()) {
        // A layout's block other than the two main ones: the destination's paper space
        // stands in, as a layout cannot come along without its layout object.
        id = dest_.wellKnownIds().paperSpace;
        kept = true;
        return ErrorStatus::eOk;
    }
    if (block != nullptr && block->isAnonymous() && wblock_) {
        // Anonymous names are numbered per drawing: "*U3" here is unrelated to "*U3" there.
        if (ErrorStatus es = record->setName(freeAnonymousName(table, record->name()));
            es != ErrorStatus::eOk)
            return es;
    } else if (ObjectId existing; table.getAt(record->name(), existing) == ErrorStatus::eOk) {
        if (!wblock_) return ErrorStatus::eDuplicateKey;
        id = existing;
        const bool keepTarget = drc_ == DuplicateRecordCloning::Ignore || &orig_ == &dest_ ||
                                existing == dest_.wellKnownIds().modelSpace ||
                                existing == dest_.wellKnownIds().paperSpace;
        if (keepTarget) {
            kept = true;
            return ErrorStatus::eOk;
        }
        return replace(copy, existing);
    }
    if (ErrorStatus es = dest_.insertObject(std::move(copy.object), id, table.objectId());
        es != ErrorStatus::eOk)
        return es;
    return table.add(id);
}

ErrorStatus Database::Cloner::placeInDictionary(Copy& copy, Dictionary& dictionary, ObjectId& id,
                                                bool& kept) {
    std::string key = copy.key;
    if (ObjectId existing; !key.empty() && dictionary.getAt(key, existing) == ErrorStatus::eOk) {
        if (wblock_) {
            // The destination's entry stands: replacing would drop what it holds (a plot
            // style dictionary, another application's data), so the duplicate-record rule is
            // for symbol table records only. A dictionary carried along thus merges into
            // the destination's of the same key.
            id = existing;
            kept = true;
            return ErrorStatus::eOk;
        }
        key.clear();
    }
    if (key.empty()) key = freeDictionaryKey(dictionary, "*A");
    if (ErrorStatus es = dest_.insertObject(std::move(copy.object), id, dictionary.objectId());
        es != ErrorStatus::eOk)
        return es;
    return dictionary.setAt(key, id);
}

ErrorStatus Database::Cloner::replace(Copy& copy, ObjectId existing) {
    ObjectSlot* slot = existing.slot();
    if (slot->writer) return ErrorStatus::eWasOpenedForWrite;
    if (slot->readers > 0) return ErrorStatus::eWasOpenedForRead;
    std::vector<ObjectId> formerlyOwned;
    slot->object->ownedObjects(formerlyOwned);
    formerlyOwned.push_back(slot->object->extensionDictionary());

    // The record is replaced without being opened: undo must keep what it was first.
    if (dest_.isUndoRecording()) dest_.undoRecorder().willChange(*slot);
    copy.object->owner_ = slot->object->ownerId();
    copy.object->slot_ = slot;
    slot->object = std::move(copy.object);

    // What the old record owned goes with its data; the copy brings its own.
    for (ObjectId id : formerlyOwned) {
        if (id.isNull() || !id.isValid() || id.isErased()) continue;
        auto object = open<DbObject>(id, OpenMode::ForWrite);
        if (!object) return object.openStatus();
        if (ErrorStatus es = object->erase(); es != ErrorStatus::eOk) return es;
    }
    return ErrorStatus::eOk;
}

std::string Database::Cloner::freeAnonymousName(const SymbolTable& table, const std::string& name) {
    // "*U12" keeps its letter: the host tells dimension blocks (*D) from others (*U) by it.
    std::string prefix = name.substr(0, name.find_first_of("0123456789"));
    if (prefix.size() < 2) prefix = "*U";
    int& next = nextAnonymous_[prefix];
    std::string candidate;
    do {
        candidate = prefix + std::to_string(++next);
    } while (table.has(candidate));
    return candidate;
}

std::string Database::Cloner::freeDictionaryKey(const Dictionary& dictionary,
                                                const std::string& key) {
    int& next = nextAnonymous_[key];
    std::string candidate;
    do {
        candidate = key + std::to_string(++next);
    } while (dictionary.has(candidate));
    return candidate;
}

ErrorStatus Database::Cloner::translate() {
    const bool crossDatabase = &orig_ != &dest_;
    ReferenceWalker translator(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            if (field.kind == ReferenceWalker::Kind::Owner || id.isNull()) return;
            IdPair pair(id, ObjectId::kNull, false);
            if (map_.compute(pair)) {
                id = pair.value();
            } else if (crossDatabase && id.database() != &dest_) {
                if (field.kind == ReferenceWalker::Kind::Arbitrary) {
                    // Kept as it is: the same handle, now read in the destination.
                    const Handle handle = id.handle();
                    dest_.getObjectId(id, true, handle);
                } else {
                    // The host's rule across databases: what was not carried along is cut.
                    id = ObjectId::kNull;
                }
            }
        },
        &orig_);
    std::vector<ObjectId> pending = std::move(map_.untranslated_);
    map_.untranslated_.clear();
    for (ObjectId id : pending) {
        auto object = open<DbObject>(id, OpenMode::ForWrite, true);
        if (!object) return object.openStatus();
        translator.walk(*object);
    }
    return ErrorStatus::eOk;
}

ErrorStatus Database::deepCloneObjects(const std::vector<ObjectId>& ids, ObjectId ownerId,
                                       IdMapping& idMap, bool deferTranslation) {
    if (idMap.destDb() != nullptr && idMap.destDb() != this) return ErrorStatus::eWrongDatabase;
    if (!idMap.empty() && idMap.origDb() != this) return ErrorStatus::eWrongDatabase;
    Cloner cloner(*this, *this, idMap, DeepCloneContext::Objects, DuplicateRecordCloning::Ignore);
    return cloner.run(ids, ownerId, deferTranslation);
}

ErrorStatus Database::wblockCloneObjects(const std::vector<ObjectId>& ids, ObjectId ownerId,
                                         IdMapping& idMap, DuplicateRecordCloning drc,
                                         bool deferTranslation) {
    if (idMap.destDb() != nullptr && idMap.destDb() != this) return ErrorStatus::eWrongDatabase;
    Database* source = idMap.origDb();
    if (!ids.empty()) {
        if (ids.front().isNull()) return ErrorStatus::eNullObjectId;
        if (!idMap.empty() && source != ids.front().database()) return ErrorStatus::eWrongDatabase;
        source = ids.front().database();
    }
    if (source == nullptr) return ErrorStatus::eOk;  // nothing to copy, nothing pending
    Cloner cloner(*source, *this, idMap, DeepCloneContext::WblockObjects, drc);
    return cloner.run(ids, ownerId, deferTranslation);
}

}  // namespace cad::db
