// Filled and patterned areas: solids, hatches and polylines with widths.
#include <cmath>

#include "cad/db/Hatch.h"
#include "cad/db/Solid.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DisplayListBuilder.h"
#include "cad/gs/geometry/CurveFlattening.h"
#include "cad/gs/geometry/HatchGeometry.h"

namespace cad::gs {

namespace {

// More pattern dashes than this in one hatch cost more to draw than they show: the hatch is
// drawn by its boundary instead.
constexpr std::size_t kMaxHatchSegments = 200'000;

ge::Point2d xy(const ge::Point3d& p) { return {p.x, p.y}; }

}  // namespace

bool DisplayListBuilder::addArea(const db::Entity& entity, std::uint32_t look, db::ObjectId owner) {
    if (auto solid = dynamic_cast<const db::Solid*>(&entity)) {
        std::vector<ge::Point3d> corners(4);
        for (int i = 0; i < 4; ++i) solid->getPointAt(i, corners[static_cast<std::size_t>(i)]);
        addSolid(corners, look, owner);
        return true;
    }
    if (auto hatch = dynamic_cast<const db::Hatch*>(&entity)) {
        addHatch(*hatch, look, owner);
        return true;
    }
    return false;
}

void DisplayListBuilder::addSolid(const std::vector<ge::Point3d>& corners, std::uint32_t look,
                                  db::ObjectId owner) {
    // Corners go round as 1, 2, 4, 3.
    std::vector<std::vector<ge::Point2d>> ring(1);
    for (std::size_t i : {0u, 1u, 3u, 2u}) {
        if (i >= corners.size()) continue;
        const ge::Point3d& p = corners[i];
        if (!(std::isfinite(p.x) && std::isfinite(p.y))) return;
        ring[0].push_back(xy(p));
    }
    list_.addFill(owner, look, ring, false);
}

void DisplayListBuilder::addHatch(const db::Hatch& hatch, std::uint32_t look, db::ObjectId owner) {
    db::Extents3d extents;
    double tolerance = 1e-6;
    if (hatch.getGeomExtents(extents) == ErrorStatus::eOk && !extents.isEmpty()) {
        const double size = std::max(extents.maxPoint.x - extents.minPoint.x,
                                     extents.maxPoint.y - extents.minPoint.y);
        if (std::isfinite(size) && size > 0.0) tolerance = size * 1e-4;
    }
    const HatchGeometry geometry = hatchGeometry(hatch, tolerance, kMaxHatchSegments);
    if (geometry.solid) {
        list_.addFill(owner, look, geometry.loops, true);
        return;
    }
    if (!geometry.segments.empty()) {
        scratch_.clear();
        scratch_.reserve(geometry.segments.size() * 2);
        for (const Segment2d& s : geometry.segments) {
            scratch_.push_back(s.start);
            scratch_.push_back(s.end);
        }
        list_.addSegments(owner, look, scratch_.data(), scratch_.size());
        return;
    }
    // No pattern to draw (too dense, or none understood): the boundary shows where it is.
    for (const Polyline2d& loop : geometry.loops)
        if (loop.size() >= 2) list_.addPolyline(owner, look, loop.data(), loop.size(), true);
}

void DisplayListBuilder::addPath(const std::vector<PathVertex>& vertices, bool closed,
                                 const ge::Matrix3d& toWorld, std::uint32_t look,
                                 db::ObjectId owner) {
    if (vertices.empty()) return;
    Box2d box;
    bool wide = false;
    for (const PathVertex& v : vertices) {
        box.add(v.point);
        wide = wide || v.startWidth > 0.0 || v.endWidth > 0.0;
    }
    if (box.isEmpty()) return;
    const double size = std::max(box.width(), box.height());
    const double tolerance = size > 0.0 ? size * 1e-4 : 1e-6;
    auto place = [&](const ge::Point2d& p) { return xy(toWorld * ge::Point3d(p.x, p.y, 0.0)); };

    std::vector<ge::Point2d> line;  // the centre line, in world coordinates
    std::vector<std::vector<ge::Point2d>> quads;
    const std::size_t segments = closed ? vertices.size() : vertices.size() - 1;
    line.push_back(place(vertices[0].point));
    for (std::size_t i = 0; i < segments; ++i) {
        const PathVertex& from = vertices[i];
        const PathVertex& to = vertices[(i + 1) % vertices.size()];
        const std::vector<ge::Point2d> arc =
            std::abs(from.bulge) > 1e-12 && std::isfinite(from.bulge)
                ? flattenBulge(from.point, to.point, from.bulge, tolerance)
                : std::vector<ge::Point2d>{from.point, to.point};
        for (std::size_t k = 1; k < arc.size(); ++k) line.push_back(place(arc[k]));
        if (!(from.startWidth > 0.0 || from.endWidth > 0.0) || arc.size() < 2) continue;
        // The widths change evenly along the segment; each piece is a quadrilateral across it.
        for (std::size_t k = 0; k + 1 < arc.size(); ++k) {
            const double t0 = double(k) / double(arc.size() - 1), t1 = double(k + 1) / double(arc.size() - 1);
            const double w0 = (from.startWidth + (from.endWidth - from.startWidth) * t0) / 2;
            const double w1 = (from.startWidth + (from.endWidth - from.startWidth) * t1) / 2;
            const ge::Point2d a = arc[k], b = arc[k + 1];
            const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
            if (!(length > 0.0)) continue;
            const double nx = -dy / length, ny = dx / length;
            quads.push_back({place({a.x + nx * w0, a.y + ny * w0}), place({b.x + nx * w1, b.y + ny * w1}),
                             place({b.x - nx * w1, b.y - ny * w1}), place({a.x - nx * w0, a.y - ny * w0})});
        }
    }
    if (closed && line.size() > 1) line.pop_back();  // the closing point is the first
    if (line.size() >= 2 || (line.size() == 1 && !closed))
        list_.addPolyline(owner, look, line.data(), line.size(), closed);
    if (wide && !quads.empty()) list_.addFill(owner, look, quads, false);
}

}  // namespace cad::gs
