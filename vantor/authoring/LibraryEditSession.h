// One change of a library drawing made through a dialog: the drawing read under its lock when
// the dialog opens, changed in memory while it runs, and saved whole when it is confirmed.
// Until then the file stays as it was; the lock keeps other writers out meanwhile. A drawing
// another user is changing may be opened read-only, to be looked at.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cad/db/Database.h"
#include "cad/db/ObjectId.h"
#include "vantor/store/LockedLibraryDrawing.h"
#include "vantor/store/PartRecord.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class LibraryEditSession {
public:
    using WhenHeld = LockedLibraryDrawing::WhenHeld;

    // Takes the drawing's lock and reads it. nullptr when the drawing cannot be read, or when
    // another holds the lock and `whenHeld` refuses ("파일 사용 중", naming the holder); both
    // are told. With WhenHeld::ReadOnly such a drawing is read read-only after a notice
    // naming the holder: every save of the session then keeps its change in a recovery copy.
    static std::unique_ptr<LibraryEditSession> open(const std::string& path,
                                                    cad::app::UserDialogs& dialogs,
                                                    WhenHeld whenHeld = WhenHeld::Refuse);

    cad::db::Database& database() { return drawing_.database(); }
    bool isReadOnly() const { return drawing_.isReadOnly(); }
    const std::string& readOnlyReason() const { return drawing_.readOnlyReason(); }
    const std::string& path() const { return path_; }
    // The object a tree node names (its handle value); a null id when the drawing has none.
    cad::db::ObjectId objectOfNode(std::int64_t nodeId);

    // A new record in the group of `selected` (a group, or a record of it), then the save.
    // When the record cannot be added, "데이터가 추가되지 않았습니다." is told; when the save
    // fails, that is told and the record is taken out again, so that a second try does not
    // store it twice. Answers the new record's id once it is saved.
    cad::db::ObjectId addRecord(cad::db::ObjectId selected, const PartRecord& record);
    // The stored record rewritten in place (key and id kept), then the save. "데이터를 수정할
    // 수 없습니다." when it cannot be; a failed save is told. True once saved.
    bool rewriteRecord(cad::db::ObjectId recordId, const PartRecord& record);
    // Saves what was changed in memory (a captured block); a failure is told. A drawing
    // opened read-only, or changed on disk since it was read, is not written: the change goes
    // to a recovery copy beside it, which the message names.
    bool save();

    // Whether the file now holds a change made in this session.
    bool saved() const { return saved_; }

private:
    LibraryEditSession(cad::app::UserDialogs& dialogs) : dialogs_(dialogs) {}

    cad::app::UserDialogs& dialogs_;
    std::string path_;
    LockedLibraryDrawing drawing_;
    bool saved_ = false;
};

}  // namespace vantor
