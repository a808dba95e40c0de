// BulgedPath: extents and explode of polyline outlines.
#include "cad/db/BulgedPath.h"

#include "cad/db/Arc.h"
#include "cad/db/EllipticalArc.h"
#include "cad/db/Entity.h"
#include "cad/db/Line.h"

namespace cad::db {

std::size_t BulgedPath::segmentCount() const {
    if (vertices.size() < 2) return 0;
    return closed ? vertices.size() : vertices.size() - 1;
}

void BulgedPath::addToExtents(Extents3d& extents, const ge::Matrix3d& toWorld) const {
    for (const Vertex& v : vertices) extents.addPoint(toWorld * v.point);
    for (std::size_t i = 0; i < segmentCount(); ++i) {
        const Vertex& from = vertices[i];
        const Vertex& to = vertices[(i + 1) % vertices.size()];
        if (from.bulge == 0.0 || from.point.isEqualTo(to.point)) continue;
        EllipticalArc arc = EllipticalArc::fromBulge(from.point, to.point, from.bulge);
        arc.transformBy(toWorld);
        arc.addToExtents(extents);
    }
}

void BulgedPath::explode(const Entity& source, const ge::Vector3d& normal, double thickness,
                         std::vector<std::unique_ptr<Entity>>& pieces) const {
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal);
    for (std::size_t i = 0; i < segmentCount(); ++i) {
        const Vertex& from = vertices[i];
        const Vertex& to = vertices[(i + 1) % vertices.size()];
        if (from.point.isEqualTo(to.point)) continue;
        std::unique_ptr<Entity> piece;
        if (from.bulge == 0.0) {
            auto line = std::make_unique<Line>(toWorld * from.point, toWorld * to.point);
            line->setNormal(normal);
            line->setThickness(thickness);
            piece = std::move(line);
        } else {
            const EllipticalArc arc = EllipticalArc::fromBulge(from.point, to.point, from.bulge);
            auto segment = std::make_unique<Arc>(toWorld * arc.center, normal, arc.u.length(),
                                                 arc.start, arc.end);
            segment->setThickness(thickness);
            piece = std::move(segment);
        }
        piece->setPropertiesFrom(source);
        pieces.push_back(std::move(piece));
    }
}

}  // namespace cad::db
