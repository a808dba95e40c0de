// The name by which selection sets and entity selection hand out an entity; getObjectId turns
// it into the object id that database work opens.
#pragma once

#include "cad/db/ObjectId.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::ed {

struct EntityName {
    db::ObjectId id;
    bool isNull() const { return id.isNull(); }
    friend bool operator==(const EntityName&, const EntityName&) = default;
};

inline ErrorStatus getObjectId(db::ObjectId& id, const EntityName& name) {
    id = name.id;
    return name.isNull() ? ErrorStatus::eNullObjectId : ErrorStatus::eOk;
}

}  // namespace cad::ed
