// A drawing database: the objects of one drawing, their ids and handles, the symbol tables
// and dictionaries, reading from and saving to DXF files, and cloning between databases.
// The implementation is split by concern: Database.cpp (adding objects, open and close, over
// the slots of ObjectStore; undo, recorded by the store's UndoRecorder), DatabaseContent.cpp (default drawing content and the well-known
// objects), DatabaseFiles.cpp (reading and saving), DatabaseClone.cpp (deep and wblock cloning).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cad/db/AuditIssue.h"
#include "cad/db/DxfVersion.h"
#include "cad/db/HeaderVariables.h"
#include "cad/db/ObjectId.h"
#include "cad/db/ObjectStore.h"
#include "cad/db/OpenMode.h"
#include "cad/db/RawTag.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/ErrorStatus.h"
#include "cad/sys/SharedFile.h"

namespace cad::db {
namespace dxf {
class DxfFile;
}

class DbObject;
class IdMapping;

// What wblockCloneObjects does with a symbol table record that already exists in the target.
enum class DuplicateRecordCloning {
    Ignore,   // keep the target's record as it is and point the clones at it
    Replace,  // overwrite the target's record with the source's
};

class Database {
public:
    // buildDefaultDrawing: the standard table records, *Model_Space and *Paper_Space with their
    // layouts, the root dictionary with ACAD_GROUP and ACAD_LAYOUT. A database about to read a
    // file is made without them. noDocument: the database belongs to no editor document.
    explicit Database(bool buildDefaultDrawing = true, bool noDocument = false);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // ---- Files (DatabaseFiles.cpp) ----
    // Reads a drawing (DXF, ASCII or binary, R12 to 2018) into an empty database. Answers
    // eFileNotFound (76), eFileAccessErr (72) when the share mode is refused, eBadDwgFile
    // (190) when the file is damaged; lastErrorMessage() then names the line and what was
    // expected. allowCodePageConversion: texts of older files are converted from the file's
    // code page to UTF-8 (always done; kept for the host's signature).
    ErrorStatus readDwgFile(const std::string& path,
                            sys::ShareMode shareMode = sys::ShareMode::DenyWrite,
                            bool allowCodePageConversion = false);
    // The same from bytes in memory (tests, fuzzing); `name` is used in messages.
    ErrorStatus readDxfBytes(std::string bytes, const std::string& name);
    // Saves atomically (temporary file beside the target, then renamed over it).
    ErrorStatus saveAs(const std::string& path, DxfVersion version = DxfVersion::R2000);
    ErrorStatus save();  // under fileName(), in the version it was read or last saved in
    const std::string& fileName() const { return fileName_; }
    const std::string& lastErrorMessage() const { return lastErrorMessage_; }
    DxfVersion originalFileVersion() const { return originalVersion_; }
    sys::CodePage codePage() const { return codePage_; }
    // Problems found and repaired while loading (duplicate handles, dangling owners, ...).
    const std::vector<AuditIssue>& loadIssues() const { return loadIssues_; }
    // What the last save could not keep as it is (names an R14 file cannot hold, previews R14
    // has no place for), one English line each.
    const std::vector<std::string>& saveMessages() const { return saveMessages_; }

    // ---- Well-known objects (DatabaseContent.cpp) ----
    ObjectId blockTableId() const;
    ObjectId layerTableId() const;
    ObjectId linetypeTableId() const;
    ObjectId textStyleTableId() const;
    ObjectId viewTableId() const;
    ObjectId ucsTableId() const;
    ObjectId viewportTableId() const;
    ObjectId regAppTableId() const;
    ObjectId dimStyleTableId() const;
    ObjectId blockRecordTableId() const { return blockTableId(); }
    ObjectId namedObjectsDictionaryId() const;
    ObjectId groupDictionaryId() const;
    ObjectId layoutDictionaryId() const;
    ObjectId modelSpaceId() const;
    ObjectId paperSpaceId() const;
    ObjectId layerZero() const;
    ObjectId byLayerLinetype() const;
    ObjectId byBlockLinetype() const;
    ObjectId continuousLinetype() const;
    ObjectId textStyleStandard() const;
    // The current layer, linetype and text style new entities get.
    ObjectId clayer() const;
    ErrorStatus setClayer(ObjectId layer);

    HeaderVariables& header() { return header_; }
    const HeaderVariables& header() const { return header_; }

    // ---- Object store (Database.cpp) ----
    // Makes the object database-resident under a new handle (or the given one when it is free)
    // and owned by `ownerId`; the object is closed afterwards. Fails with eDuplicateKey when the
    // given handle is taken.
    ErrorStatus addObject(std::unique_ptr<DbObject> object, ObjectId& id, ObjectId ownerId,
                          Handle handle = Handle{});
    // The id of a handle; with createIfNotFound an id is made for a handle no object carries
    // yet (the reader resolves references that way before the object is read).
    ErrorStatus getObjectId(ObjectId& id, bool createIfNotFound, Handle handle);
    Handle handseed() const { return handseed_; }  // the next free handle
    // Every id that names an object (erased ones included), in handle order.
    std::vector<ObjectId> objectIds() const;
    // How many opens are outstanding (readers plus writers), for tests of open/close discipline.
    int openObjectCount() const { return openCount_; }

