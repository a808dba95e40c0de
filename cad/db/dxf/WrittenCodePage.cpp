#include "cad/db/dxf/WrittenCodePage.h"

#include <string>
#include <vector>

#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"

namespace cad::db::dxf {
namespace {

std::vector<std::string> symbolNames(const Database& db) {
    const auto& ids = db.wellKnownIds();
    std::vector<std::string> names;
    for (const ObjectId tableId :
         {ids.blockTable, ids.layerTable, ids.linetypeTable, ids.textStyleTable, ids.viewTable,
          ids.ucsTable, ids.viewportTable, ids.regAppTable, ids.dimStyleTable}) {
        std::vector<ObjectId> records;
        if (auto table = open<SymbolTable>(tableId, OpenMode::ForRead))
            records = table->recordIds();
        for (const ObjectId id : records) {
            if (auto record = open<SymbolTableRecord>(id, OpenMode::ForRead))
                names.push_back(record->name());
        }
    }
    return names;
}

bool holdsAll(const std::vector<std::string>& names, sys::CodePage codePage) {
    for (const std::string& name : names) {
        if (!sys::canHold(name, codePage)) return false;
    }
    return true;
}

}  // namespace

sys::CodePage writtenCodePage(const Database& db) {
    const sys::CodePage own =
        db.codePage() == sys::CodePage::Utf8 ? sys::CodePage::Ansi1252 : db.codePage();
    if (own == sys::CodePage::Ansi949) return own;
    const std::vector<std::string> names = symbolNames(db);
    if (!holdsAll(names, own) && holdsAll(names, sys::CodePage::Ansi949))
        return sys::CodePage::Ansi949;
    return own;
}

}  // namespace cad::db::dxf
