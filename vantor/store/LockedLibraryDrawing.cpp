// Library drawings read under their lock and saved only over what was read.
#include "vantor/store/LockedLibraryDrawing.h"

#include <ctime>

#include "cad/app/UserDialogs.h"
#include "cad/sys/FileError.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/LocalTime.h"
#include "cad/sys/RecoveryPath.h"
#include "vantor/store/LibraryDrawing.h"

namespace vantor {

using cad::ErrorStatus;

namespace {

std::string quoted(const std::string& path) {
    return "\"" + path + "\"";
}

}  // namespace

std::string LockedLibraryDrawing::holderSentence(
    const std::optional<cad::sys::FileLock::Holder>& holder) {
    if (!holder) return "다른 프로그램이 이 도면을 고치고 있습니다.";
    return "이 도면은 " + (holder->user.empty() ? std::string("(이름 없음)") : holder->user) +
           "님이 " + holder->machine + "에서 " + cad::sys::localTimeText(holder->since) +
           "부터 고치고 있습니다.";
}

ErrorStatus LockedLibraryDrawing::open(const std::string& path, cad::app::UserDialogs& dialogs,
                                       WhenHeld whenHeld) {
    path_ = path;
    const ErrorStatus locked = lock_.acquire(path);
    if (locked != ErrorStatus::eOk) {
        // Held by another, or a folder that takes no lock file (a read-only share): either way
        // nothing may be written here, but the drawing may still be looked at.
        const bool held = locked == ErrorStatus::eLockViolation;
        const std::string why = held ? holderSentence(cad::sys::FileLock::readHolder(
                                           cad::sys::FileLock::lockPathFor(path)))
                                     : "도면을 잠글 수 없습니다.\n" + lock_.message();
        if (whenHeld == WhenHeld::Refuse) {
            dialogs.messageBox(
                quoted(path) + "\n" + why + (held ? "\n그 작업이 끝난 뒤에 다시 하십시오." : ""),
                "파일 사용 중", cad::app::MB_OK | cad::app::MB_ICONERROR);
            return ErrorStatus::eLockViolation;
        }
        dialogs.messageBox(quoted(path) + "\n" + why +
                               "\n읽기 전용으로 엽니다: 볼 수는 있지만 저장할 수는 없습니다.",
                           "읽기 전용", cad::app::MB_OK | cad::app::MB_ICONINFORMATION);
        readOnly_ = true;
        readOnlyReason_ = why;
    }
    // Noted before the read: a change made while reading then shows at the save, never the
    // other way round.
    readStamp_ = cad::sys::FileStamp::of(path);
    ErrorStatus read = ErrorStatus::eOk;
    db_ = openLibraryDrawing(path, &read);
    return read;
}

ErrorStatus LockedLibraryDrawing::save(cad::app::UserDialogs& dialogs,
                                       std::string_view fileNameMessage) {
    recoveryPath_.clear();
    if (readOnly_) {
        return keepInRecoveryCopy(dialogs,
                                  "다른 사용자가 고치고 있어 읽기 전용으로 연 도면이므로 "
                                  "저장하지 않았습니다.");
    }
    // Our lock keeps our own programs out; this catches the ones that ignore it.
    if (cad::sys::FileStamp::of(path_) != readStamp_) {
        return keepInRecoveryCopy(dialogs,
                                  "이 도면을 읽은 뒤에 다른 프로그램이 파일을 바꾸었습니다. "
                                  "덮어쓰면 그 변경이 없어지므로 저장하지 않았습니다.");
    }
    const ErrorStatus saved = saveLibraryDrawing(*db_, dialogs, fileNameMessage);
    if (saved == ErrorStatus::eOk) readStamp_ = cad::sys::FileStamp::of(path_);
    return saved;
}

ErrorStatus LockedLibraryDrawing::keepInRecoveryCopy(cad::app::UserDialogs& dialogs,
                                                     std::string_view reason) {
    const std::string head = quoted(path_) + "\n" + std::string(reason) + "\n";
    const std::string reserved = cad::sys::reserveRecoveryPath(path_, std::time(nullptr));
    ErrorStatus kept = reserved.empty() ? ErrorStatus::eFileAccessErr : ErrorStatus::eOk;
    std::string failure = reserved.empty() ? cad::sys::lastFileError().text : std::string();
    if (kept == ErrorStatus::eOk) {
        // Written as the drawing would have been, in its version and kind; the database
        // stays the drawing's own.
        const cad::db::DxfVersion version = db_->originalFileVersion() == cad::db::DxfVersion::R14
                                                ? cad::db::DxfVersion::R14
                                                : cad::db::DxfVersion::R2000;
        kept = db_->saveAs(reserved, version);
        if (kept != ErrorStatus::eOk) failure = db_->lastErrorMessage();
        db_->setFileName(path_);
    }
    if (kept != ErrorStatus::eOk) {
        if (!reserved.empty()) cad::sys::deleteFile(reserved);
        dialogs.messageBox(head + "바꾼 내용을 복구 파일로도 저장하지 못했습니다.\n" + failure,
                           "저장 에러", cad::app::MB_OK | cad::app::MB_ICONERROR);
        return ErrorStatus::eLockViolation;
    }
    recoveryPath_ = reserved;
    dialogs.messageBox(head + "바꾼 내용은 복구 파일에 저장했습니다:\n" + quoted(reserved) +
                           "\n도면을 다시 읽은 뒤 복구 파일을 보고 다시 고치십시오.",
                       "저장 에러", cad::app::MB_OK | cad::app::MB_ICONWARNING);
    return ErrorStatus::eLockViolation;
}

}  // namespace vantor
