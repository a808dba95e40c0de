// Part records in group dictionaries.
#include "vantor/store/PartRecordStore.h"

#include <memory>

#include "cad/app/UserDialogs.h"
#include "cad/db/Dictionary.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::Xrecord;

std::string nextRecordKey(const Dictionary& group, std::string_view presentKey) {
    for (int n = 0;; ++n) {
        std::string key = std::string(kRecordKeyPrefix) + "-" + std::to_string(n);
        if (!presentKey.empty() && cad::db::equalNames(key, presentKey)) continue;
        if (!group.has(key)) return key;
    }
}

ObjectId writePartRecord(ObjectId groupId, const PartRecord& record) {
    auto group = cad::db::open<Dictionary>(groupId, OpenMode::ForWrite);
    if (!group) return ObjectId::kNull;
    auto xrecord = std::make_unique<Xrecord>();
    xrecord->setFromRbChain(record.toChain());
    ObjectId id;
    // The dictionary refuses an entry before the record becomes resident, so a refused
    // record is deleted with its unique_ptr and nothing half-made stays in the drawing.
    if (group->setAt(nextRecordKey(*group), std::move(xrecord), id) != ErrorStatus::eOk)
        return ObjectId::kNull;
    return id;
}

ObjectId addPartRecord(ObjectId selectedId, const PartRecord& record,
                       cad::app::UserDialogs& dialogs) {
    ObjectId groupId = selectedId;
    if (!cad::db::open<Dictionary>(selectedId, OpenMode::ForRead)) {
        auto selected = cad::db::open<cad::db::DbObject>(selectedId, OpenMode::ForRead);
        groupId = selected ? selected->ownerId() : ObjectId::kNull;
    }
    ObjectId id = writePartRecord(groupId, record);
    if (id.isNull())
        dialogs.messageBox("데이터가 추가되지 않았습니다.", "저장 에러",
                           cad::app::MB_OK | cad::app::MB_ICONERROR);
    return id;
}

ErrorStatus rewritePartRecord(ObjectId recordId, const PartRecord& record) {
    auto xrecord = cad::db::open<Xrecord>(recordId, OpenMode::ForWrite);
    if (!xrecord) return xrecord.openStatus();
    cad::db::ResBufChain chain = xrecord->rbChain();
    record.writeInto(chain);
    if (ErrorStatus es = xrecord->setFromRbChain(std::move(chain)); es != ErrorStatus::eOk)
        return es;
    return xrecord.close();
}

ErrorStatus readPartRecord(ObjectId recordId, PartRecord& record, std::string* problem) {
    auto xrecord = cad::db::open<Xrecord>(recordId, OpenMode::ForRead);
    if (!xrecord) return xrecord.openStatus();
    std::optional<PartRecord> read = PartRecord::fromChain(xrecord->rbChain(), problem);
    if (!read) return ErrorStatus::eInvalidInput;
    std::string key = std::move(record.key);
    record = std::move(*read);
    record.key = std::move(key);
    record.loaded = true;
    record.recordId = recordId;
    return xrecord.close();
}

ErrorStatus deletePartRecord(ObjectId recordId) {
    auto xrecord = cad::db::open<Xrecord>(recordId, OpenMode::ForWrite);
    if (!xrecord) return xrecord.openStatus();
    if (ErrorStatus es = xrecord->erase(); es != ErrorStatus::eOk) return es;
    return xrecord.close();
}

GroupRecords readGroupRecords(ObjectId groupId) {
    GroupRecords result;
    std::vector<Dictionary::Entry> entries;
    if (auto group = cad::db::open<Dictionary>(groupId, OpenMode::ForRead))
        entries = group->entries();
    for (const Dictionary::Entry& entry : entries) {
        // Sub-dictionaries are categories, not records; other objects are not ours.
        if (!cad::db::open<Xrecord>(entry.id, OpenMode::ForRead)) continue;
        PartRecord record;
        record.key = entry.key;
        std::string problem;
        if (readPartRecord(entry.id, record, &problem) == ErrorStatus::eOk)
            result.records.push_back(std::move(record));
        else
            result.problems.push_back({entry.key, std::move(problem)});
    }
    return result;
}

}  // namespace vantor
