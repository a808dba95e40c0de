// Finding a block definition of a drawing by its name.
#pragma once

#include <string_view>

#include "cad/db/ObjectId.h"

namespace cad::db {
class Database;
}

namespace vantor {

// The block table record named `name`; a null id when the drawing has none of that name.
cad::db::ObjectId blockNamed(cad::db::Database& database, std::string_view name);

}  // namespace vantor
