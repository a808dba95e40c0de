// Decodes the objects of an R13 to R2000 DWG file, one record at a time, into DwgRecord: the
// common part every object has, then the fields of the types the engine models (and a few
// small ones it keeps as they are). Types it cannot decode are named, so the caller can count
// and report them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "cad/db/dwg/BitReader.h"
#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/db/dwg/DwgRecord.h"

namespace cad::db::dwg {

class DwgObjectDecoder {
public:
    DwgObjectDecoder(std::string_view file, const DwgFileLayout& layout);

    enum class Outcome {
        Decoded,      // `record` is complete
        NotDecoded,   // a type the decoder does not know: `record` has its handle and name
        Damaged,      // the record lies outside the file: error() says where and why
        Unreadable,   // the record's fields do not read as its type's: error() says where
        // Asked to defer: an entity of a type whose fields are always decoded, read as far as
        // its common part; decode it again with Pass::Deferred when its fields are wanted.
        Deferred,
    };
    enum class Pass {
        Whole,
        DeferEntityFields,
        Deferred,  // the fields of a deferred entity: its check value was checked the first time
    };
    Outcome decode(const DwgMapEntry& entry, DwgRecord& record, Pass pass = Pass::Whole);
    const std::string& error() const { return error_; }
    // Whether the last record's check value matched.
    bool checkValueMatched() const { return crcMatched_; }
    // The DXF name of an object type number (fixed types and classes); empty when unknown.
    std::string typeName(int type) const;

private:
    bool r2000() const { return layout_.version == DwgVersion::R2000; }
    void readCommon(DwgRecord& record, bool entity);
    void readExtendedData(DwgRecord& record);
    std::uint64_t ref();  // the next handle of the handle stream, made absolute
    bool decodeFields(DwgRecord& record);
    bool deferrable(const DwgRecord& record) const;

    // Field writers.
    void marker(DwgRecord& r, const char* name);
    void integer(DwgRecord& r, int code, std::int64_t value);
    void real(DwgRecord& r, int code, double value);
    void angle(DwgRecord& r, int code, double radians);
    void point(DwgRecord& r, int code, const ge::Point3d& p, bool withZ = true);
    void text(DwgRecord& r, int code, const std::string& value);
    void handleTag(DwgRecord& r, int code, std::uint64_t handle);
    void nameTag(DwgRecord& r, int code, std::uint64_t handle);
    void binaryTags(DwgRecord& r, int code, const std::string& bytes);
    void extrusionTags(DwgRecord& r, const ge::Vector3d& e);

    // Per family, each in a file of its own: decodes the types of the family and tells
    // whether the record's type was one of them.
    bool entityFields(DwgRecord& r);
    bool annotationFields(DwgRecord& r);
    bool tableFields(DwgRecord& r);
    bool objectFields(DwgRecord& r);

    void textFields(DwgRecord& r, int kind);  // 0 TEXT, 1 ATTRIB, 2 ATTDEF
    void insertFields(DwgRecord& r, bool multiple);
    void tableEntryStart(DwgRecord& r, const char* subclass, int& flags);
    void ucsFields(DwgRecord& r, bool namedFirst);
    void xrecordData(DwgRecord& r, std::size_t byteCount);
    void dimensionFields(DwgRecord& r);
    void dimensionStyleFields(DwgRecord& r);
    void hatchFields(DwgRecord& r);
    void layoutFields(DwgRecord& r);
    void lwpolylineFields(DwgRecord& r);
    void mlineFields(DwgRecord& r);
    void rasterFields(DwgRecord& r, bool wipeout);
    void dictionaryFields(DwgRecord& r, bool withDefault);
    // False, with the data stream failed, when `count` items cannot fit in the record.
    bool fitsIn(std::int64_t count);

    std::string_view file_;
    const DwgFileLayout& layout_;
    std::map<int, const DwgClass*> classes_;
    BitReader data_;
    BitReader handles_;
    std::uint64_t own_ = 0;
    std::string error_;
    std::string unknownName_;  // what the last record of an unknown type is called
    bool crcMatched_ = true;
    int viewports_ = 0;  // viewports numbered in file order, as DXF gives them ids
};

}  // namespace cad::db::dwg
