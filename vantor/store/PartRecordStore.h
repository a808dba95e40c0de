// Reading, adding, changing and deleting the part records of a group dictionary in an open
// library drawing. Every object opened here is closed before the call returns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/sys/ErrorStatus.h"
#include "vantor/store/PartRecord.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Dictionary;
}

namespace vantor {

inline constexpr std::string_view kRecordKeyPrefix = "QRB_VANTORDATA";

// A stored record that could not be taken as a part record, with its key.
struct RecordProblem {
    std::string key;
    std::string message;  // what is wrong with its chain
};

struct GroupRecords {
    std::vector<PartRecord> records;      // in key order, as the dictionary lists them
    std::vector<RecordProblem> problems;  // records left out
};

// "QRB_VANTORDATA-<n>" with the smallest n whose key the group does not hold. When a record
// is being changed, its present key is passed and passed over.
std::string nextRecordKey(const cad::db::Dictionary& group, std::string_view presentKey = {});

// Adds the record under the next free key and answers its id; a null id when the group cannot
// be opened for write or refuses the entry (the new record is then deleted).
cad::db::ObjectId writePartRecord(cad::db::ObjectId groupId, const PartRecord& record);

// Adding from the data entry dialog: the target group is `selectedId` when that is a
// dictionary, else the dictionary that owns it (a selected record adds to its own group).
// "데이터가 추가되지 않았습니다." is shown when nothing was added. Saving is the caller's step.
cad::db::ObjectId addPartRecord(cad::db::ObjectId selectedId, const PartRecord& record,
                                cad::app::UserDialogs& dialogs);

// Overwrites the stored record's views and texts in place; its key and id stay.
cad::ErrorStatus rewritePartRecord(cad::db::ObjectId recordId, const PartRecord& record);

// Reads one record; eInvalidInput when its chain is no part record (`problem` says why).
cad::ErrorStatus readPartRecord(cad::db::ObjectId recordId, PartRecord& record,
                                std::string* problem = nullptr);

// Erases the record; its key is free for the next addition.
cad::ErrorStatus deletePartRecord(cad::db::ObjectId recordId);

// Every extended record of the group read as a part record; records that do not read are
// listed in `problems` with their keys and left out, the rest are all there.
GroupRecords readGroupRecords(cad::db::ObjectId groupId);

}  // namespace vantor
