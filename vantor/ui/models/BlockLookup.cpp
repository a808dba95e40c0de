// Finding a block definition by name.
#include "vantor/ui/models/BlockLookup.h"

#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"

namespace vantor {

cad::db::ObjectId blockNamed(cad::db::Database& database, std::string_view name) {
    cad::db::ObjectId id;
    if (auto table = cad::db::open<cad::db::SymbolTable>(database.blockTableId(),
                                                         cad::db::OpenMode::ForRead))
        if (table->getAt(name, id) != cad::ErrorStatus::eOk) id = {};
    return id;
}

}  // namespace vantor
