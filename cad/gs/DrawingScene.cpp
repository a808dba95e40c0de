// Building display lists on demand, with a guard against blocks that contain themselves.
#include "cad/gs/DrawingScene.h"

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/ObjectPtr.h"
#include "cad/gs/DisplayListBuilder.h"

namespace cad::gs {

DrawingScene::DrawingScene(db::Database& database)
    : database_(database), styles_(std::make_unique<DrawingStyles>(database)) {}

DrawingScene::~DrawingScene() = default;

const DisplayList& DrawingScene::blockList(db::ObjectId block) {
    static const DisplayList kEmpty;
    if (auto it = lists_.find(block); it != lists_.end()) return *it->second;
    if (building_.contains(block)) return kEmpty;
    building_.insert(block);
    auto list = std::make_unique<DisplayList>();
    {
        DisplayListBuilder builder(*this, *list);
        builder.addBlock(block);
    }
    list->finish();
    building_.erase(block);
    return *(lists_[block] = std::move(list));
}

DisplayList DrawingScene::entityList(const db::Entity& entity) {
    DisplayList list;
    {
        DisplayListBuilder builder(*this, list);
        builder.addEntity(entity, entity.objectId());
    }
    list.finish();
    return list;
}

void DrawingScene::forEachEntityList(db::ObjectId block, const std::function<void(const DisplayList&)>& use) {
    std::vector<db::ObjectId> ids;
    if (db::ObjectPtr<db::BlockTableRecord> record(block, db::OpenMode::ForRead); record) ids = record->entityIds();
    DisplayList list;
    for (db::ObjectId id : ids) {
        db::ObjectPtr<db::Entity> entity(id, db::OpenMode::ForRead);
        if (!entity) continue;
        list = DisplayList();
        {
            DisplayListBuilder builder(*this, list);
            builder.addEntity(*entity, id);
        }
        entity.close();
        if (!list.items().empty()) use(list);
    }
}

DisplayList DrawingScene::entitiesList(const std::vector<db::ObjectId>& ids) {
    DisplayList list;
    {
        DisplayListBuilder builder(*this, list);
        for (db::ObjectId id : ids)
            if (db::ObjectPtr<db::Entity> entity(id, db::OpenMode::ForRead); entity) builder.addEntity(*entity, id);
    }
    list.finish();
    return list;
}

void DrawingScene::reloadStyles() { styles_ = std::make_unique<DrawingStyles>(database_); }

void DrawingScene::invalidateAll() {
    lists_.clear();
    reloadStyles();
}

}  // namespace cad::gs
