// Counting a drawing's contents: every object opened for reading, one at a time.
#include "apps/cadtool/DrawingSummary.h"

#include <algorithm>

#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SequenceEnd.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/sys/CodePage.h"

namespace cadtool {

using namespace cad::db;

DrawingSummary DrawingSummary::of(const Database& db) {
    DrawingSummary summary;
    summary.version = std::string(acadVer(db.originalFileVersion()));
    summary.codePage = std::string(cad::sys::dxfCodePageName(db.codePage()));
    for (const ObjectId id : db.objectIds()) {
        const auto opened = open<DbObject>(id, OpenMode::ForRead);
        if (!opened) continue;  // erased
        const DbObject* object = opened.get();
        const std::string type(object->dxfName());
        if (dynamic_cast<const Entity*>(object) != nullptr) {
            // The markers that frame a block or close a run of sub-entities are structure,
            // not drawing content.
            if (dynamic_cast<const BlockBegin*>(object) == nullptr &&
                dynamic_cast<const BlockEnd*>(object) == nullptr &&
                dynamic_cast<const SequenceEnd*>(object) == nullptr)
                ++summary.entities[type];
        } else if (dynamic_cast<const SymbolTableRecord*>(object) != nullptr) {
            ++summary.tables[type];
        } else if (dynamic_cast<const SymbolTable*>(object) == nullptr) {
            ++summary.objects[type];
        }
    }
    if (const auto dictionary = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead)) {
        for (const Dictionary::Entry& entry : dictionary->entries())
            summary.namedObjects.push_back(entry.key);
    }
    std::sort(summary.namedObjects.begin(), summary.namedObjects.end());
    return summary;
}

}  // namespace cadtool
