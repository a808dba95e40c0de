// Dictionaries: entries kept sorted by key in one vector, so look-up is a binary search and
// no entry costs a heap node of its own.
#include "cad/db/Dictionary.h"

#include <algorithm>

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"

namespace cad::db {
namespace {

// Not ObjectId::isLive: an entry naming a handle that no object carries stays listed, so the
// reader and the audit find it and say what they removed.
bool isListed(ObjectId id) {
    return !id.isNull() && !id.isErased();
}

}  // namespace

std::size_t Dictionary::lowerBound(std::string_view key) const {
    auto it = std::lower_bound(
        entries_.begin(), entries_.end(), key,
        [](const Entry& entry, std::string_view k) { return compareNames(entry.key, k) < 0; });
    return static_cast<std::size_t>(it - entries_.begin());
}

std::size_t Dictionary::find(std::string_view key) const {
    // An erased entry may share its key with the live one that replaced it.
    for (std::size_t i = lowerBound(key); i < entries_.size() && equalNames(entries_[i].key, key);
         ++i) {
        if (isListed(entries_[i].id)) return i;
    }
    return entries_.size();
}

std::size_t Dictionary::numEntries() const {
    return static_cast<std::size_t>(std::count_if(entries_.begin(), entries_.end(),
                                                  [](const Entry& e) { return isListed(e.id); }));
}

ErrorStatus Dictionary::getAt(std::string_view key, ObjectId& id) const {
    const std::size_t i = find(key);
    id = i < entries_.size() ? entries_[i].id : ObjectId::kNull;
    return id.isNull() ? ErrorStatus::eKeyNotFound : ErrorStatus::eOk;
}

bool Dictionary::has(std::string_view key) const {
    return find(key) < entries_.size();
}

bool Dictionary::has(ObjectId id) const {
    return isListed(id) && std::any_of(entries_.begin(), entries_.end(),
                                     [id](const Entry& e) { return e.id == id; });
}

ErrorStatus Dictionary::nameAt(ObjectId id, std::string& key) const {
    auto it =
        std::find_if(entries_.begin(), entries_.end(), [id](const Entry& e) { return e.id == id; });
    if (id.isNull() || it == entries_.end() || !isListed(id)) return ErrorStatus::eKeyNotFound;
    key = it->key;
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::setAt(std::string_view key, std::unique_ptr<DbObject> object,
                              ObjectId& newId) {
    newId = ObjectId::kNull;
    if (!object) return ErrorStatus::eNullObjectId;
    if (key.empty()) return ErrorStatus::eInvalidKey;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    ObjectId id;
    if (ErrorStatus es = db->addObject(std::move(object), id, objectId()); es != ErrorStatus::eOk)
        return es;
    if (ErrorStatus es = setAt(key, id); es != ErrorStatus::eOk) return es;
    newId = id;
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::setAt(std::string_view key, ObjectId id) {
    if (key.empty()) return ErrorStatus::eInvalidKey;
    if (id.isNull()) return ErrorStatus::eNullObjectId;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (id.database() != db) return ErrorStatus::eWrongDatabase;
    if (id == objectId()) return ErrorStatus::eSelfReference;
    if (const std::size_t i = find(key); i < entries_.size() && entries_[i].id == id)
        return ErrorStatus::eOk;
    {
        auto entry = open<DbObject>(id, OpenMode::ForWrite);
        if (!entry) return entry.openStatus();
        if (entry->ownerId() != objectId()) entry->setOwnerId(objectId());
    }
    // The host replaces an existing entry; the object it named was owned by this dictionary
    // and so goes with it.
    if (const std::size_t i = find(key); i < entries_.size()) {
        if (auto replaced = open<DbObject>(entries_[i].id, OpenMode::ForWrite)) replaced->erase();
        entries_[i] = Entry{std::string(key), id};
        return ErrorStatus::eOk;
    }
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(lowerBound(key)),
                    Entry{std::string(key), id});
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::remove(std::string_view key) {
    ObjectId removed;
    return remove(key, removed);
}

ErrorStatus Dictionary::remove(std::string_view key, ObjectId& removed) {
    removed = ObjectId::kNull;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const std::size_t i = find(key);
    if (i == entries_.size()) return ErrorStatus::eKeyNotFound;
    removed = entries_[i].id;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::remove(ObjectId id) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    auto it =
        std::find_if(entries_.begin(), entries_.end(), [id](const Entry& e) { return e.id == id; });
    if (id.isNull() || it == entries_.end()) return ErrorStatus::eKeyNotFound;
    entries_.erase(it);
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::setName(std::string_view oldKey, std::string_view newKey) {
    if (newKey.empty()) return ErrorStatus::eInvalidKey;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const std::size_t i = find(oldKey);
    if (i == entries_.size()) return ErrorStatus::eKeyNotFound;
    const std::size_t clash = find(newKey);
    if (clash < entries_.size() && clash != i) return ErrorStatus::eDuplicateKey;
    Entry entry{std::string(newKey), entries_[i].id};
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(lowerBound(entry.key)),
                    std::move(entry));
    return ErrorStatus::eOk;
}

std::vector<Dictionary::Entry> Dictionary::entries() const {
    std::vector<Entry> live;
    live.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        if (isListed(entry.id)) live.push_back(entry);
    }
    return live;
}

ErrorStatus Dictionary::setTreatElementsAsHard(bool hard) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    hardOwner_ = hard;
    return ErrorStatus::eOk;
}

ErrorStatus Dictionary::setMergeStyle(std::int16_t style) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (style < 0 || style > 5) return ErrorStatus::eInvalidInput;
    mergeStyle_ = style;
    return ErrorStatus::eOk;
}

void Dictionary::sortEntries() {
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return compareNames(a.key, b.key) < 0; });
    // A key twice in one file: the first entry wins, as a look-up in the host finds it.
    auto last = std::unique(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return equalNames(a.key, b.key);
    });
    entries_.erase(last, entries_.end());
}

void Dictionary::dxfFields(DxfFiler& filer) {
    filer.subclass("AcDbDictionary");
    std::int16_t hard = hardOwner_ ? 1 : 0;
    if (filer.atLeast(DxfVersion::R2000)) {
        filer.int16(280, hard, 0);
        filer.int16(281, mergeStyle_);
    }
    const int code = hard != 0 ? 360 : 350;
    if (filer.isReading()) {
        hardOwner_ = hard != 0;
        // Other programs do not all match the entry code to the flag; take either.
        filer.records(3, entries_, [&](Entry& entry) {
            filer.string(3, entry.key);
            filer.reference(350, entry.id);
            filer.reference(360, entry.id);
        });
        sortEntries();
        return;
    }
    auto describe = [&](Entry& entry) {
        filer.string(3, entry.key);
        filer.reference(code, entry.id);
    };
    if (filer.isWriting()) {
        std::vector<Entry> live = entries();
        filer.records(3, live, describe);
    } else {
        filer.records(3, entries_, describe);
    }
}

std::unique_ptr<DbObject> Dictionary::clone() const {
    return std::unique_ptr<DbObject>(new Dictionary(*this));
}

void Dictionary::ownedObjects(std::vector<ObjectId>& owned) const {
    for (const Entry& entry : entries_) {
        if (!entry.id.isNull()) owned.push_back(entry.id);
    }
}

}  // namespace cad::db
