// The database's record of one object: its handle, the object itself once it exists, and its
// open state. An ObjectId points at a slot, so references read from a file can be resolved
// before the object they name has been read.
#pragma once

#include <memory>

#include "cad/db/Handle.h"

namespace cad::db {

class Database;
class DbObject;

struct ObjectSlot {
    Database* database = nullptr;
    Handle handle;
    std::unique_ptr<DbObject> object;  // null while only referenced
    int readers = 0;
    bool writer = false;
    bool erased = false;
};

}  // namespace cad::db
