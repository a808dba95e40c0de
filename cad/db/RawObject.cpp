// Raw objects: every tag after the common part, kept and written as read.
#include "cad/db/RawObject.h"

#include <optional>

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"

namespace cad::db {

RawObject::RawObject(std::string dxfName, std::string className, std::vector<RawTag> tags)
    : dxfName_(std::move(dxfName)), className_(std::move(className)), tags_(std::move(tags)) {}

void RawObject::dxfFields(DxfFiler& filer) {
    filer.rawTags(tags_);
}

std::unique_ptr<DbObject> RawObject::clone() const {
    return std::unique_ptr<DbObject>(new RawObject(*this));
}

void RawObject::ownedObjects(std::vector<ObjectId>& owned) const {
    ownedByRawTags(tags_, database(), owned);
}

void ownedByRawTags(const std::vector<RawTag>& tags, Database* db, std::vector<ObjectId>& owned) {
    if (db == nullptr) return;
    for (const RawTag& tag : tags) {
        if (tag.code < 350 || tag.code > 369) continue;
        std::optional<Handle> handle = Handle::fromHex(tag.value);
        if (!handle || handle->isNull()) continue;
        ObjectId id;
        if (db->getObjectId(id, false, *handle) == ErrorStatus::eOk && id.isValid())
            owned.push_back(id);
    }
}

}  // namespace cad::db
