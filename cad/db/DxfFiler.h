// The one declaration of an object type's DXF layout. Every class describes its fields once,
// in DbObject::dxfFields(DxfFiler&); the reader, the writer, the cloner (which remaps every
// reference) and the audit are filers that walk that declaration, so they cannot drift apart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/DxfVersion.h"
#include "cad/db/ObjectId.h"
#include "cad/db/RawTag.h"
#include "cad/db/ResBuf.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

class DxfFiler {
public:
    enum class Mode {
        Reading,  // values come from a file's tags
        Writing,  // values go to a file
        Walking,  // no file: only references are visited (cloning, audit, reference lists)
    };

    virtual ~DxfFiler() = default;

    virtual Mode mode() const = 0;
    // The version being read or written; for walking, the newest.
    virtual DxfVersion version() const = 0;

    bool isReading() const { return mode() == Mode::Reading; }
    bool isWriting() const { return mode() == Mode::Writing; }
    bool atLeast(DxfVersion v) const { return version() >= v; }

    // Starts the fields of one subclass ("AcDbEntity", "AcDbLine"). When reading, fields are
    // matched by group code inside the current subclass in any order (other programs do not
    // all keep the reference order); tags a class does not declare are kept and written back
    // at the end of their subclass. R12 files have no subclass markers: the whole object is
    // then one subclass.
    virtual void subclass(std::string_view marker) = 0;

    // Scalar fields. Without a default a field is always written; with one it is written only
    // when it differs from the default. A field absent when reading keeps the member's value,
    // which the constructor set to the default.
    virtual void string(int code, std::string& value) = 0;
    virtual void string(int code, std::string& value, std::string_view defaultValue) = 0;
    virtual void int16(int code, std::int16_t& value) = 0;
    virtual void int16(int code, std::int16_t& value, std::int16_t defaultValue) = 0;
    virtual void int32(int code, std::int32_t& value) = 0;
    virtual void int32(int code, std::int32_t& value, std::int32_t defaultValue) = 0;
    virtual void int64(int code, std::int64_t& value) = 0;
    virtual void real(int code, double& value) = 0;
    virtual void real(int code, double& value, double defaultValue) = 0;
    virtual void boolean(int code, bool& value) = 0;  // 290-299 as 0/1
    // code, code + 10, code + 20
    virtual void point(int code, ge::Point3d& value) = 0;
    // code, code + 10 only; z is left as it is (2D points of LWPOLYLINE and the like)
    virtual void point2d(int code, ge::Point3d& value) = 0;
    virtual void vector(int code, ge::Vector3d& value) = 0;
    virtual void vector(int code, ge::Vector3d& value, const ge::Vector3d& defaultValue) = 0;
    // A handle reference (320-369, 390-399, 480-481). The code tells its kind: 330-339 soft
    // pointer, 340-349 hard pointer, 350-359 soft owner, 360-369 hard owner. Walking filers see
    // every reference here, which is how cloning remaps ids.
    virtual void reference(int code, ObjectId& id) = 0;
    // A symbol table record named by its name rather than its handle (8 layer, 6 linetype,
    // 7 text style, 2 block, 3 dimension style). Reading resolves the name in `table` once the
    // tables are read (a missing layer is made and reported); writing writes the record's
    // name; walking filers see it as a reference, which is how cloning brings layers along.
    enum class SymbolTable { Layer, Linetype, TextStyle, Block, DimStyle };
    // What messages call a record of that table: "layer", "text style", ...
    static std::string_view recordWord(SymbolTable table) {
        switch (table) {
            case SymbolTable::Layer:
                return "layer";
            case SymbolTable::Linetype:
                return "linetype";
            case SymbolTable::TextStyle:
                return "text style";
            case SymbolTable::Block:
                return "block";
            case SymbolTable::DimStyle:
                return "dimension style";
        }
        return "record";
    }
    virtual void symbol(int code, ObjectId& record, SymbolTable table) = 0;
    // As above, but written only when it is not `defaultRecord` (ByLayer linetypes).
    virtual void symbol(int code, ObjectId& record, SymbolTable table, ObjectId defaultRecord) = 0;

    // Binary data written as chunks of at most 127 bytes under `code` (310 previews).
    virtual void binary(int code, std::string& bytes) = 0;

    // Repeated records, each starting at a tag with `startCode` (dictionary entries at 3,
    // LWPOLYLINE vertices at 10, ...). Reading sets `count` to the number of records found and
    // scopes each enterRecord(i) to the tags of record i; writing writes `count` records.
    // Prefer the records() helper below.
    virtual void beginRecords(int startCode, std::size_t& count) = 0;
    virtual void enterRecord(std::size_t index) = 0;
    virtual void endRecords() = 0;

    template <class T, class Fn>
    void records(int startCode, std::vector<T>& items, Fn&& describe) {
        std::size_t count = items.size();
        beginRecords(startCode, count);
        if (isReading()) items.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            enterRecord(i);
            describe(items[i]);
        }
        endRecords();
    }

    // Every remaining tag of the current subclass as a typed chain (extended records).
    virtual void resbufs(ResBufChain& chain) = 0;
    // Every remaining tag of the current subclass kept raw (objects we do not model).
    virtual void rawTags(std::vector<RawTag>& tags) = 0;
};

}  // namespace cad::db
