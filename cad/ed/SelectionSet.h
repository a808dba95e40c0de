// A selection set: the entities a selection gathered, in the order they were selected, each
// once.
#pragma once

#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ed/EntityName.h"

namespace cad::ed {

class SelectionSet {
public:
    // RTNORM; an entity already in the set stays where it is. RTERROR for a null name.
    int add(const EntityName& name);
    long length() const { return static_cast<long>(ids_.size()); }
    // RTNORM, or RTERROR when the index is outside the set.
    int name(long index, EntityName& name) const;
    int objectId(long index, db::ObjectId& id) const;
    bool contains(db::ObjectId id) const;
    void free() { ids_.clear(); }

    const std::vector<db::ObjectId>& ids() const { return ids_; }

private:
    std::vector<db::ObjectId> ids_;
};

}  // namespace cad::ed
