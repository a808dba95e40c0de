// The base of the records of the symbol tables (layers, linetypes, text styles, blocks, ...):
// a name unique in its table, compared without regard to case, and the record's flags.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cad/db/DbObject.h"
#include "cad/db/SymbolTableKind.h"

namespace cad::db {

class SymbolTable;

class SymbolTableRecord : public DbObject {
public:
    // Flags every kind of record shares (70).
    static constexpr std::int16_t kDependent = 16;   // comes from an external reference
    static constexpr std::int16_t kResolved = 32;    // that reference was resolved
    static constexpr std::int16_t kReferenced = 64;  // used by some entity (R12 files set it)

    const std::string& name() const { return name_; }
    // eInvalidKey for a name the host refuses (isValidName); eDuplicateKey when another record
    // of the owning table has the name already.
    ErrorStatus setName(std::string_view name);
    std::int16_t flags() const { return flags_; }
    ErrorStatus setFlags(std::int16_t flags);
    bool isDependent() const { return (flags_ & kDependent) != 0; }
    bool isResolved() const { return (flags_ & kResolved) != 0; }

    // The table a record of this class belongs in.
    virtual SymbolTableKind tableKind() const = 0;

    // Not empty, no control characters, none of < > / \ " : ; ? | , = `, and "*" only in
    // front ("*Model_Space", "*Active", anonymous blocks).
    static bool isValidName(std::string_view name);

    // The common "AcDbSymbolTableRecord" subclass, which carries no fields of its own.
    void dxfFields(DxfFiler& filer) override;

protected:
    SymbolTableRecord() = default;
    SymbolTableRecord(const SymbolTableRecord&) = default;

    // The name (2) and flags (70) that open each kind's own subclass.
    void nameAndFlags(DxfFiler& filer);
    void nameField(DxfFiler& filer);
    // Takes a name as a file gave it, without the checks of setName (the reader's links).
    void assignName(std::string_view name);
    // Called by SymbolTable::add once a record made by the program is in the database, for
    // the parts it makes along (a block's BLOCK and ENDBLK, a layer's linetype).
    virtual ErrorStatus completeNewRecord();
    // The table that owns this record, when it is in one.
    SymbolTable* owningTable() const;

private:
    friend class SymbolTable;
    std::string name_;
    std::int16_t flags_ = 0;
};

}  // namespace cad::db
