// ObjectId queries: everything is answered by the slot the id points at.
#include "cad/db/ObjectId.h"

#include "cad/db/ObjectSlot.h"

namespace cad::db {

const ObjectId ObjectId::kNull{};

bool ObjectId::isValid() const { return slot_ != nullptr && slot_->object != nullptr; }

bool ObjectId::isErased() const { return slot_ != nullptr && slot_->erased; }

bool ObjectId::isLive() const { return isValid() && !slot_->erased; }

Handle ObjectId::handle() const { return slot_ ? slot_->handle : Handle{}; }

Database* ObjectId::database() const { return slot_ ? slot_->database : nullptr; }

std::int64_t ObjectId::asOldId() const {
    return slot_ ? static_cast<std::int64_t>(slot_->handle.value) : 0;
}

}  // namespace cad::db
