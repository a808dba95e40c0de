// ReferenceWalker: the common part of an object is not in its layout declaration (the reader
// and writer treat it alike for every object), so walk() visits it here before the fields.
#include "cad/db/ReferenceWalker.h"

#include <optional>
#include <utility>

#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/dxf/GroupCode.h"

namespace cad::db {

ReferenceWalker::ReferenceWalker(Visitor visitor, Database* rawTagDatabase)
    : visitor_(std::move(visitor)), rawTagDatabase_(rawTagDatabase) {}

DxfVersion ReferenceWalker::version() const {
    return DxfVersion::R2018;
}

ReferenceWalker::Kind ReferenceWalker::kindOf(int code) {
    if (code >= 320 && code <= 329) return Kind::Arbitrary;
    if (code >= 340 && code <= 349) return Kind::HardPointer;
    if (code >= 350 && code <= 359) return Kind::SoftOwner;
    if (code >= 360 && code <= 369) return Kind::HardOwner;
    if ((code >= 390 && code <= 399) || code == 480 || code == 481) return Kind::HardPointer;
    return Kind::SoftPointer;  // 330-339 and 1005
}

void ReferenceWalker::walk(DbObject& object) {
    currentDatabase_ = rawTagDatabase_ != nullptr ? rawTagDatabase_ : object.database();
    // A copy not yet in any database (the cloner's, while it collects) is not across.
    crossDatabase_ = object.database() != nullptr && currentDatabase_ != object.database();

    ObjectId owner = object.ownerId();
    visitor_(Field{330, Kind::Owner}, owner);
    if (owner != object.ownerId()) object.setOwnerId(owner);

    const std::vector<ObjectId> reactors = object.persistentReactors();
    std::vector<ObjectId> visited = reactors;
    for (ObjectId& reactor : visited) visitor_(Field{330, Kind::SoftPointer}, reactor);
    if (visited != reactors) {
        for (ObjectId reactor : reactors) object.removePersistentReactor(reactor);
        for (ObjectId reactor : visited) {
            if (!reactor.isNull()) object.addPersistentReactor(reactor);
        }
    }

    ObjectId dictionary = object.extensionDictionary();
    if (!dictionary.isNull()) {
        visitor_(Field{360, Kind::HardOwner}, dictionary);
        object.setExtensionDictionary(dictionary);
    }

    object.dxfFields(*this);
    // Only an object that holds kept tags or extended data is asked for them writable: asking
    // makes the room for them.
    if (!std::as_const(object).keptTags().empty()) {
        for (DbObject::KeptTags& kept : object.keptTags()) rawTags(kept.tags);
    }
    if (!std::as_const(object).xdata().empty()) rawTags(object.xdata());
}

void ReferenceWalker::reference(int code, ObjectId& id) {
    visitor_(Field{code, kindOf(code)}, id);
}

void ReferenceWalker::symbol(int code, ObjectId& record, SymbolTable table) {
    visitor_(Field{code, Kind::Symbol, table}, record);
}

void ReferenceWalker::symbol(int code, ObjectId& record, SymbolTable table, ObjectId) {
    symbol(code, record, table);
}

void ReferenceWalker::resbufs(ResBufChain& chain) {
    for (ResBuf& rb : chain) {
        if (ObjectId* id = std::get_if<ObjectId>(&rb.value))
            visitor_(Field{rb.code, kindOf(rb.code)}, *id);
    }
}

void ReferenceWalker::rawTags(std::vector<RawTag>& tags) {
    // Raw handles are text; an arbitrary handle (320-329) is the same text in any database,
    // so only the references are looked up and visited.
    if (currentDatabase_ == nullptr) return;
    for (RawTag& tag : tags) {
        if (!dxf::isHandleReference(tag.code)) continue;
        std::optional<Handle> handle = Handle::fromHex(tag.value);
        if (!handle) continue;  // not a handle at all: nothing to follow, kept as read
        ObjectId id;
        if (!handle->isNull()) currentDatabase_->getObjectId(id, false, *handle);
        const ObjectId before = id;
        visitor_(Field{tag.code, kindOf(tag.code)}, id);
        // A handle that names nothing in the source would name some unrelated object once
        // the text lands in another database, so there it becomes null.
        const bool dangling = before.isNull() && !handle->isNull();
        if (id != before || (dangling && crossDatabase_)) tag.value = id.handle().toHex();
    }
}

}  // namespace cad::db
