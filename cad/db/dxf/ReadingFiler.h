// The filer that fills an object from the tags of one DXF structure: the common part
// (handle, reactors, extension dictionary, owner, extended data) and what dxfFields declares.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ResBuf.h"
#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfStructure.h"

namespace cad::db::dxf {

// How fields are found in a structure's tags:
// - Tags before the first subclass marker (100) hold the common part; tags from the first 1001
//   on are extended data. Each marker starts a segment, and subclass(name) scopes the look-ups
//   to the segment of that name. A structure without markers (R12) is one segment that every
//   subclass sees; a subclass whose marker is missing looks at what is left from the start
//   through the segment of the last subclass found.
// - A field takes the first unread tag of its code in scope, so fields may stand in any order.
//   Tags inside 102 groups ("{BLKREFS" ... "}") are never taken by fields; they are kept.
// - Records: the unread tags of the start code in scope start one record each; a record runs to
//   the next start tag, the last one to the end of the scope. The list ends early at a tag an
//   outer field has already read, and a look-up in the last record stops where its own code
//   repeats, so a record does not reach into what follows the list.
// - Whatever no field reads is kept with its subclass (keptTags) and written back there; a
//   whole segment the class does not declare is kept with its marker, after the subclass that
//   precedes it.
// One filer reads every object of a file, reusing its buffers, so reading allocates nothing per
// tag.
class ReadingFiler final : public DxfFiler {
public:
    // Symbol table records are named by their names; the database reader resolves the names
    // (possibly later, once the tables are read), so the filer only hands them on.
    class SymbolResolver {
    public:
        virtual void resolve(ObjectId& record, std::string_view name, SymbolTable table) = 0;

    protected:
        ~SymbolResolver() = default;
    };

    ReadingFiler(Database& database, DxfVersion version, sys::CodePage codePage, TagPlace place,
                 SymbolResolver& symbols);

    // Fills `object` (not yet in a database) from `tags`, its 0 tag first. False when a value
    // does not parse for its group code; error() then names the place.
    bool read(DbObject& object, TagSpan tags);
    // The owner the common part named (330), null when none.
    Handle ownerHandle() const { return owner_; }
    const std::optional<DxfError>& error() const { return error_; }
    // Links of the last object read that hold no handle (some writers put a name where a
    // handle belongs): the link is left empty and the object still loads.
    const std::vector<DxfError>& unreadableLinks() const { return unreadableLinks_; }

    // The handle a structure carries (5, or 105 for a DIMSTYLE); null when it has none or it
    // does not parse.
    static Handle handleOf(TagSpan tags);
    // A tag's value as kept raw: text decoded to UTF-8, anything else as it stands. nullopt
    // when a number or binary value does not parse for its code; handles are kept as they
    // stand, since they are written back the same and never interpreted.
    static std::optional<std::string> rawValue(const Tag& tag, sys::CodePage codePage);
    // rawValue for the parts of a file that are not objects (header, classes): the error, with
    // its place, when the tag cannot be kept (a negative code, a value that does not parse).
    static std::optional<std::string> keptValue(const Tag& tag, sys::CodePage codePage,
                                                TagPlace place, std::optional<DxfError>& error);

    Mode mode() const override { return Mode::Reading; }
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

private:
    // What flags_ records of each tag.
    static constexpr std::uint8_t kRead = 1;
    static constexpr std::uint8_t kGrouped = 2;  // inside a 102 group: fields never take it
    static constexpr std::uint8_t kMarker = 4;   // a 100 subclass marker

    struct Scope {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        bool lastRecord = false;  // look-ups stop where their code repeats
        bool whole = false;       // the whole body, markers included (no subclass chosen)
    };
    struct Segment {
        std::uint32_t marker = 0;  // index of the 100 tag; 0 for the part before any marker
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        bool entered = false;
        std::string_view name;  // the marker's value, trimmed once
    };
    struct RecordList {
        std::size_t firstStart = 0;  // into recordStarts_
        std::size_t count = 0;
        Scope outer;
        std::uint32_t end = 0;  // where the last record ends
    };

    // Indexes the structure's segments and groups; false, with the error, when a tag has a
    // negative code.
    bool prepare(TagSpan tags);
    void readCommonPart(DbObject& object);
    void finish(DbObject& object);
    void keep(DbObject& object, const std::string& subclass, std::uint32_t begin,
              std::uint32_t end);
    // A link kept as text still names its handle: new handles start above it, so an object
    // given one later in the read (one the file left without, one made again) cannot take it
    // and turn a dangling link into a link to itself once the file is written and read. No
    // slot is made: the link stays as dangling as the file had it.
    void reserveHandle(const Tag& tag);

    // The first unread tag of `code` in scope, or nullptr; taking it marks it read.
    const Tag* take(int code);
    bool fail(const Tag& tag, std::string_view expected);
    std::optional<std::int64_t> takeInt(int code, std::int64_t low, std::int64_t high);
    std::optional<double> takeDouble(int code);
    // One value of a typed chain from tags_[i]; a point's y and z move `i` past themselves.
    // False when the value does not parse.
    bool readResBuf(std::uint32_t& i, std::uint32_t end, ResBuf& item);
    // False (and the link noted as unreadable) when the value is not a handle.
    bool takeHandle(const Tag& tag, ObjectId& id);
    std::string decoded(const Tag& tag) const;

    Database& database_;
    DxfVersion version_;
    sys::CodePage codePage_;
    TagPlace place_;
    SymbolResolver& symbols_;

    TagSpan tags_;
    std::vector<std::uint8_t> flags_;
    std::vector<Segment> segments_;
    std::vector<std::uint32_t> recordStarts_;
    std::vector<RecordList> recordLists_;
    ResBufChain chainBuffer_;
    Scope scope_;
    // Where take() may start in takeScope_ (the scope it last looked in, if still current).
    Scope takeScope_;
    std::uint32_t takeFrom_ = 0;
    std::uint32_t bodyEnd_ = 0;
    bool markerless_ = false;
    std::size_t lastEntered_ = 0;  // the segment of the last subclass found; 0 before any
    std::string lastSubclass_;
    Handle owner_;
    std::optional<DxfError> error_;
    std::vector<DxfError> unreadableLinks_;
};

}  // namespace cad::db::dxf
