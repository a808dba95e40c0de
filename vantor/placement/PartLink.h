// Which library record a placed part came from, kept on the placed block reference as extended
// data of our own application, so it survives saves in both formats and other programs keep it
// without knowing it; and finding that record again in its library drawing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Handle.h"
#include "cad/db/ObjectId.h"
#include "cad/db/RawTag.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db {
class Database;
class DbObject;
}  // namespace cad::db

namespace vantor {

struct PartRecord;

struct PartLink {
    static constexpr std::string_view kAppName = "VANTOR_PART";
    // Bumped when the layout of the data changes; readers skip links of a later layout.
    static constexpr int kLayout = 1;

    std::string libraryPath;
    // The dictionary keys from the library drawing's named objects to the record's group: the
    // library's key, the categories, the group.
    std::vector<std::string> groupPath;
    std::string recordKey;
    // The record's handle in the library drawing. It is what identifies the record: keys are
    // given again after a deletion, handles never.
    cad::db::Handle recordHandle;
    // BOM markers placed beside the part that carry its data too (handles of this drawing, so
    // a copy of part and marker together keeps them pointing at each other).
    std::vector<cad::db::Handle> companions;

    std::string groupName() const { return groupPath.empty() ? std::string() : groupPath.back(); }

    // Our application's tags, from its 1001 on.
    std::vector<cad::db::RawTag> toXdata() const;
    // The link among an object's extended data; nullopt when it has none or one that does not
    // read (another layout, a program that changed it).
    static std::optional<PartLink> fromXdata(const std::vector<cad::db::RawTag>& xdata);

    friend bool operator==(const PartLink&, const PartLink&) = default;
};

// Registers the application name in the drawing (extended data may name only registered ones).
cad::ErrorStatus registerPartLinkApp(cad::db::Database& db);

// Puts the link on the object (in a database, not open), replacing a link it had and keeping
// other applications' data.
cad::ErrorStatus attachPartLink(cad::db::ObjectId object, const PartLink& link);

// The link an object carries.
std::optional<PartLink> partLinkOf(const cad::db::DbObject& object);

// Where a record the window handed over lives in its library drawing, found by its key and its
// texts (the record's id named it in a read of the drawing that may be gone). Both libraries
// are searched; nullopt when no group holds it.
struct RecordLocation {
    cad::db::ObjectId recordId;
    std::string key;
    cad::db::ObjectId groupId;
    std::vector<std::string> groupPath;
};
std::optional<RecordLocation> locateRecord(cad::db::Database& library, const PartRecord& record);

}  // namespace vantor
