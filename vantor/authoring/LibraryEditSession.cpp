// A library drawing changed through a dialog.
#include "vantor/authoring/LibraryEditSession.h"

#include "cad/app/UserDialogs.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::ObjectId;

namespace {

constexpr unsigned kErrorBox = cad::app::MB_OK | cad::app::MB_ICONERROR;

}  // namespace

std::unique_ptr<LibraryEditSession> LibraryEditSession::open(const std::string& path,
                                                             cad::app::UserDialogs& dialogs,
                                                             WhenHeld whenHeld) {
    std::unique_ptr<LibraryEditSession> session(new LibraryEditSession(dialogs));
    session->path_ = path;
    const ErrorStatus opened = session->drawing_.open(path, dialogs, whenHeld);
    if (opened == ErrorStatus::eLockViolation) return nullptr;
    if (!session->drawing_.isOpen()) {
        dialogs.messageBox("\"" + path + "\"\n도면을 읽을 수 없습니다.", "읽기 에러", kErrorBox);
        return nullptr;
    }
    return session;
}

ObjectId LibraryEditSession::objectOfNode(std::int64_t nodeId) {
    return objectIdOfNode(drawing_.database(), nodeId);
}

bool LibraryEditSession::save() {
    if (drawing_.save(dialogs_, "파일이름을 가져올 수 없습니다.\n- CListBase::saveDWG() error") !=
        ErrorStatus::eOk)
        return false;
    saved_ = true;
    return true;
}

ObjectId LibraryEditSession::addRecord(ObjectId selected, const PartRecord& record) {
    const ObjectId added = addPartRecord(selected, record, dialogs_);
    if (added.isNull()) return {};
    if (save()) return added;
    if (auto xrecord = cad::db::open<cad::db::Xrecord>(added, cad::db::OpenMode::ForWrite))
        xrecord->erase();
    return {};
}

bool LibraryEditSession::rewriteRecord(ObjectId recordId, const PartRecord& record) {
    if (rewritePartRecord(recordId, record) != ErrorStatus::eOk) {
        dialogs_.messageBox("데이터를 수정할 수 없습니다.", "수정 에러", kErrorBox);
        return false;
    }
    return save();
}

}  // namespace vantor
