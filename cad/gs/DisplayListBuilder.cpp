// Dispatch by entity type, and the curves, points, texts and references.
#include "cad/gs/DisplayListBuilder.h"

#include <cmath>
#include <numbers>

#include "cad/db/Arc.h"
#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Line.h"
#include "cad/db/MText.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Point.h"
#include "cad/db/Polyline.h"
#include "cad/db/Polyline2d.h"
#include "cad/db/Polyline3d.h"
#include "cad/db/RawEntity.h"
#include "cad/db/Spline.h"
#include "cad/db/Text.h"
#include "cad/db/Vertex.h"
#include "cad/db/Vertex2d.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/geometry/CurveFlattening.h"
#include "cad/gs/text/TextGeometry.h"

namespace cad::gs {

namespace {

ge::Point2d xy(const ge::Point3d& p) { return {p.x, p.y}; }

bool finite(const ge::Point3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Flattening finer than this share of a curve's size is never visible.
constexpr double kRelativeTolerance = 1e-4;

double toleranceFor(const db::Entity& entity) {
    db::Extents3d extents;
    if (entity.getGeomExtents(extents) != ErrorStatus::eOk || extents.isEmpty()) return 1e-6;
    const double size = std::max(extents.maxPoint.x - extents.minPoint.x,
                                 extents.maxPoint.y - extents.minPoint.y);
    return std::isfinite(size) && size > 0.0 ? size * kRelativeTolerance : 1e-6;
}

// A conic arc seen from above: the plane's axes scaled by the radii, placed by the normal.
Conic conicOf(const ge::Point3d& centre, const ge::Vector3d& major, const ge::Vector3d& minor,
              double start, double end) {
    if (end < start) end += 2.0 * std::numbers::pi * std::ceil((start - end) / (2.0 * std::numbers::pi));
    return {xy(centre), {major.x, major.y}, {minor.x, minor.y}, start, end};
}

bool finiteConic(const Conic& c) {
    return std::isfinite(c.centre.x) && std::isfinite(c.centre.y) && std::isfinite(c.u.x) &&
           std::isfinite(c.u.y) && std::isfinite(c.v.x) && std::isfinite(c.v.y) &&
           std::isfinite(c.start) && std::isfinite(c.end);
}

}  // namespace

DisplayListBuilder::DisplayListBuilder(DrawingScene& scene, DisplayList& list) : scene_(scene), list_(list) {}

void DisplayListBuilder::addBlock(db::ObjectId block) {
    db::ObjectPtr<db::BlockTableRecord> record(block, db::OpenMode::ForRead);
    if (!record) return;
    const std::vector<db::ObjectId> ids = record->entityIds();
    record.close();
    list_.reserve(ids.size());
    for (db::ObjectId id : ids) {
        db::ObjectPtr<db::Entity> entity(id, db::OpenMode::ForRead);
        if (entity) addEntity(*entity, id);
    }
}

void DisplayListBuilder::addEntity(const db::Entity& entity, db::ObjectId owner) {
    if (!entity.isVisible()) return;
    const std::uint32_t look = list_.addLook(scene_.styles().lookOf(entity));
    if (addCurve(entity, look, owner) || addArea(entity, look, owner)) return;
    if (auto reference = dynamic_cast<const db::BlockReference*>(&entity)) {
        addReference(*reference, look, owner);
    } else if (auto text = dynamic_cast<const db::Text*>(&entity)) {
        bool definition = false;
        if (auto attribute = dynamic_cast<const db::AttributeBase*>(&entity)) {
            if (attribute->isInvisible()) return;
            definition = dynamic_cast<const db::AttributeDefinition*>(&entity) != nullptr &&
                         !attribute->isConstant();
        }
        list_.addText(owner, look, textGeometry(*text), definition);
    } else if (auto mtext = dynamic_cast<const db::MText*>(&entity)) {
        list_.addText(owner, look, mtextGeometry(*mtext), false);
    } else if (auto point = dynamic_cast<const db::Point*>(&entity)) {
        if (finite(point->position())) list_.addPoint(owner, look, xy(point->position()));
    } else if (auto raw = dynamic_cast<const db::RawEntity*>(&entity)) {
        addRawEntity(*raw, look, owner);
    } else {
        addExploded(entity, owner);
    }
}

bool DisplayListBuilder::addCurve(const db::Entity& entity, std::uint32_t look, db::ObjectId owner) {
    if (auto line = dynamic_cast<const db::Line*>(&entity)) {
        const ge::Point2d ends[2] = {xy(line->startPoint()), xy(line->endPoint())};
        if (finite(line->startPoint()) && finite(line->endPoint()))
            list_.addPolyline(owner, look, ends, 2, false);
        return true;
    }
    if (auto circular = dynamic_cast<const db::CircularEntity*>(&entity)) {
        const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(circular->normal());
        const double r = circular->radius();
        double start = 0.0, end = 2.0 * std::numbers::pi;
        if (auto arc = dynamic_cast<const db::Arc*>(&entity)) {
            start = arc->startAngle();
            end = arc->endAngle();
        }
        const Conic conic = conicOf(circular->center(), toWorld * ge::Vector3d(r, 0, 0),
                                    toWorld * ge::Vector3d(0, r, 0), start, end);
        if (finiteConic(conic) && r > 0.0) list_.addConic(owner, look, conic);
        return true;
    }
    if (auto ellipse = dynamic_cast<const db::Ellipse*>(&entity)) {
        const Conic conic = conicOf(ellipse->center(), ellipse->majorAxis(), ellipse->minorAxis(),
                                    ellipse->startParam(), ellipse->endParam());
        if (finiteConic(conic)) list_.addConic(owner, look, conic);
        return true;
    }
    if (auto spline = dynamic_cast<const db::Spline*>(&entity)) {
        addPoints3d(flattenSpline(*spline, toleranceFor(entity)), spline->isClosed(), look, owner);
        return true;
    }
    if (auto polyline = dynamic_cast<const db::Polyline*>(&entity)) {
        std::vector<PathVertex> vertices(polyline->numVerts());
        for (unsigned i = 0; i < polyline->numVerts(); ++i) {
            polyline->getPointAt(i, vertices[i].point);
            polyline->getBulgeAt(i, vertices[i].bulge);
            polyline->getWidthsAt(i, vertices[i].startWidth, vertices[i].endWidth);
        }
        addPath(vertices, polyline->isClosed(),
                ge::Matrix3d::planeToWorld(polyline->normal()) *
                    ge::Matrix3d::translation({0, 0, polyline->elevation()}),
                look, owner);
        return true;
    }
    if (auto polyline = dynamic_cast<const db::Polyline2d*>(&entity)) {
        std::vector<PathVertex> vertices;
        for (db::ObjectId id : polyline->vertexIds()) {
            db::ObjectPtr<db::Vertex2d> vertex(id, db::OpenMode::ForRead);
            if (!vertex || !vertex->isOnCurve()) continue;
            vertices.push_back({{vertex->position().x, vertex->position().y}, vertex->bulge(),
                                vertex->startWidth(), vertex->endWidth()});
        }
        addPath(vertices, polyline->isClosed(),
                ge::Matrix3d::planeToWorld(polyline->normal()) *
                    ge::Matrix3d::translation({0, 0, polyline->elevation()}),
                look, owner);
        return true;
    }
    if (auto polyline = dynamic_cast<const db::Polyline3d*>(&entity)) {
        if (polyline->isPolygonMesh() || polyline->isPolyfaceMesh()) {
            addMesh(*polyline, look, owner);
            return true;
        }
        std::vector<ge::Point3d> points;
        for (db::ObjectId id : polyline->vertexIds()) {
            db::ObjectPtr<db::Vertex> vertex(id, db::OpenMode::ForRead);
            if (vertex && vertex->isOnCurve()) points.push_back(vertex->position());
        }
        addPoints3d(points, polyline->isClosed(), look, owner);
        return true;
    }
    return false;
}

void DisplayListBuilder::addPoints3d(const std::vector<ge::Point3d>& points, bool closed,
                                     std::uint32_t look, db::ObjectId owner) {
    scratch_.clear();
    for (const ge::Point3d& p : points)
        if (finite(p)) scratch_.push_back(xy(p));
    if (scratch_.size() >= 2) list_.addPolyline(owner, look, scratch_.data(), scratch_.size(), closed);
}

void DisplayListBuilder::addReference(const db::BlockReference& reference, std::uint32_t look,
                                      db::ObjectId owner) {
    InsertRef insert;
    insert.block = reference.blockTableRecord();
    insert.transform = Affine2d::fromMatrix(reference.blockTransform());
    if (reference.isMInsert()) {
        // Rows and columns step along the reference's rotated axes, unscaled.
        const ge::Matrix3d axes = ge::Matrix3d::planeToWorld(reference.normal()) *
                                  ge::Matrix3d::rotation(reference.rotation(), ge::Vector3d::kZAxis);
        const ge::Vector3d column = axes * ge::Vector3d(reference.columnSpacing(), 0, 0);
        const ge::Vector3d row = axes * ge::Vector3d(0, reference.rowSpacing(), 0);
        insert.columns = std::max<std::int32_t>(1, reference.columnCount());
        insert.rows = std::max<std::int32_t>(1, reference.rowCount());
        insert.columnStep = {column.x, column.y};
        insert.rowStep = {row.x, row.y};
    }
    addInsert(insert, look, owner);
    for (db::ObjectId id : reference.attributeIds()) {
        db::ObjectPtr<db::Attribute> attribute(id, db::OpenMode::ForRead);
        if (attribute) addEntity(*attribute, owner);
    }
}

void DisplayListBuilder::addInsert(const InsertRef& insert, std::uint32_t look, db::ObjectId owner) {
    const Affine2d& map = insert.transform;
    if (!std::isfinite(map.a + map.b + map.c + map.d + map.e + map.f) || !map.isInvertible()) return;
    list_.addInsert(owner, look, insert, scene_.blockList(insert.block).bounds());
}

void DisplayListBuilder::addExploded(const db::Entity& entity, db::ObjectId owner) {
    std::vector<std::unique_ptr<db::Entity>> pieces;
    if (entity.explode(pieces) != ErrorStatus::eOk) return;
    for (const auto& piece : pieces) {
        if (!piece) continue;
        // A piece of the same type would explode again, for ever.
        const db::Entity& p = *piece;
        if (typeid(p) != typeid(entity)) addEntity(p, owner);
    }
}

}  // namespace cad::gs
