// A filer that visits every reference an object holds, with the group code that says what
// kind of reference it is. The cloner rewrites references through it; the audit and anything
// that lists references read them through it.
#pragma once

#include <functional>
#include <vector>

#include "cad/db/DxfFiler.h"

namespace cad::db {

class Database;
class DbObject;

class ReferenceWalker final : public DxfFiler {
public:
    enum class Kind {
        Owner,        // the object's owner (written as 330 in the common part)
        SoftPointer,  // 330-339, and 1005 in extended data
        HardPointer,  // 340-349, 390-399 (plot styles and the like), 480-481
        SoftOwner,    // 350-359
        HardOwner,    // 360-369
        Arbitrary,    // 320-329: a handle kept as it is, never translated
        Symbol,       // a table record named by its name (layer, linetype, block, ...)
    };
    struct Field {
        int code = 0;
        Kind kind = Kind::SoftPointer;
        SymbolTable table = SymbolTable::Layer;  // for Kind::Symbol only
    };
    // The visitor may change the id; the walker stores the change back into the object.
    using Visitor = std::function<void(const Field& field, ObjectId& id)>;

    // rawTagDatabase: where handles kept as text (unknown objects, kept tags, extended data)
    // are looked up; null means the walked object's own database. A clone that is not yet
    // translated still holds its source's handles, so the cloner passes the source database.
    explicit ReferenceWalker(Visitor visitor, Database* rawTagDatabase = nullptr);

    // Visits the common part (owner, persistent reactors, extension dictionary), the declared
    // fields, the tags kept for known subclasses and the extended data. A reactor the visitor
    // sets to null is dropped. Changing the owner needs the object open for write (or not in
    // a database); otherwise that change is ignored.
    void walk(DbObject& object);

    // The kind of a handle reference by its group code.
    static Kind kindOf(int code);

    Mode mode() const override { return Mode::Walking; }
    DxfVersion version() const override;
    void subclass(std::string_view) override {}
    void string(int, std::string&) override {}
    void string(int, std::string&, std::string_view) override {}
    void int16(int, std::int16_t&) override {}
    void int16(int, std::int16_t&, std::int16_t) override {}
    void int32(int, std::int32_t&) override {}
    void int32(int, std::int32_t&, std::int32_t) override {}
    void int64(int, std::int64_t&) override {}
    void real(int, double&) override {}
    void real(int, double&, double) override {}
    void boolean(int, bool&) override {}
    void point(int, ge::Point3d&) override {}
    void point2d(int, ge::Point3d&) override {}
    void vector(int, ge::Vector3d&) override {}
    void vector(int, ge::Vector3d&, const ge::Vector3d&) override {}
    void reference(int code, ObjectId& id) override;
    void symbol(int code, ObjectId& record, SymbolTable table) override;
    void symbol(int code, ObjectId& record, SymbolTable table, ObjectId defaultRecord) override;
    void binary(int, std::string&) override {}
    void beginRecords(int, std::size_t&) override {}
    void enterRecord(std::size_t) override {}
    void endRecords() override {}
    void resbufs(ResBufChain& chain) override;
    void rawTags(std::vector<RawTag>& tags) override;

private:
    Visitor visitor_;
    Database* rawTagDatabase_;
    Database* currentDatabase_ = nullptr;  // for raw tags of the object being walked
    bool crossDatabase_ = false;           // raw tags name objects of another database
};

}  // namespace cad::db
