// Copying and capturing block definitions.
#include "vantor/placement/BlockTransfer.h"

#include <memory>
#include <string>

#include "cad/app/UserDialogs.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/IdMapping.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::BlockTableRecord;
using cad::db::ObjectId;
using cad::db::OpenMode;

namespace {

// The target's block `name`, emptied of its entities when it exists (the record stays, so
// its references keep pointing at it), else a new one; its origin set. A null id on failure.
ObjectId emptiedRecord(cad::db::Database& target, std::string_view name,
                       const cad::ge::Point3d& origin, bool exists) {
    ObjectId id;
    auto table = cad::db::open<cad::db::SymbolTable>(target.blockTableId(), OpenMode::ForWrite);
    if (!table) return {};
    if (exists && table->getAt(name, id) == ErrorStatus::eOk) {
        auto record = cad::db::open<BlockTableRecord>(id, OpenMode::ForWrite);
        if (!record) return {};
        for (ObjectId entity : record->entityIds())
            if (auto opened = cad::db::open<cad::db::Entity>(entity, OpenMode::ForWrite))
                opened->erase();
        record->setOrigin(origin);
        return id;
    }
    auto record = std::make_unique<BlockTableRecord>();
    if (record->setName(name) != ErrorStatus::eOk) return {};
    record->setOrigin(origin);
    if (table->add(std::move(record), id) != ErrorStatus::eOk) return {};
    return id;
}

// A refilled block's stored icon shows what it held before: it goes, and the block lists draw
// the new content instead. References need no refresh: the view draws each one through its
// block whenever it paints.
ObjectId finished(ObjectId record) {
    if (auto opened = cad::db::open<BlockTableRecord>(record, OpenMode::ForWrite);
        opened && opened->hasPreviewIcon())
        opened->setPreviewIcon({});
    return record;
}

bool hasBlock(cad::db::Database& db, std::string_view name) {
    auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForRead);
    return table && table->has(name);
}

}  // namespace

ObjectId BlockTransfer::copyDefinition(cad::db::Database& target, ObjectId sourceBlock) {
    std::vector<ObjectId> entities;
    std::string name;
    cad::ge::Point3d origin;
    {
        auto source = cad::db::open<BlockTableRecord>(sourceBlock, OpenMode::ForRead);
        if (!source) return {};
        entities = source->entityIds();
        name = source->name();
        origin = source->origin();
    }
    const ObjectId record = emptiedRecord(target, name, origin, hasBlock(target, name));
    if (record.isNull()) return {};
    cad::db::IdMapping map;
    if (target.wblockCloneObjects(entities, record, map, cad::db::DuplicateRecordCloning::Ignore) !=
        ErrorStatus::eOk)
        return {};
    return finished(record);
}

ObjectId BlockTransfer::capture(const std::vector<ObjectId>& entities, cad::db::Database& target,
                                bool sameDatabase, cad::ed::Editor& editor,
                                cad::app::UserDialogs& dialogs) {
    std::string name;
    if (editor.getString("Input block name: ", name) != cad::ed::RTNORM) return {};
    cad::ge::Point3d base;
    if (editor.getPoint("Pick base point: ", base) != cad::ed::RTNORM) return {};
    const bool exists = hasBlock(target, name);
    if (exists &&
        dialogs.messageBox(kUpdateQuestion, kUpdateTitle,
                           cad::app::MB_OKCANCEL | cad::app::MB_ICONWARNING) != cad::app::IDOK)
        return {};
    const ObjectId record = emptiedRecord(target, name, base, exists);
    if (record.isNull()) return {};
    cad::db::IdMapping map;
    const ErrorStatus es = sameDatabase
                               ? target.deepCloneObjects(entities, record, map)
                               : target.wblockCloneObjects(entities, record, map,
                                                           cad::db::DuplicateRecordCloning::Ignore);
    return es == ErrorStatus::eOk ? finished(record) : ObjectId{};
}

}  // namespace vantor
