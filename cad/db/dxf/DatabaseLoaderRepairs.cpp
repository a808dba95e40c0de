// Repairing once everything is read: what the file put where it cannot be, owners that do not
// list their objects, owner cycles, dictionary entries that name nothing.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "cad/db/Dictionary.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/dxf/DatabaseLoader.h"

namespace cad::db::dxf {

// Drops what the file put where it cannot be. Unlike an erase, what goes along is only what
// names the dropped object as its owner: a damaged object's claims on others (a hard-owner
// link to a table, say) are not trusted.
void DatabaseLoader::drop(ObjectId id) {
    std::vector<ObjectId> todo{id};
    std::vector<ObjectId> owned;
    while (!todo.empty()) {
        const ObjectId next = todo.back();
        todo.pop_back();
        ObjectSlot* slot = next.slot();
        if (!next.isValid() || slot->erased) continue;
        // Read objects are closed, so the mark is set directly, as an erase marks what it
        // takes along.
        slot->erased = true;
        owned.clear();
        slot->object->ownedObjects(owned);
        for (const ObjectId child : owned) {
            if (child.isValid() && child.slot()->object->ownerId() == next) todo.push_back(child);
        }
    }
}

// Which object lists each object of OBJECTS as owned (dictionary entries, extension
// dictionaries, raw owner references), for giving a stray object back to its container.
std::unordered_map<const ObjectSlot*, ObjectId> DatabaseLoader::containers() const {
    std::unordered_map<const ObjectSlot*, ObjectId> listedBy;
    for (const ObjectId id : withXdictionary_) {
        const ObjectId xdict = id.slot()->object->extensionDictionary();
        if (!id.isErased() && xdict.isValid()) listedBy.emplace(xdict.slot(), id);
    }
    std::vector<ObjectId> owned;
    for (const ObjectId id : objects_) {
        if (id.isErased()) continue;
        owned.clear();
        id.slot()->object->ownedObjects(owned);
        for (const ObjectId child : owned) listedBy.emplace(child.slot(), id);
    }
    return listedBy;
}

bool DatabaseLoader::lists(ObjectId container, ObjectId child) {
    const DbObject* object = container.slot()->object.get();
    if (object->extensionDictionary() == child) return true;
    std::vector<ObjectId> owned;
    object->ownedObjects(owned);
    return std::find(owned.begin(), owned.end(), child) != owned.end();
}

// An object of OBJECTS whose owner names nothing (or was dropped) goes to the container
// that lists it, or is dropped when none does; one with no owner at all (R13 writers gave
// some only as a reactor) goes to the container that lists it, or stays as it is. One whose
// owner does not list it, while another container does, goes to that container: owners
// decide what is written with what (and what R14 leaves out).
void DatabaseLoader::repairOwners() {
    const auto listedBy = containers();
    for (const ObjectId id : objects_) {
        if (id == ids_.namedObjects || id.isErased()) continue;
        const ObjectId owner = id.slot()->object->ownerId();
        const auto lister = listedBy.find(id.slot());
        const bool listed = lister != listedBy.end();
        if (owner.isLive() && (!listed || lister->second == owner || lists(owner, id))) continue;
        if (owner.isLive() || owner.isNull()) {
            if (!listed) continue;
        }
        // Given to what it owns itself, it would close a cycle that is then cut at it
        // again: it would stay without an owner and be repaired anew at every load.
        if (owner.isNull() && ownsOnTheWayUp(id, lister->second)) continue;
        auto object = open<DbObject>(id, OpenMode::ForWrite);
        if (!object) continue;
        const std::string what =
            std::string(object->dxfName()) + " " + id.handle().toHex() +
            (owner.isNull()    ? ": it has no owner"
             : owner.isLive()  ? ": its owner " + owner.handle().toHex() + " does not list it"
             : owner.isValid() ? ": its owner " + owner.handle().toHex() + " was dropped"
                               : ": its owner " + owner.handle().toHex() + " names no object");
        if (listed) {
            object->setOwnerId(lister->second);
            issue(kIssueDanglingOwner,
                  what + "; the owner is now " + lister->second.handle().toHex(), id.handle());
        } else {
            object.close();
            drop(id);
            issue(kIssueDanglingOwner, what + " and nothing lists it; it was dropped", id.handle());
        }
    }
    cutOwnerCycles();
}

// True when `owner` is among the owners of `object`, all the way up.
bool DatabaseLoader::ownsOnTheWayUp(ObjectId owner, ObjectId object) {
    std::unordered_set<const ObjectSlot*> seen;
    for (ObjectId at = object; at.isValid() && seen.insert(at.slot()).second;
         at = at.slot()->object->ownerId()) {
        if (at == owner) return true;
    }
    return false;
}

void DatabaseLoader::cutOwnerCycles() {
    // 1: on the path being followed, 2: known to end outside any cycle.
    std::unordered_map<const ObjectSlot*, int> state;
    std::vector<ObjectId> path;
    for (const ObjectId start : objects_) {
        path.clear();
        ObjectId current = start;
        while (current.isValid() && state[current.slot()] == 0) {
            state[current.slot()] = 1;
            path.push_back(current);
            current = current.slot()->object->ownerId();
        }
        if (current.isValid() && state[current.slot()] == 1) cutCycleAt(current);
        for (const ObjectId id : path) state[id.slot()] = 2;
    }
}

// The cycle is cut where it closes: the object leaves the dictionary of the cycle that
// lists it and becomes an entry of the named-objects dictionary, under the key it had, so
// it is listed by its owner and reachable from the root.
void DatabaseLoader::cutCycleAt(ObjectId id) {
    const ObjectId previous = id.slot()->object->ownerId();
    std::string key = id.handle().toHex();
    if (auto container = open<Dictionary>(previous, OpenMode::ForWrite)) {
        container->nameAt(id, key);
        container->remove(id);
    }
    if (id != ids_.namedObjects && ids_.namedObjects.isLive()) {
        auto root = open<Dictionary>(ids_.namedObjects, OpenMode::ForWrite);
        while (root && root->has(key)) key += "+";
        if (root) root->setAt(key, id);
    } else if (auto object = open<DbObject>(id, OpenMode::ForWrite)) {
        object->setOwnerId(ObjectId::kNull);
    }
    issue(kIssueOwnerCycle,
          std::string(id.slot()->object->dxfName()) + " " + id.handle().toHex() +
              ": its owners lead back to it; it is now the named-objects dictionary's " +
              inQuotes(key),
          id.handle());
}

void DatabaseLoader::repairDictionaries() {
    for (const ObjectId id : objects_) {
        std::vector<std::string> dangling;
        if (auto dictionary = open<Dictionary>(id, OpenMode::ForRead)) {
            for (const Dictionary::Entry& entry : dictionary->entries()) {
                if (!entry.id.isValid()) dangling.push_back(entry.key);
            }
        }
        if (dangling.empty()) continue;
        auto dictionary = open<Dictionary>(id, OpenMode::ForWrite);
        for (const std::string& key : dangling) {
            dictionary->remove(key);
            issue(kIssueDanglingDictionaryEntry,
                  "dictionary " + id.handle().toHex() + ": entry " + inQuotes(key) +
                      " names no object; it was removed",
                  id.handle());
        }
    }
    for (const ObjectId id : withXdictionary_) {
        DbObject* object = id.slot()->object.get();
        const ObjectId xdict = object->extensionDictionary();
        if (xdict.isNull() || xdict.isValid()) continue;
        object->setExtensionDictionary(ObjectId::kNull);
        issue(kIssueDanglingDictionaryEntry,
              std::string(object->dxfName()) + " " + id.handle().toHex() +
                  ": its extension dictionary names no object; the link was removed",
              id.handle());
    }
}

}  // namespace cad::db::dxf
