// The outline of a 2D polyline (LWPOLYLINE, 2D POLYLINE, a hatch's polyline path): vertices
// in the object coordinate system, each with the bulge of the segment that starts there.
#pragma once

#include <memory>
#include <vector>

#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db {

class Entity;
struct Extents3d;

struct BulgedPath {
    struct Vertex {
        ge::Point3d point;
        double bulge = 0.0;
    };
    std::vector<Vertex> vertices;
    bool closed = false;

    // Exact bounds of the segments, arcs included, in world coordinates.
    void addToExtents(Extents3d& extents, const ge::Matrix3d& toWorld) const;
    // The segments as lines and arcs in world coordinates (normal and thickness of the
    // polyline), with the entity properties of `source`; zero-length segments are left out.
    void explode(const Entity& source, const ge::Vector3d& normal, double thickness,
                 std::vector<std::unique_ptr<Entity>>& pieces) const;

private:
    std::size_t segmentCount() const;
};

}  // namespace cad::db
