// A library drawing read to be changed: its lock taken before the read and kept while this
// object lives, and the file's stamp noted before the read, so that the save can tell whether
// a program that ignores the lock (the drawing saved from the CAD window, a copy over it)
// wrote the file meanwhile. A drawing another user holds can still be read to be looked at;
// nothing is saved to it then. A save that cannot go to the drawing keeps the change in a
// recovery copy beside it and says where: a change is never lost without a word.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cad/db/Database.h"
#include "cad/sys/ErrorStatus.h"
#include "cad/sys/FileLock.h"
#include "cad/sys/FileStamp.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class LockedLibraryDrawing {
public:
    enum class WhenHeld {
        Refuse,    // the user is told who holds the drawing; nothing is read
        ReadOnly,  // the user is told who holds it, and that it is read only to be looked at
    };

    // Takes the lock, notes the file's stamp and reads the drawing. When the lock cannot be
    // had (another holds it, or the folder takes no lock file): eLockViolation after the
    // "파일 사용 중" message naming the holder or the reason, or, with ReadOnly, the drawing
    // read read-only after a notice saying so. A drawing that cannot be read answers its
    // status without a word: each flow words that its own way.
    cad::ErrorStatus open(const std::string& path, cad::app::UserDialogs& dialogs,
                          WhenHeld whenHeld);

    bool isOpen() const { return db_ != nullptr; }
    bool isReadOnly() const { return readOnly_; }
    // Why it is read-only: the holder named, or why no lock could be had.
    const std::string& readOnlyReason() const { return readOnlyReason_; }
    const std::string& path() const { return path_; }
    cad::db::Database& database() { return *db_; }

    // Saves the changed drawing under its lock, unless it was opened read-only or the file is
    // no longer as it was read: then the change is written to a recovery copy beside the
    // drawing, the user is told which file and why, and eLockViolation is answered. Other
    // failures are told as saveLibraryDrawing tells them. After a save the drawing on disk is
    // this one's, so later saves compare with it.
    cad::ErrorStatus save(cad::app::UserDialogs& dialogs, std::string_view fileNameMessage);
    // Where the last refused save kept the change; empty when there is none.
    const std::string& recoveryPath() const { return recoveryPath_; }

    // "이 도면은 <user>님이 <machine>에서 <time>부터 고치고 있습니다." for the lock file's
    // holder, or a sentence without names when it names nobody readable.
    static std::string holderSentence(const std::optional<cad::sys::FileLock::Holder>& holder);

private:
    cad::ErrorStatus keepInRecoveryCopy(cad::app::UserDialogs& dialogs, std::string_view reason);

    std::string path_;
    cad::sys::FileLock lock_;
    cad::sys::FileStamp readStamp_;
    std::unique_ptr<cad::db::Database> db_;
    bool readOnly_ = false;
    std::string readOnlyReason_;
    std::string recoveryPath_;
};

}  // namespace vantor
