// Turns the entities of a block definition into display-list items: each entity type into
// the few kinds of item a renderer knows (polylines, segments, fills, conics, points, texts,
// references, infinite lines). Curves are flattened finely enough that the error stays under
// a pixel far into a zoom; circles and ellipses stay exact and are flattened when drawn.
// Entities that cannot be drawn (unknown types, damaged numbers) are skipped.
// The per-type work is split by family: DisplayListBuilder.cpp (dispatch, curves, points,
// references), BuildAreas.cpp (solids, hatches, wide polylines, wipeouts), BuildRawEntities.cpp
// (the types the database keeps as tags: dimensions, leaders, xlines, faces, images),
// BuildMeshes.cpp (polygon and polyface meshes).
#pragma once

#include <array>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/db/RawTag.h"
#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point2d.h"
#include "cad/gs/DisplayList.h"

namespace cad::db {
class BlockReference;
class Entity;
class Hatch;
class Polyline;
class Polyline2d;
class Polyline3d;
class RawEntity;
class Solid;
}  // namespace cad::db

namespace cad::gs {

class DrawingScene;

class DisplayListBuilder {
public:
    DisplayListBuilder(DrawingScene& scene, DisplayList& list);

    // Every visible entity of the block, in drawing order.
    void addBlock(db::ObjectId block);
    // One entity; `owner` is the top-level entity the items are picked as (the entity itself,
    // or the reference whose attribute it is).
    void addEntity(const db::Entity& entity, db::ObjectId owner);

    // A vertex of a 2D polyline in its own plane.
    struct PathVertex {
        ge::Point2d point;
        double bulge = 0.0;
        double startWidth = 0.0, endWidth = 0.0;
    };

private:
    bool addCurve(const db::Entity& entity, std::uint32_t look, db::ObjectId owner);
    bool addArea(const db::Entity& entity, std::uint32_t look, db::ObjectId owner);
    void addReference(const db::BlockReference& reference, std::uint32_t look, db::ObjectId owner);
    void addRawEntity(const db::RawEntity& entity, std::uint32_t look, db::ObjectId owner);
    // A layout's viewport: its border, and model space seen through it.
    void addViewport(const std::vector<db::RawTag>& tags, std::uint32_t look, db::ObjectId owner);
    void addMultiline(const std::vector<db::RawTag>& tags, std::uint32_t look, db::ObjectId owner);
    void addSubdivisionMesh(const std::vector<db::RawTag>& tags, std::uint32_t look, db::ObjectId owner);
    void addHatch(const db::Hatch& hatch, std::uint32_t look, db::ObjectId owner);
    void addSolid(const std::vector<ge::Point3d>& corners, std::uint32_t look, db::ObjectId owner);
    // A 2D path of bulged and possibly wide segments placed by `toWorld`.
    void addPath(const std::vector<PathVertex>& vertices, bool closed, const ge::Matrix3d& toWorld,
                 std::uint32_t look, db::ObjectId owner);
    // Polygon and polyface meshes, by their edges.
    void addMesh(const db::Polyline3d& mesh, std::uint32_t look, db::ObjectId owner);
    void addPoints3d(const std::vector<ge::Point3d>& points, bool closed, std::uint32_t look,
                     db::ObjectId owner);
    void addInsert(const InsertRef& insert, std::uint32_t look, db::ObjectId owner);
    // The pieces an entity explodes into, drawn in its place.
    void addExploded(const db::Entity& entity, db::ObjectId owner);

    DrawingScene& scene_;
    DisplayList& list_;
    std::vector<ge::Point2d> scratch_;
};

}  // namespace cad::gs
