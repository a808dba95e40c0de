// Opening and saving library drawings and finding their dictionaries.
#include "vantor/store/LibraryDrawing.h"

#include "cad/app/UserDialogs.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/sys/FileLock.h"
#include "cad/sys/FileSystem.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/TreeCache.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::Database;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;

std::unique_ptr<Database> openLibraryDrawing(const std::string& path, ErrorStatus* status) {
    auto db = std::make_unique<Database>(false, true);
    ErrorStatus es = db->readDwgFile(path, cad::sys::ShareMode::DenyWrite, true);
    // 72: someone holds the drawing open for writing; reading a shared copy is good enough
    // for the catalogue, which is saved through a temporary file anyway.
    if (es == ErrorStatus::eFileAccessErr) {
        db = std::make_unique<Database>(false, true);
        es = db->readDwgFile(path, cad::sys::ShareMode::DenyNone, true);
    }
    if (status) *status = es;
    if (es != ErrorStatus::eOk) return nullptr;
    return db;
}

ErrorStatus saveLibraryDrawing(Database& db, cad::app::UserDialogs& dialogs,
                               std::string_view fileNameMessage) {
    if (db.fileName().empty()) {
        dialogs.messageBox(fileNameMessage, kFileNameErrorTitle,
                           cad::app::MB_OK | cad::app::MB_ICONERROR);
        return ErrorStatus::eInvalidInput;
    }
    ErrorStatus es = db.save();
    if (es == ErrorStatus::eOk) {
        // The drawing is newer than its cache now, but both may carry the same second; without
        // the cache the next load rebuilds it for certain. Under the cache's lock, so that a
        // cache another program is building from the drawing as it was goes too.
        const std::string cachePath = TreeCache::pathFor(db.fileName());
        cad::sys::FileLock lock;
        lock.acquire(cachePath);
        cad::sys::deleteFile(cachePath);
        cad::sys::deleteFile(CatalogueCache::pathFor(db.fileName()));
    } else {
        dialogs.messageBox(
            "\"" + db.fileName() + "\"\n도면을 저장하지 못했습니다.\n" + db.lastErrorMessage(),
            "저장 에러", cad::app::MB_OK | cad::app::MB_ICONERROR);
    }
    return es;
}

ObjectId libraryDictionaryId(Database& db, LibraryKind kind, bool createIfMissing) {
    ObjectId id;
    {
        auto named = cad::db::open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead);
        if (!named) return ObjectId::kNull;
        ErrorStatus es = named->getAt(libraryKey(kind), id);
        if (es == ErrorStatus::eOk) {
            // Another program may have put something else under the key.
            return cad::db::open<Dictionary>(id, OpenMode::ForRead) ? id : ObjectId::kNull;
        }
        if (es != ErrorStatus::eKeyNotFound || !createIfMissing) return ObjectId::kNull;
    }
    auto named = cad::db::open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
    if (!named ||
        named->setAt(libraryKey(kind), std::make_unique<Dictionary>(), id) != ErrorStatus::eOk)
        return ObjectId::kNull;
    return id;
}

ObjectId objectIdOfNode(Database& db, std::int64_t nodeId) {
    ObjectId id;
    if (nodeId <= 0 ||
        db.getObjectId(id, false, cad::db::Handle{static_cast<std::uint64_t>(nodeId)}) !=
            ErrorStatus::eOk ||
        !id.isValid() || id.isErased())
        return ObjectId::kNull;
    return id;
}

ObjectId dictionaryAtPath(Database& db, const std::vector<std::string>& keys) {
    ObjectId id = db.namedObjectsDictionaryId();
    for (const std::string& key : keys) {
        auto dictionary = cad::db::open<Dictionary>(id, OpenMode::ForRead);
        if (!dictionary || dictionary->getAt(key, id) != ErrorStatus::eOk) return ObjectId::kNull;
    }
    return cad::db::open<Dictionary>(id, OpenMode::ForRead) ? id : ObjectId::kNull;
}

}  // namespace vantor
