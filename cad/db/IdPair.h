// One entry of a cloning id map: the source object, its counterpart in the destination and
// what the cloner has done with it so far.
#pragma once

#include "cad/db/ObjectId.h"

namespace cad::db {

class IdPair {
public:
    IdPair() = default;
    // isCloned false means `value` is an object that already existed (the destination's own
    // layer, a table, the owner given to the clone call) rather than a copy made by cloning.
    IdPair(ObjectId key, ObjectId value, bool isCloned, bool isPrimary = false,
           bool isOwnerXlated = true)
        : key_(key),
          value_(value),
          cloned_(isCloned),
          primary_(isPrimary),
          ownerXlated_(isOwnerXlated) {}

    ObjectId key() const { return key_; }
    ObjectId value() const { return value_; }
    // The copy was made by this cloning (not an existing object standing in for the source).
    bool isCloned() const { return cloned_; }
    // The source was one of the ids handed to the clone call, not something brought along.
    bool isPrimary() const { return primary_; }
    // The clone's owner already names an object of the destination.
    bool isOwnerXlated() const { return ownerXlated_; }

    void setKey(ObjectId key) { key_ = key; }
    void setValue(ObjectId value) { value_ = value; }
    void setIsCloned(bool cloned) { cloned_ = cloned; }
    void setIsPrimary(bool primary) { primary_ = primary; }
    void setIsOwnerXlated(bool translated) { ownerXlated_ = translated; }

    friend bool operator==(const IdPair&, const IdPair&) = default;

private:
    ObjectId key_;
    ObjectId value_;
    bool cloned_ = false;
    bool primary_ = false;
    bool ownerXlated_ = true;
};

}  // namespace cad::db
