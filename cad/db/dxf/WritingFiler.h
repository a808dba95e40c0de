// The filer that writes an object as one DXF structure: its type, the common part, the fields
// its dxfFields declares, the tags kept from reading, and its extended data.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cad/db/DbObject.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/dxf/TagWriter.h"

namespace cad::db::dxf {

class WritingFiler final : public DxfFiler {
public:
    // Symbol table records are written by name; the database writer knows the names.
    class SymbolNames {
    public:
        // The record's name, empty when the id names no record that is written.
        virtual std::string_view nameOf(ObjectId record, SymbolTable table) = 0;

    protected:
        ~SymbolNames() = default;
    };

    WritingFiler(TagWriter& out, DxfVersion version, SymbolNames& names);

    // Writes `object` (open for read). Kept tags go to the end of their subclass; kept tags of
    // a subclass the class no longer declares follow its last field, so nothing read is lost.
    // Fields declared before the first subclass come before the handle, as a TABLE's name
    // does. `handle` stands in for the object's own when it is a filtered copy in no database.
    void write(DbObject& object, Handle handle = {});
    // Entities of the paper space say so (67) whatever their flag, since readers sort the
    // entities section into model and paper space by it; set while writing them there.
    void setPaperSpace(bool paperSpace) { paperSpace_ = paperSpace; }
    // Groups list their members, and each member carries its groups among its reactors; a
    // member that lost the link (files of other programs) gets it back in what is written.
    void setExtraReactors(
        const std::unordered_map<ObjectId, std::vector<ObjectId>>* reactorsByObject) {
        extraReactors_ = reactorsByObject;
    }

    Mode mode() const override { return Mode::Writing; }
    DxfVersion version() const override { return version_; }

    void subclass(std::string_view marker) override;
    void string(int code, std::string& value) override;
    void string(int code, std::string& value, std::string_view defaultValue) override;
    void int16(int code, std::int16_t& value) override;
    void int16(int code, std::int16_t& value, std::int16_t defaultValue) override;
    void int32(int code, std::int32_t& value) override;
    void int32(int code, std::int32_t& value, std::int32_t defaultValue) override;
    void int64(int code, std::int64_t& value) override;
    void real(int code, double& value) override;
    void real(int code, double& value, double defaultValue) override;
    void boolean(int code, bool& value) override;
    void point(int code, ge::Point3d& value) override;
    void point2d(int code, ge::Point3d& value) override;
    void vector(int code, ge::Vector3d& value) override;
    void vector(int code, ge::Vector3d& value, const ge::Vector3d& defaultValue) override;
    void reference(int code, ObjectId& id) override;
    void symbol(int code, ObjectId& record, SymbolTable table) override;
    void symbol(int code, ObjectId& record, SymbolTable table, ObjectId defaultRecord) override;
    void binary(int code, std::string& bytes) override;
    void beginRecords(int startCode, std::size_t& count) override;
    void enterRecord(std::size_t index) override;
    void endRecords() override;
    void resbufs(ResBufChain& chain) override;
    void rawTags(std::vector<RawTag>& tags) override;

    // A tag kept raw, encoded for the file when it is text. R14 files do not get the codes
    // that came after it (lineweights, plot styles, true colours, materials): they are dropped.
    void writeRawTag(const RawTag& tag);
    // A link: the handle, or 0 for a null id or an object that is not written (erased).
    void writeReference(int code, ObjectId id);

private:
    // The handle, reactors, extension dictionary, head tags and owner, written once.
    void writeCommonPart();
    void writeKept(std::string_view subclass);

    TagWriter& out_;
    DxfVersion version_;
    SymbolNames& names_;
    const DbObject* object_ = nullptr;
    Handle handle_;
    bool commonPartDue_ = false;
    bool paperSpace_ = false;
    std::string subclass_;  // the one being written
    const std::unordered_map<ObjectId, std::vector<ObjectId>>* extraReactors_ = nullptr;
    std::vector<char> keptWritten_;
};

}  // namespace cad::db::dxf
