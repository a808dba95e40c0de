// A dictionary: named entries that own other objects (extended records, nested dictionaries,
// groups, layouts). The drawing's named-objects dictionary is the root of all of them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/DbObject.h"

namespace cad::db {

class Dictionary : public DbObject {
public:
    struct Entry {
        std::string key;
        ObjectId id;
    };

    Dictionary() = default;

    std::string_view dxfName() const override { return "DICTIONARY"; }
    std::string_view className() const override { return "AcDbDictionary"; }

    // Keys are compared as symbol names are (NameCompare.h): "Adv data list" and
    // "ADV DATA LIST" are the same key. An entry whose object was erased counts as absent.
    std::size_t numEntries() const;
    ErrorStatus getAt(std::string_view key, ObjectId& id) const;  // eKeyNotFound
    bool has(std::string_view key) const;
    bool has(ObjectId id) const;
    ErrorStatus nameAt(ObjectId id, std::string& key) const;  // eKeyNotFound

    // Adds `object` to the database, owned by this dictionary, under `key`. As in the host,
    // an entry that holds the key already is replaced and its object erased. eInvalidKey for
    // an empty key; the dictionary must be open for write and in a database.
    ErrorStatus setAt(std::string_view key, std::unique_ptr<DbObject> object, ObjectId& newId);
    // The same for an object already in this database; it must be closed, as it gets this
    // dictionary as its owner.
    ErrorStatus setAt(std::string_view key, ObjectId id);

    // The entry goes; its object stays in the database, no longer owned (the caller erases it
    // or hands it to another owner).
    ErrorStatus remove(std::string_view key);
    ErrorStatus remove(std::string_view key, ObjectId& removed);
    ErrorStatus remove(ObjectId id);
    // Re-keys an entry; eDuplicateKey when `newKey` names another entry.
    ErrorStatus setName(std::string_view oldKey, std::string_view newKey);

    // The live entries in key order.
    std::vector<Entry> entries() const;

    // Hard owner (280): entries are written as hard-owner references (360), so the objects
    // they name cannot be purged while the dictionary lives.
    bool isTreatElementsAsHard() const { return hardOwner_; }
    ErrorStatus setTreatElementsAsHard(bool hard);
    // What cloning does with an entry whose key the target has already (281).
    std::int16_t mergeStyle() const { return mergeStyle_; }
    ErrorStatus setMergeStyle(std::int16_t style);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;
    void ownedObjects(std::vector<ObjectId>& owned) const override;

private:
    Dictionary(const Dictionary&) = default;

    // The position of the live entry for `key`, or entries_.size().
    std::size_t find(std::string_view key) const;
    // Where `key` sorts in entries_.
    std::size_t lowerBound(std::string_view key) const;
    // After reading: entries in key order, later duplicates of a key dropped.
    void sortEntries();

    std::vector<Entry> entries_;  // sorted by key (NameCompare), erased ones included
    bool hardOwner_ = false;
    std::int16_t mergeStyle_ = 1;  // keep the existing entry
};

}  // namespace cad::db
