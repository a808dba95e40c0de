// Selection-set bookkeeping.
#include "cad/ed/SelectionSet.h"

#include <algorithm>

#include "cad/ed/ResultCodes.h"

namespace cad::ed {

int SelectionSet::add(const EntityName& name) {
    if (name.isNull()) return RTERROR;
    if (!contains(name.id)) ids_.push_back(name.id);
    return RTNORM;
}

int SelectionSet::name(long index, EntityName& name) const {
    db::ObjectId id;
    int result = objectId(index, id);
    name = EntityName{id};
    return result;
}

int SelectionSet::objectId(long index, db::ObjectId& id) const {
    if (index < 0 || index >= length()) {
        id = db::ObjectId::kNull;
        return RTERROR;
    }
    id = ids_[static_cast<std::size_t>(index)];
    return RTNORM;
}

bool SelectionSet::contains(db::ObjectId id) const {
    return std::find(ids_.begin(), ids_.end(), id) != ids_.end();
}

}  // namespace cad::ed
