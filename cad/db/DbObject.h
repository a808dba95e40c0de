// The base of every object a drawing database holds: identity, owner, open state, persistent
// reactors, extension dictionary and extended data, and the DXF layout declaration.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Handle.h"
#include "cad/db/ObjectId.h"
#include "cad/db/RawTag.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db {

class Database;
class DxfFiler;
struct ObjectSlot;

class DbObject {
public:
    virtual ~DbObject();

    ObjectId objectId() const { return ObjectId(slot_); }
    Handle handle() const;
    Database* database() const;

    ObjectId ownerId() const { return owner_; }
    ErrorStatus setOwnerId(ObjectId owner);

    bool isErased() const;
    // Erasing marks the object; it stays in memory (an undo could bring it back) but is never
    // written and cannot be opened unless asked for. Owners cascade to what they own.
    virtual ErrorStatus erase(bool erasing = true);

    // An object that is not (yet) in a database is always writable: it is being built.
    bool isReadEnabled() const;
    bool isWriteEnabled() const;

    ObjectId extensionDictionary() const { return extensionDictionary_; }
    void setExtensionDictionary(ObjectId id) { extensionDictionary_ = id; }
    const std::vector<ObjectId>& persistentReactors() const {
        return extras_ ? extras_->reactors : kNoExtras.reactors;
    }
    void addPersistentReactor(ObjectId id);
    void removePersistentReactor(ObjectId id);
    // Extended data (1001 and after), kept as read.
    std::vector<RawTag>& xdata() { return extras().xdata; }
    const std::vector<RawTag>& xdata() const { return extras_ ? extras_->xdata : kNoExtras.xdata; }

    // Tags of a known subclass that its declaration does not name, kept by the reader and
    // written back at the end of that subclass, so nothing read is lost.
    struct KeptTags {
        std::string subclass;
        std::vector<RawTag> tags;
    };
    std::vector<KeptTags>& keptTags() { return extras().keptTags; }
    const std::vector<KeptTags>& keptTags() const {
        return extras_ ? extras_->keptTags : kNoExtras.keptTags;
    }

    // The DXF record type ("LINE", "DICTIONARY") and the class name ("AcDbLine") that the
    // CLASSES section and the cloner need.
    virtual std::string_view dxfName() const = 0;
    virtual std::string_view className() const = 0;
    // The layout declaration, walked by every filer (see DxfFiler). The common part (handle,
    // reactors, extension dictionary, owner, extended data) is not declared here: the reader
    // and writer handle it for every object alike.
    virtual void dxfFields(DxfFiler& filer) = 0;
    // A copy of the object's data, not in any database, for cloning; references still name
    // the source objects until the cloner remaps them.
    virtual std::unique_ptr<DbObject> clone() const = 0;
    // Objects this one owns and that live and die with it (dictionary entries, a block's
    // entities, a reference's attributes). Erase and cloning follow them.
    virtual void ownedObjects(std::vector<ObjectId>& owned) const;

protected:
    DbObject() = default;
    DbObject(const DbObject& other);  // copies data, not identity or open state
    DbObject& operator=(const DbObject&) = delete;

    // eOk when the object may be changed now (open for write, or not in a database).
    ErrorStatus checkWritable() const;
    // Called by Database::addObject once the object is resident (and closed), so objects
    // built outside a database can bring what they own along (a polyline's vertices).
    virtual void addedToDatabase();

private:
    friend class Database;
    friend class UndoRecorder;  // puts the kept state back into the slot
    // The undo hook for changes made without opening the object (its reactors, the erase of
    // what an erased owner owns).
    void willChange();
    ObjectSlot* slot_ = nullptr;
    ObjectId owner_;
    ObjectId extensionDictionary_;
    // What few objects carry lives apart, made on first change: three empty vectors in every
    // object were a third of a line's size.
    struct Extras {
        std::vector<ObjectId> reactors;
        std::vector<RawTag> xdata;
        std::vector<KeptTags> keptTags;
    };
    static const Extras kNoExtras;
    Extras& extras();
    std::unique_ptr<Extras> extras_;
};

}  // namespace cad::db
