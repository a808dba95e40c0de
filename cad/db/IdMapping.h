// The id map of a clone operation: every source object paired with its counterpart in the
// destination, in the order the pairs were made, with the databases and the kind of cloning.
// One map may serve several clone calls into the same destination; what it already holds is
// not cloned again.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/IdPair.h"

namespace cad::db {

// Which operation filled the map.
enum class DeepCloneContext {
    None,           // not used by a clone call yet
    Objects,        // deepCloneObjects: a copy within one database
    WblockObjects,  // wblockCloneObjects: a copy from another database
};

class IdMapping {
public:
    using const_iterator = std::vector<IdPair>::const_iterator;

    IdMapping() = default;
    IdMapping(const IdMapping&) = delete;
    IdMapping& operator=(const IdMapping&) = delete;

    // Adds the pair, or replaces the one with the same key.
    ErrorStatus assign(const IdPair& pair);
    // Looks up pair.key(); on success fills the value and flags and answers true.
    bool compute(IdPair& pair) const;
    // Removes the pair of `key`; eKeyNotFound when there is none.
    ErrorStatus del(ObjectId key);

    Database* destDb() const { return destDb_; }
    Database* origDb() const { return origDb_; }
    // Fixing the destination in advance makes a clone call into another database fail with
    // eWrongDatabase instead of mixing two destinations in one map.
    ErrorStatus setDestDb(Database* db);
    DeepCloneContext deepCloneContext() const { return context_; }
    DuplicateRecordCloning duplicateRecordCloning() const { return drc_; }

    std::size_t size() const { return pairs_.size(); }
    bool empty() const { return pairs_.empty(); }
    const_iterator begin() const { return pairs_.begin(); }
    const_iterator end() const { return pairs_.end(); }

private:
    friend class Database;  // the cloner records its databases, context and progress here

    std::vector<IdPair> pairs_;
    std::unordered_map<ObjectId, std::size_t> index_;
    Database* destDb_ = nullptr;
    Database* origDb_ = nullptr;
    DeepCloneContext context_ = DeepCloneContext::None;
    DuplicateRecordCloning drc_ = DuplicateRecordCloning::Ignore;
    // Clones whose references still name source objects (deferred translation).
    std::vector<ObjectId> untranslated_;
};

}  // namespace cad::db
