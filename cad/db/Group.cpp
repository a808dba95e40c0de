// Groups: members with their reactor back-links, and anonymous names in the group dictionary.
#include "cad/db/Group.h"

#include <algorithm>
#include <functional>

#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {
namespace {

// The back-link from a member to its group is the database's bookkeeping, like an owner's
// list: it is kept whether or not someone has the member open.
void linkMember(ObjectId member, ObjectId group, bool link) {
    ObjectSlot* slot = member.slot();
    if (slot == nullptr || !slot->object || group.isNull()) return;
    if (link) {
        slot->object->addPersistentReactor(group);
    } else {
        slot->object->removePersistentReactor(group);
    }
}

}  // namespace

Group::Group(std::string description, bool selectable)
    : description_(std::move(description)), selectable_(selectable ? 1 : 0) {}

ErrorStatus Group::getName(std::string& name) const {
    name.clear();
    auto dictionary = open<Dictionary>(ownerId(), OpenMode::ForRead);
    if (!dictionary) return dictionary.openStatus();
    return dictionary->nameAt(objectId(), name);
}

ErrorStatus Group::setDescription(std::string description) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    description_ = std::move(description);
    return ErrorStatus::eOk;
}

ErrorStatus Group::setSelectable(bool selectable) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    selectable_ = selectable ? 1 : 0;
    return ErrorStatus::eOk;
}

ErrorStatus Group::setAnonymous() {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    unnamed_ = 1;
    return ErrorStatus::eOk;
}

ErrorStatus Group::append(ObjectId id) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (id.isNull()) return ErrorStatus::eNullObjectId;
    if (id.isErased()) return ErrorStatus::eWasErased;
    if (database() != nullptr && id.database() != database()) return ErrorStatus::eWrongDatabase;
    if (has(id)) return ErrorStatus::eDuplicateKey;
    members_.push_back(id);
    linkMember(id, objectId(), true);
    return ErrorStatus::eOk;
}

ErrorStatus Group::remove(ObjectId id) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    auto it = std::find(members_.begin(), members_.end(), id);
    if (id.isNull() || it == members_.end()) return ErrorStatus::eKeyNotFound;
    members_.erase(it);
    linkMember(id, objectId(), false);
    return ErrorStatus::eOk;
}

ErrorStatus Group::clear() {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    for (ObjectId id : members_) linkMember(id, objectId(), false);
    members_.clear();
    return ErrorStatus::eOk;
}

bool Group::has(ObjectId id) const {
    return !id.isNull() && std::find(members_.begin(), members_.end(), id) != members_.end();
}

std::size_t Group::numEntities() const {
    return static_cast<std::size_t>(
        std::count_if(members_.begin(), members_.end(), std::mem_fn(&ObjectId::isLive)));
}

std::vector<ObjectId> Group::allEntityIds() const {
    std::vector<ObjectId> live;
    std::copy_if(members_.begin(), members_.end(), std::back_inserter(live),
                 std::mem_fn(&ObjectId::isLive));
    return live;
}

void Group::addedToDatabase() {
    for (ObjectId id : members_) linkMember(id, objectId(), true);
}

void Group::dxfFields(DxfFiler& filer) {
    filer.subclass("AcDbGroup");
    filer.string(300, description_);
    filer.int16(70, unnamed_);
    filer.int16(71, selectable_);
    auto member = [&](ObjectId& id) { filer.reference(340, id); };
    if (filer.isWriting()) {
        std::vector<ObjectId> live = allEntityIds();
        filer.records(340, live, member);
    } else {
        filer.records(340, members_, member);
    }
}

std::unique_ptr<DbObject> Group::clone() const {
    return std::unique_ptr<DbObject>(new Group(*this));
}

ErrorStatus addGroup(Database& db, std::unique_ptr<Group> group, std::string_view name,
                     ObjectId& id) {
    id = ObjectId::kNull;
    if (!group) return ErrorStatus::eNullObjectId;
    if (name.empty()) return ErrorStatus::eInvalidKey;
    auto groups = open<Dictionary>(db.groupDictionaryId(), OpenMode::ForWrite);
    if (!groups) {
        return groups.openStatus() == ErrorStatus::eNullObjectId ? ErrorStatus::eKeyNotFound
                                                                 : groups.openStatus();
    }
    std::string key(name);
    if (name == "*") {
        // The lowest number free among the live groups, so the names of erased groups are
        // used again.
        for (int n = 0;; ++n) {
            key = "*A" + std::to_string(n);
            if (!groups->has(key)) break;
        }
        group->setAnonymous();
    } else if (groups->has(key)) {
        return ErrorStatus::eDuplicateKey;
    }
    return groups->setAt(key, std::move(group), id);
}

}  // namespace cad::db
