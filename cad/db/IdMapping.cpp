// IdMapping: pairs kept in the order they were made, so the clones get handles in that order
// and the result of a clone is the same every time.
#include "cad/db/IdMapping.h"

namespace cad::db {

ErrorStatus IdMapping::assign(const IdPair& pair) {
    if (pair.key().isNull()) return ErrorStatus::eNullObjectId;
    auto [it, added] = index_.try_emplace(pair.key(), pairs_.size());
    if (added) {
        pairs_.push_back(pair);
    } else {
        pairs_[it->second] = pair;
    }
    return ErrorStatus::eOk;
}

bool IdMapping::compute(IdPair& pair) const {
    auto it = index_.find(pair.key());
    if (it == index_.end()) return false;
    pair = pairs_[it->second];
    return true;
}

ErrorStatus IdMapping::del(ObjectId key) {
    auto it = index_.find(key);
    if (it == index_.end()) return ErrorStatus::eKeyNotFound;
    const std::size_t removed = it->second;
    index_.erase(it);
    pairs_.erase(pairs_.begin() + static_cast<std::ptrdiff_t>(removed));
    for (auto& [id, position] : index_) {
        if (position > removed) --position;
    }
    return ErrorStatus::eOk;
}

ErrorStatus IdMapping::setDestDb(Database* db) {
    if (destDb_ != nullptr && destDb_ != db && !pairs_.empty()) return ErrorStatus::eWrongDatabase;
    destDb_ = db;
    return ErrorStatus::eOk;
}

}  // namespace cad::db
