// A symbol table: the records of one kind (layers, linetypes, blocks, ...) by name, compared
// without regard to case. The table owns its records and keeps them in the order they were
// added, which is the order they are written in.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "cad/db/DbObject.h"
#include "cad/db/SymbolTableKind.h"

namespace cad::db {

class SymbolTableRecord;

class SymbolTable : public DbObject {
public:
    explicit SymbolTable(SymbolTableKind kind = SymbolTableKind::Layer) : kind_(kind) {}

    std::string_view dxfName() const override { return "TABLE"; }
    std::string_view className() const override;  // "AcDbLayerTable", ...
    SymbolTableKind kind() const { return kind_; }

    // Adds a new record to the database, owned by this table. eDuplicateKey when a live record
    // has the name (viewports excepted: a drawing has one "*Active" record per tiled
    // viewport), eWrongObjectType for a record of another table, eInvalidKey for a name the
    // host refuses. The table must be open for write and in a database.
    ErrorStatus add(std::unique_ptr<SymbolTableRecord> record, ObjectId& id);
    // Lists a record that is in the database already (read from a file, cloned) under this
    // table, which becomes its owner; the same refusals, but any name read is accepted.
    ErrorStatus add(ObjectId recordId);

    // The live record of that name; with getErased an erased one when no live one exists.
    ErrorStatus getAt(std::string_view name, ObjectId& id, bool getErased = false) const;
    bool has(std::string_view name) const;
    bool has(ObjectId id) const;
    // Live records in the order they were added.
    std::vector<ObjectId> recordIds() const;
    const std::vector<ObjectId>& allRecordIds() const { return records_; }

    void dxfFields(DxfFiler& filer) override;
    // A copy without records: records are cloned one by one into the target's own tables.
    std::unique_ptr<DbObject> clone() const override;
    void ownedObjects(std::vector<ObjectId>& owned) const override;

private:
    friend class SymbolTableRecord;

    SymbolTable(const SymbolTable& other) : DbObject(other), kind_(other.kind_) {}

    ErrorStatus checkRecord(const SymbolTableRecord& record, ObjectId self) const;
    // The live (or, failing that, erased) record named `name`, other than `except`.
    ObjectId lookUp(std::string_view name, bool getErased, ObjectId except = {}) const;
    void insertIntoIndex(std::uint32_t position) const;
    void ensureIndex() const;
    // A record was renamed: the name index is rebuilt at the next look-up.
    void nameChanged() const { indexValid_ = false; }

    SymbolTableKind kind_;
    std::vector<ObjectId> records_;  // in the order added, erased ones included
    // Positions in records_ sorted by record name. The names live in the records, so a rename
    // marks the index stale and the next look-up rebuilds it.
    mutable std::vector<std::uint32_t> byName_;
    mutable bool indexValid_ = true;
};

}  // namespace cad::db
