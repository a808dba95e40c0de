// Symbol tables: adding records, look-up by name through a sorted index, the TABLE record.
#include "cad/db/SymbolTable.h"

#include <algorithm>
#include <numeric>

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTableRecord.h"

namespace cad::db {
namespace {

std::string_view nameOf(ObjectId id) {
    const ObjectSlot* slot = id.slot();
    if (slot == nullptr || !slot->object) return {};
    // Only records pass add(), so the cast holds.
    return static_cast<const SymbolTableRecord*>(slot->object.get())->name();
}

}  // namespace

std::string_view SymbolTable::className() const {
    switch (kind_) {
        case SymbolTableKind::BlockRecord:
            return "AcDbBlockTable";
        case SymbolTableKind::Layer:
            return "AcDbLayerTable";
        case SymbolTableKind::Linetype:
            return "AcDbLinetypeTable";
        case SymbolTableKind::TextStyle:
            return "AcDbTextStyleTable";
        case SymbolTableKind::View:
            return "AcDbViewTable";
        case SymbolTableKind::Ucs:
            return "AcDbUCSTable";
        case SymbolTableKind::Viewport:
            return "AcDbViewportTable";
        case SymbolTableKind::RegApp:
            return "AcDbRegAppTable";
        case SymbolTableKind::DimStyle:
            return "AcDbDimStyleTable";
    }
    return "AcDbSymbolTable";
}

ErrorStatus SymbolTable::checkRecord(const SymbolTableRecord& record, ObjectId self) const {
    if (record.tableKind() != kind_) return ErrorStatus::eWrongObjectType;
    // Viewports share "*ACTIVE"; text styles that load shape files share the empty name.
    const bool mayRepeat = kind_ == SymbolTableKind::Viewport ||
                           (kind_ == SymbolTableKind::TextStyle && record.name().empty());
    if (!mayRepeat && !lookUp(record.name(), false, self).isNull())
        return ErrorStatus::eDuplicateKey;
    return ErrorStatus::eOk;
}

ErrorStatus SymbolTable::add(std::unique_ptr<SymbolTableRecord> record, ObjectId& id) {
    id = ObjectId::kNull;
    if (!record) return ErrorStatus::eNullObjectId;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (!SymbolTableRecord::isValidName(record->name())) return ErrorStatus::eInvalidKey;
    if (ErrorStatus es = checkRecord(*record, ObjectId::kNull); es != ErrorStatus::eOk) return es;
    if (ErrorStatus es = db->addObject(std::move(record), id, objectId()); es != ErrorStatus::eOk)
        return es;
    records_.push_back(id);
    insertIntoIndex(static_cast<std::uint32_t>(records_.size() - 1));
    auto added = open<SymbolTableRecord>(id, OpenMode::ForWrite);
    if (!added) return added.openStatus();
    return added->completeNewRecord();
}

ErrorStatus SymbolTable::add(ObjectId recordId) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (recordId.isNull()) return ErrorStatus::eNullObjectId;
    if (recordId.database() != db) return ErrorStatus::eWrongDatabase;
    if (has(recordId)) return ErrorStatus::eOk;
    auto* record = dynamic_cast<SymbolTableRecord*>(recordId.slot()->object.get());
    if (record == nullptr) return ErrorStatus::eWrongObjectType;
    if (ErrorStatus es = checkRecord(*record, recordId); es != ErrorStatus::eOk) return es;
    if (record->ownerId() != objectId()) {
        auto owned = open<DbObject>(recordId, OpenMode::ForWrite, true);
        if (!owned) return owned.openStatus();
        owned->setOwnerId(objectId());
    }
    records_.push_back(recordId);
    insertIntoIndex(static_cast<std::uint32_t>(records_.size() - 1));
    return ErrorStatus::eOk;
}

ErrorStatus SymbolTable::getAt(std::string_view name, ObjectId& id, bool getErased) const {
    id = lookUp(name, getErased);
    return id.isNull() ? ErrorStatus::eKeyNotFound : ErrorStatus::eOk;
}

bool SymbolTable::has(std::string_view name) const {
    return !lookUp(name, false).isNull();
}

bool SymbolTable::has(ObjectId id) const {
    return !id.isNull() && std::find(records_.begin(), records_.end(), id) != records_.end();
}

std::vector<ObjectId> SymbolTable::recordIds() const {
    std::vector<ObjectId> live;
    live.reserve(records_.size());
    for (ObjectId id : records_) {
        if (!id.isErased()) live.push_back(id);
    }
    return live;
}

ObjectId SymbolTable::lookUp(std::string_view name, bool getErased, ObjectId except) const {
    ensureIndex();
    auto it = std::lower_bound(byName_.begin(), byName_.end(), name,
                               [this](std::uint32_t position, std::string_view key) {
                                   return compareNames(nameOf(records_[position]), key) < 0;
                               });
    ObjectId erased;
    for (; it != byName_.end() && equalNames(nameOf(records_[*it]), name); ++it) {
        ObjectId id = records_[*it];
        if (id == except) continue;
        if (!id.isErased()) return id;
        if (erased.isNull()) erased = id;
    }
    return getErased ? erased : ObjectId::kNull;
}

void SymbolTable::insertIntoIndex(std::uint32_t position) const {
    if (!indexValid_) return;
    std::string_view name = nameOf(records_[position]);
    auto it = std::upper_bound(byName_.begin(), byName_.end(), name,
                               [this](std::string_view key, std::uint32_t other) {
                                   return compareNames(key, nameOf(records_[other])) < 0;
                               });
    byName_.insert(it, position);
}

void SymbolTable::ensureIndex() const {
    if (indexValid_ && byName_.size() == records_.size()) return;
    byName_.resize(records_.size());
    std::iota(byName_.begin(), byName_.end(), 0U);
    std::stable_sort(byName_.begin(), byName_.end(), [this](std::uint32_t a, std::uint32_t b) {
        return compareNames(nameOf(records_[a]), nameOf(records_[b])) < 0;
    });
    indexValid_ = true;
}

void SymbolTable::dxfFields(DxfFiler& filer) {
    std::string name(tableName(kind_));
    filer.string(2, name);
    if (filer.isReading()) {
        if (auto kind = symbolTableKindFromName(name)) kind_ = *kind;
    }
    filer.subclass("AcDbSymbolTable");
    // The count is the host's hint for sizing the table; what counts on reading are the
    // records themselves.
    std::vector<ObjectId> live = recordIds();
    auto count = static_cast<std::int16_t>(std::min<std::size_t>(live.size(), INT16_MAX));
    filer.int16(70, count);
    if (kind_ == SymbolTableKind::DimStyle && filer.atLeast(DxfVersion::R2000)) {
        filer.subclass("AcDbDimStyleTable");
        filer.int16(71, count);
        if (filer.mode() != DxfFiler::Mode::Walking) {
            filer.records(340, live, [&](ObjectId& id) { filer.reference(340, id); });
        }
    }
    // The records are not listed in the file (each names its table as owner), but cloning
    // and the audit must see that the table owns them.
    if (filer.mode() == DxfFiler::Mode::Walking) {
        for (ObjectId& id : records_) filer.reference(360, id);
        indexValid_ = false;
    }
}

std::unique_ptr<DbObject> SymbolTable::clone() const {
    return std::unique_ptr<DbObject>(new SymbolTable(*this));
}

void SymbolTable::ownedObjects(std::vector<ObjectId>& owned) const {
    owned.insert(owned.end(), records_.begin(), records_.end());
}

}  // namespace cad::db