    // ---- Undo (Database.cpp) ----
    // Changes are recorded only while an undo group is open: the command processor opens one
    // per command, named after it; groups nest, the outermost is the step. Reading a file
    // records nothing and leaves no history behind.
    void startUndoGroup(const std::string& name) { slots_.undoRecorder().startGroup(name); }
    void endUndoGroup() { slots_.undoRecorder().endGroup(); }
    bool isUndoRecording() const { return slots_.undoRecorder().isRecording(); }
    // Takes back (brings again) the last step and names it. eNotApplicable when there is none,
    // eInvalidOpenState while an object is open or the open group has changes of its own.
    // What a step added is erased, not removed: its ids stay valid.
    ErrorStatus undo(std::string& name);
    ErrorStatus redo(std::string& name);
    UndoRecorder& undoRecorder() { return slots_.undoRecorder(); }
    const UndoRecorder& undoRecorder() const { return slots_.undoRecorder(); }

    // Used by ObjectPtr; module code opens through ObjectPtr / open<T>().
    ErrorStatus openObject(DbObject*& object, ObjectId id, OpenMode mode, bool openErased = false);
    ErrorStatus closeObject(ObjectId id, OpenMode mode);

    // ---- Cloning (DatabaseClone.cpp) ----
    // Clones the objects (entities, block table records, ...) of another database into this
    // one under `ownerId`: referenced layers, linetypes, text styles, dimension styles and
    // nested block definitions come along; records that already exist here are handled by
    // `drc`. Every handle reference is remapped, also inside kept raw tags.
    ErrorStatus wblockCloneObjects(const std::vector<ObjectId>& ids, ObjectId ownerId,
                                   IdMapping& idMap, DuplicateRecordCloning drc,
                                   bool deferTranslation = false);
    // Clones objects within this database under `ownerId` (owned objects come along, other
    // references point at the same objects as before unless they were cloned too).
    ErrorStatus deepCloneObjects(const std::vector<ObjectId>& ids, ObjectId ownerId,
                                 IdMapping& idMap, bool deferTranslation = false);

    // ---- For the reader, the default content and the cloner ----
    struct WellKnownIds {
        ObjectId blockTable, layerTable, linetypeTable, textStyleTable, viewTable, ucsTable,
            viewportTable, regAppTable, dimStyleTable;
        ObjectId namedObjects, groupDictionary, layoutDictionary;
        ObjectId modelSpace, paperSpace;
        ObjectId layerZero, byLayer, byBlock, continuous, standardStyle, clayer;
    };
    WellKnownIds& wellKnownIds() { return ids_; }
    const WellKnownIds& wellKnownIds() const { return ids_; }
    void setFileName(std::string path) { fileName_ = std::move(path); }
    void setOriginalFileVersion(DxfVersion v) { originalVersion_ = v; }
    void setCodePage(sys::CodePage cp) { codePage_ = cp; }
    std::vector<AuditIssue>& mutableLoadIssues() { return loadIssues_; }
    void setLastErrorMessage(std::string message) { lastErrorMessage_ = std::move(message); }
    bool isNoDocument() const { return noDocument_; }
    // The CLASSES section as read, one tag list per class, written back together with the
    // classes the written objects need.
    std::vector<std::vector<RawTag>>& dxfClasses() { return dxfClasses_; }
    const std::vector<std::vector<RawTag>>& dxfClasses() const { return dxfClasses_; }
    // Room for `count` objects, so a reader that knows how many come does not rehash.
    void reserveObjects(std::size_t count) { slots_.reserve(count); }
    // Raises the next free handle to `seed` ($HANDSEED of a file); never lowers it.
    void setHandseed(Handle seed) {
        if (handseed_ < seed) handseed_ = seed;
    }

private:
    class Cloner;  // DatabaseClone.cpp
    // Reads a file's bytes through every stage into a fresh database that replaces this
    // one's content only when all of them succeed.
    ErrorStatus readDxf(dxf::DxfFile file, const std::string& name);
    // addObject without DbObject::addedToDatabase: a clone's references still name the
    // source's objects until translation, and must not be acted on (a group copy would make
    // itself a reactor of the original members).
    ErrorStatus insertObject(std::unique_ptr<DbObject> object, ObjectId& id, ObjectId ownerId,
                             Handle handle = Handle{});

    void buildDefaultDrawing();  // DatabaseContent.cpp
    // Takes over everything `other` holds (DatabaseFiles.cpp): a file is read into a fresh
    // database first, so a failed read leaves this one as it was.
    void replaceContent(Database& other);

    ObjectStore slots_;
    Handle handseed_{1};
    int openCount_ = 0;
    WellKnownIds ids_;
    HeaderVariables header_;
    std::string fileName_;
    std::string lastErrorMessage_;
    DxfVersion originalVersion_ = DxfVersion::R2000;
    sys::CodePage codePage_ = sys::CodePage::Ansi949;
    std::vector<AuditIssue> loadIssues_;
    std::vector<std::vector<RawTag>> dxfClasses_;
    std::vector<std::string> saveMessages_;
    DxfVersion saveVersion_ = DxfVersion::R2000;  // what save() writes
    bool noDocument_ = false;
};

}  // namespace cad::db
