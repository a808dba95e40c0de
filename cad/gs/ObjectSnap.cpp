// Finding snap points.
#include "cad/gs/ObjectSnap.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "cad/db/Arc.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Line.h"
#include "cad/db/MText.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Point.h"
#include "cad/db/Polyline.h"
#include "cad/db/RawEntity.h"
#include "cad/db/Text.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/EntityPicker.h"
#include "cad/gs/ItemSegments.h"

namespace cad::gs {

namespace {

// Segments near the cursor that intersections are looked for among, at most.
constexpr std::size_t kMaxSegments = 2000;

ge::Point2d xy(const ge::Point3d& p) { return {p.x, p.y}; }

struct Candidates {
    std::vector<SnapPoint> points;
    int modes = 0;
    db::ObjectId entity;
    void add(const ge::Point2d& p, SnapMode mode) {
        if ((modes & mode) && std::isfinite(p.x) && std::isfinite(p.y)) points.push_back({p, mode, entity});
    }
};

// Centre, quadrants, and for an arc its ends and middle, of centre + u cos t + v sin t.
void conicPoints(Candidates& out, const ge::Point2d& centre, const ge::Point2d& u, const ge::Point2d& v,
                 double start, double end, bool whole) {
    auto at = [&](double t) {
        return ge::Point2d{centre.x + u.x * std::cos(t) + v.x * std::sin(t),
                           centre.y + u.y * std::cos(t) + v.y * std::sin(t)};
    };
    const double tau = 2.0 * std::numbers::pi;
    while (end < start) end += tau;
    out.add(centre, kSnapCenter);
    for (int q = 0; q < 4; ++q) {
        double t = q * std::numbers::pi / 2;
        while (t < start) t += tau;
        if (whole || t <= end) out.add(at(t), kSnapQuadrant);
    }
    if (whole) return;
    out.add(at(start), kSnapEndpoint);
    out.add(at(end), kSnapEndpoint);
    out.add(at((start + end) / 2), kSnapMidpoint);
}

void entityPoints(Candidates& out, const db::Entity& entity) {
    if (auto line = dynamic_cast<const db::Line*>(&entity)) {
        const ge::Point2d a = xy(line->startPoint()), b = xy(line->endPoint());
        out.add(a, kSnapEndpoint);
        out.add(b, kSnapEndpoint);
        out.add({(a.x + b.x) / 2, (a.y + b.y) / 2}, kSnapMidpoint);
    } else if (auto circular = dynamic_cast<const db::CircularEntity*>(&entity)) {
        const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(circular->normal());
        const ge::Vector3d u = toWorld * ge::Vector3d(circular->radius(), 0, 0);
        const ge::Vector3d v = toWorld * ge::Vector3d(0, circular->radius(), 0);
        auto arc = dynamic_cast<const db::Arc*>(&entity);
        conicPoints(out, xy(circular->center()), {u.x, u.y}, {v.x, v.y}, arc ? arc->startAngle() : 0.0,
                    arc ? arc->endAngle() : 0.0, arc == nullptr);
    } else if (auto ellipse = dynamic_cast<const db::Ellipse*>(&entity)) {
        const double sweep = ellipse->endParam() - ellipse->startParam();
        conicPoints(out, xy(ellipse->center()), {ellipse->majorAxis().x, ellipse->majorAxis().y},
                    {ellipse->minorAxis().x, ellipse->minorAxis().y}, ellipse->startParam(),
                    ellipse->endParam(), std::abs(std::abs(sweep) - 2.0 * std::numbers::pi) < 1e-9 || sweep == 0.0);
    } else if (auto polyline = dynamic_cast<const db::Polyline*>(&entity)) {
        const unsigned n = polyline->numVerts();
        std::vector<ge::Point3d> vertices(n);
        for (unsigned i = 0; i < n; ++i) polyline->getPointAt(i, vertices[i]);
        for (unsigned i = 0; i < n; ++i) out.add(xy(vertices[i]), kSnapEndpoint);
        const unsigned segments = polyline->isClosed() ? n : (n > 0 ? n - 1 : 0);
        for (unsigned i = 0; i < segments; ++i) {
            const ge::Point3d& a = vertices[i];
            const ge::Point3d& b = vertices[(i + 1) % n];
            double bulge = 0.0;
            polyline->getBulgeAt(i, bulge);
            // The middle of a bulged segment lies off the chord by the sagitta.
            const double sagitta = bulge * std::hypot(b.x - a.x, b.y - a.y) / 2;
            const double length = std::hypot(b.x - a.x, b.y - a.y);
            ge::Point2d mid{(a.x + b.x) / 2, (a.y + b.y) / 2};
            if (length > 0.0) mid = {mid.x + (b.y - a.y) / length * sagitta, mid.y - (b.x - a.x) / length * sagitta};
            out.add(mid, kSnapMidpoint);
        }
    } else if (auto point = dynamic_cast<const db::Point*>(&entity)) {
        out.add(xy(point->position()), kSnapNode);
    } else if (auto reference = dynamic_cast<const db::BlockReference*>(&entity)) {
        out.add(xy(reference->position()), kSnapInsertion);
    } else if (auto text = dynamic_cast<const db::Text*>(&entity)) {
        out.add(xy(text->position()), kSnapInsertion);
    } else if (auto mtext = dynamic_cast<const db::MText*>(&entity)) {
        out.add(xy(mtext->location()), kSnapInsertion);
    }
}

constexpr int kMaxDepth = 16;

// Points of interest of drawn geometry, for what has no exact geometry of its own to ask:
// the contents of blocks and of the types kept as tags (dimensions, tables, leaders).
// Polylines give only their two ends: their inner points may be the flattening of an arc.
void drawnPoints(Candidates& out, DrawingScene& scene, const DisplayList& list, const DisplayItem& item,
                 const Affine2d& toTarget, int depth) {
    const auto& points = list.points();
    auto add = [&](const ge::Point2d& p, SnapMode mode) { out.add(toTarget.map(p), mode); };
    switch (item.kind) {
    case ItemKind::Polyline:
        if (item.count == 0) return;
        add(points[item.first], kSnapEndpoint);
        add(points[item.first + item.count - 1], kSnapEndpoint);
        if (item.count == 2)
            add({(points[item.first].x + points[item.first + 1].x) / 2, (points[item.first].y + points[item.first + 1].y) / 2},
                kSnapMidpoint);
        return;
    case ItemKind::Segments:
        for (std::uint32_t i = 0; i + 1 < item.count; i += 2) {
            const ge::Point2d& a = points[item.first + i];
            const ge::Point2d& b = points[item.first + i + 1];
            add(a, kSnapEndpoint);
            add(b, kSnapEndpoint);
            add({(a.x + b.x) / 2, (a.y + b.y) / 2}, kSnapMidpoint);
        }
        return;
    case ItemKind::Point: add(points[item.first], kSnapNode); return;
    case ItemKind::Conic: {
        const Conic& c = list.conics()[item.first];
        const bool whole = c.end - c.start >= 2.0 * std::numbers::pi - 1e-9;
        Candidates local;
        local.modes = out.modes;
        local.entity = out.entity;
        conicPoints(local, c.centre, c.u, c.v, c.start, c.end, whole);
        for (const SnapPoint& p : local.points) out.add(toTarget.map(p.point), p.mode);
        return;
    }
    case ItemKind::Insert: {
        if (depth >= kMaxDepth) return;
        const InsertRef& insert = list.inserts()[item.first];
        const DisplayList& block = scene.blockList(insert.block);
        const Affine2d map = toTarget * insert.transform;
        // Only the first cell of an array: its others are copies a user rarely aims at.
        for (const DisplayItem& inner : block.items())
            if (!(inner.flags & DisplayItem::kAttributeDefinition)) drawnPoints(out, scene, block, inner, map, depth + 1);
        return;
    }
    default: return;
    }
}

std::optional<ge::Point2d> intersection(const Segment& p, const Segment& q) {
    const double rx = p.b.x - p.a.x, ry = p.b.y - p.a.y, sx = q.b.x - q.a.x, sy = q.b.y - q.a.y;
    const double denominator = rx * sy - ry * sx;
    if (std::abs(denominator) < 1e-300) return std::nullopt;
    const double t = ((q.a.x - p.a.x) * sy - (q.a.y - p.a.y) * sx) / denominator;
    const double u = ((q.a.x - p.a.x) * ry - (q.a.y - p.a.y) * rx) / denominator;
    constexpr double kSlack = 1e-9;
    if (t < -kSlack || t > 1 + kSlack || u < -kSlack || u > 1 + kSlack) return std::nullopt;
    return ge::Point2d{p.a.x + rx * t, p.a.y + ry * t};
}

}  // namespace

std::optional<SnapPoint> findSnap(DrawingScene& scene, db::ObjectId block, const ge::Point2d& cursor,
                                  double aperture, int modes) {
    if ((modes & kSnapOff) || modes == 0 || !(aperture > 0.0)) return std::nullopt;
    const EntityPicker picker(scene, block);
    const std::vector<db::ObjectId> near = picker.entitiesAt(cursor, aperture);
    Candidates candidates;
    candidates.modes = modes;
    const DisplayList& space = scene.blockList(block);
    // References and the types kept as tags are snapped to by what they draw.
    std::vector<db::ObjectId> byDrawing;
    for (db::ObjectId id : near) {
        db::ObjectPtr<db::Entity> entity(id, db::OpenMode::ForRead);
        if (!entity) continue;
        candidates.entity = id;
        entityPoints(candidates, *entity);
        if (dynamic_cast<const db::RawEntity*>(entity.get()) || dynamic_cast<const db::BlockReference*>(entity.get()))
            byDrawing.push_back(id);
    }
    if (!byDrawing.empty()) {
        std::vector<std::uint32_t> hits;
        space.query({cursor.x - aperture, cursor.y - aperture, cursor.x + aperture, cursor.y + aperture}, hits);
        for (std::uint32_t index : hits) {
            const DisplayItem& item = space.items()[index];
            if (std::find(byDrawing.begin(), byDrawing.end(), item.entity) == byDrawing.end()) continue;
            candidates.entity = item.entity;
            drawnPoints(candidates, scene, space, item, Affine2d{}, 0);
        }
    }

    // Intersections and nearest points come from what is drawn near the cursor.
    struct Owned {
        Segment segment;
        db::ObjectId entity;
    };
    std::vector<Owned> segments;
    if (modes & (kSnapIntersection | kSnapNearest)) {
        const DisplayList& list = space;
        std::vector<std::uint32_t> hits;
        const Box2d box{cursor.x - aperture, cursor.y - aperture, cursor.x + aperture, cursor.y + aperture};
        list.query(box, hits);
        for (std::uint32_t index : hits) {
            const DisplayItem& item = list.items()[index];
            if (std::find(near.begin(), near.end(), item.entity) == near.end()) continue;
            forEachSegment(scene, list, item, Affine2d{}, aperture / 100.0, [&](const Segment& s) {
                if (distanceTo(s, cursor) <= aperture) segments.push_back({s, item.entity});
                return segments.size() < kMaxSegments;
            });
        }
    }
    if (modes & kSnapIntersection)
        for (std::size_t i = 0; i < segments.size(); ++i)
            for (std::size_t j = i + 1; j < segments.size(); ++j) {
                // Pieces of one entity meet at their joints, which are not intersections.
                if (segments[i].entity == segments[j].entity) continue;
                if (auto p = intersection(segments[i].segment, segments[j].segment))
                    candidates.points.push_back({*p, kSnapIntersection, segments[i].entity});
            }

    const SnapPoint* best = nullptr;
    double bestDistance = aperture;
    for (const SnapPoint& p : candidates.points) {
        const double d = std::hypot(p.point.x - cursor.x, p.point.y - cursor.y);
        if (d <= bestDistance) {
            bestDistance = d;
            best = &p;
        }
    }
    if (best != nullptr) return *best;
    if (!(modes & kSnapNearest) || segments.empty()) return std::nullopt;
    SnapPoint nearest{cursor, kSnapNearest, {}};
    double nearestDistance = 1e300;
    for (const Owned& owned : segments) {
        const ge::Point2d p = nearestOn(owned.segment, cursor);
        const double d = std::hypot(p.x - cursor.x, p.y - cursor.y);
        if (d < nearestDistance) {
            nearestDistance = d;
            nearest = {p, kSnapNearest, owned.entity};
        }
    }
    return nearest;
}

}  // namespace cad::gs
