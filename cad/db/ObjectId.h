// The in-memory id of a database object. Ids are cheap to copy and compare; they stay valid
// for the life of the database, also for objects that are erased or not loaded (yet).
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "cad/db/Handle.h"

namespace cad::db {

class Database;
struct ObjectSlot;

class ObjectId {
public:
    constexpr ObjectId() = default;
    constexpr explicit ObjectId(ObjectSlot* slot) : slot_(slot) {}

    static const ObjectId kNull;

    constexpr bool isNull() const { return slot_ == nullptr; }
    // True when the id names an object that exists (erased or not); false for the null id and
    // for a reference to a handle that no object of the file carries.
    bool isValid() const;
    bool isErased() const;
    // True when the id names an object that exists and is not erased: the objects lists,
    // owners and references may lead to.
    bool isLive() const;
    Handle handle() const;
    Database* database() const;

    // The id as a number, for formats that store ids as decimal text. It is the handle's
    // value: unique within one database and the same every time a drawing is read, so files
    // written from it are reproducible.
    std::int64_t asOldId() const;

    ObjectSlot* slot() const { return slot_; }

    friend bool operator==(const ObjectId&, const ObjectId&) = default;
    friend std::strong_ordering operator<=>(const ObjectId& a, const ObjectId& b) {
        return std::compare_three_way{}(a.slot_, b.slot_);
    }

private:
    ObjectSlot* slot_ = nullptr;
};

}  // namespace cad::db

template <>
struct std::hash<cad::db::ObjectId> {
    std::size_t operator()(const cad::db::ObjectId& id) const noexcept {
        return std::hash<const void*>{}(id.slot());
    }
};
