// The placed part's link to its record, as extended data.
#include "vantor/placement/PartLink.h"

#include <algorithm>
#include <memory>

#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/RegAppTableRecord.h"
#include "cad/db/SymbolTable.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/LibraryKind.h"
#include "vantor/store/PartRecordStore.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::RawTag;

namespace {

// Extended-data codes: strings, the opening and closing brace of a list, an integer, a handle
// of this drawing. The library's record handle is a string: as a handle (1005) it would be
// taken for one of this drawing's and remapped or audited away.
constexpr int kString = 1000;
constexpr int kBrace = 1002;
constexpr int kInteger = 1070;
constexpr int kHandle = 1005;

// Where our application's tags start and end in an object's extended data.
std::pair<std::size_t, std::size_t> ourRange(const std::vector<RawTag>& xdata) {
    std::size_t begin = xdata.size();
    for (std::size_t i = 0; i < xdata.size(); ++i)
        if (xdata[i].code == 1001 && xdata[i].value == PartLink::kAppName) {
            begin = i;
            break;
        }
    std::size_t end = begin;
    if (begin < xdata.size())
        for (end = begin + 1; end < xdata.size() && xdata[end].code != 1001; ++end) {
        }
    return {begin, end};
}

bool sameTexts(const PartRecord& a, const PartRecord& b) {
    for (std::size_t i = 0; i < PartRecord::kTextCount; ++i)
        if (a.text(i) != b.text(i)) return false;
    return a.viewBlocks == b.viewBlocks;
}

std::optional<RecordLocation> search(ObjectId dictionary, const PartRecord& record,
                                     std::vector<std::string>& path) {
    std::vector<cad::db::Dictionary::Entry> entries;
    {
        auto opened = cad::db::open<cad::db::Dictionary>(dictionary, OpenMode::ForRead);
        if (!opened) return std::nullopt;
        entries = opened->entries();
    }
    for (const auto& entry : entries) {
        // A record handed over without its key is known by its texts alone.
        if (!record.key.empty() && entry.key != record.key) continue;
        PartRecord stored;
        if (readPartRecord(entry.id, stored) == ErrorStatus::eOk && sameTexts(stored, record))
            return RecordLocation{entry.id, entry.key, dictionary, path};
    }
    for (const auto& entry : entries) {
        path.push_back(entry.key);
        if (auto found = search(entry.id, record, path)) return found;
        path.pop_back();
    }
    return std::nullopt;
}

}  // namespace

std::vector<RawTag> PartLink::toXdata() const {
    std::vector<RawTag> tags{{1001, std::string(kAppName)},   {kInteger, std::to_string(kLayout)},
                             {kString, libraryPath},          {kString, recordKey},
                             {kString, recordHandle.toHex()}, {kBrace, "{"}};
    for (const std::string& key : groupPath) tags.push_back({kString, key});
    tags.push_back({kBrace, "}"});
    for (cad::db::Handle companion : companions) tags.push_back({kHandle, companion.toHex()});
    return tags;
}

std::optional<PartLink> PartLink::fromXdata(const std::vector<RawTag>& xdata) {
    const auto [begin, end] = ourRange(xdata);
    if (begin == end) return std::nullopt;
    std::size_t i = begin + 1;
    const auto next = [&](int code) -> const std::string* {
        if (i >= end || xdata[i].code != code) return nullptr;
        return &xdata[i++].value;
    };
    const std::string* layout = next(kInteger);
    if (layout == nullptr || *layout != std::to_string(kLayout)) return std::nullopt;
    PartLink link;
    const std::string* path = next(kString);
    const std::string* key = next(kString);
    const std::string* handle = next(kString);
    if (path == nullptr || key == nullptr || handle == nullptr) return std::nullopt;
    const std::optional<cad::db::Handle> recordHandle = cad::db::Handle::fromHex(*handle);
    if (!recordHandle) return std::nullopt;
    link.libraryPath = *path;
    link.recordKey = *key;
    link.recordHandle = *recordHandle;
    if (next(kBrace) == nullptr) return std::nullopt;
    while (const std::string* groupKey = next(kString)) link.groupPath.push_back(*groupKey);
    if (next(kBrace) == nullptr) return std::nullopt;
    while (const std::string* companion = next(kHandle))
        if (auto parsed = cad::db::Handle::fromHex(*companion)) link.companions.push_back(*parsed);
    return link;
}

ErrorStatus registerPartLinkApp(cad::db::Database& db) {
    {
        auto table = cad::db::open<cad::db::SymbolTable>(db.regAppTableId(), OpenMode::ForRead);
        if (!table) return table.openStatus();
        if (table->has(PartLink::kAppName)) return ErrorStatus::eOk;
    }
    auto table = cad::db::open<cad::db::SymbolTable>(db.regAppTableId(), OpenMode::ForWrite);
    if (!table) return table.openStatus();
    auto record = std::make_unique<cad::db::RegAppTableRecord>();
    if (ErrorStatus es = record->setName(PartLink::kAppName); es != ErrorStatus::eOk) return es;
    ObjectId id;
    return table->add(std::move(record), id);
}

ErrorStatus attachPartLink(ObjectId object, const PartLink& link) {
    cad::db::Database* db = object.database();
    if (db == nullptr) return ErrorStatus::eNullObjectId;
    if (ErrorStatus es = registerPartLinkApp(*db); es != ErrorStatus::eOk) return es;
    auto opened = cad::db::open<cad::db::DbObject>(object, OpenMode::ForWrite);
    if (!opened) return opened.openStatus();
    std::vector<RawTag>& xdata = opened->xdata();
    const auto [begin, end] = ourRange(xdata);
    xdata.erase(xdata.begin() + static_cast<std::ptrdiff_t>(begin),
                xdata.begin() + static_cast<std::ptrdiff_t>(end));
    const std::vector<RawTag> ours = link.toXdata();
    xdata.insert(xdata.end(), ours.begin(), ours.end());
    return ErrorStatus::eOk;
}

std::optional<PartLink> partLinkOf(const cad::db::DbObject& object) {
    return PartLink::fromXdata(object.xdata());
}

std::optional<RecordLocation> locateRecord(cad::db::Database& library, const PartRecord& record) {
    for (LibraryKind kind : {LibraryKind::Supplier, LibraryKind::User}) {
        const ObjectId root = libraryDictionaryId(library, kind, false);
        if (root.isNull()) continue;
        std::vector<std::string> path{std::string(libraryKey(kind))};
        if (auto found = search(root, record, path)) return found;
    }
    return std::nullopt;
}

}  // namespace vantor
