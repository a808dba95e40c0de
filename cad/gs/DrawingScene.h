// The drawable form of one drawing: its styles and, per block definition (model space,
// each paper space, every block), a display list built on first use and kept until the
// drawing changes. Views, previews, icons and offscreen renders all draw from a scene.
#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingStyles.h"

namespace cad::db {
class Database;
class Entity;
}  // namespace cad::db

namespace cad::gs {

class DrawingScene {
public:
    explicit DrawingScene(db::Database& database);
    ~DrawingScene();
    DrawingScene(const DrawingScene&) = delete;
    DrawingScene& operator=(const DrawingScene&) = delete;

    db::Database& database() const { return database_; }
    const DrawingStyles& styles() const { return *styles_; }
    // The geometry of a block table record; an empty list for an id that is no block, and for
    // a block that contains itself while it is being built (it draws once, not for ever).
    const DisplayList& blockList(db::ObjectId block);
    // The geometry of one entity that need not be in the drawing (a dragged one): built on
    // each call, with the blocks it references taken from the scene.
    DisplayList entityList(const db::Entity& entity);
    // The geometry of a block's entities one entity at a time, none of it kept: how a
    // picture of a drawing too large to hold twice is drawn.
    void forEachEntityList(db::ObjectId block, const std::function<void(const DisplayList&)>& use);
    // The geometry of these entities of the drawing together (a selection to highlight).
    DisplayList entitiesList(const std::vector<db::ObjectId>& ids);

    // Layers or linetypes changed: styles are read again; geometry is kept.
    void reloadStyles();
    void invalidateAll();

private:
    db::Database& database_;
    std::unique_ptr<DrawingStyles> styles_;
    std::unordered_map<db::ObjectId, std::unique_ptr<DisplayList>> lists_;
    std::unordered_set<db::ObjectId> building_;
};

}  // namespace cad::gs
