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
    for (db::ObjectId id : near) {
        db::ObjectPtr<db::Entity> entity(id, db::OpenMode::ForRead);
        if (!entity) continue;
        candidates.entity = id;
        entityPoints(candidates, *entity);
    }

    // Intersections and nearest points come from what is drawn near the cursor.
    struct Owned {
        Segment segment;
        db::ObjectId entity;
    };
    std::vector<Owned> segments;
    if (modes & (kSnapIntersection | kSnapNearest)) {
        const DisplayList& list = scene.blockList(block);
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
