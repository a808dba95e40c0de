// POLYLINE of the 3D kinds: a 3D polyline, a polygon mesh or a polyface mesh, owning
// Vertex3d entities in world coordinates. Meshes are kept with their counts and vertex flags
// so they are written back as read and move with transforms.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/db/ComplexEntity.h"

namespace cad::db {

class Vertex3d;

class Polyline3d : public ComplexEntity {
public:
    // POLYLINE flags (70) of the 3D kinds.
    static constexpr std::int16_t kClosed = 1;  // closed in M for meshes
    static constexpr std::int16_t kSplineFit = 4;
    static constexpr std::int16_t kPolyline3d = 8;
    static constexpr std::int16_t kPolygonMesh = 16;
    static constexpr std::int16_t kClosedN = 32;  // meshes: closed in N
    static constexpr std::int16_t kPolyfaceMesh = 64;

    // flags: the POLYLINE's 70 (the reader makes the object with the flags it read, so the
    // subclass markers are known before the fields).
    explicit Polyline3d(std::int16_t flags = kPolyline3d);
    // A 3D polyline through the points; the vertices are held until the polyline is added to
    // a database.
    Polyline3d(const std::vector<ge::Point3d>& vertices, bool closed);

    ErrorStatus appendVertex(std::unique_ptr<Vertex3d> vertex, ObjectId& id);
    const std::vector<ObjectId>& vertexIds() const { return subentityIds(); }

    std::int16_t flags() const { return flags_; }
    bool isPolygonMesh() const { return (flags_ & kPolygonMesh) != 0; }
    bool isPolyfaceMesh() const { return (flags_ & kPolyfaceMesh) != 0; }
    bool isClosed() const { return (flags_ & kClosed) != 0; }
    ErrorStatus setClosed(bool closed);
    // Meshes: vertex counts in M and N (for a polyface: vertices and faces).
    std::int16_t mSize() const { return mSize_; }
    std::int16_t nSize() const { return nSize_; }
    ErrorStatus setMeshSize(std::int16_t m, std::int16_t n);

    std::string_view dxfName() const override { return "POLYLINE"; }
    std::string_view className() const override;
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Polyline3d>(*this); }

    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;
    // Lines along a 3D polyline; meshes answer eNotApplicable.
    ErrorStatus explode(std::vector<std::unique_ptr<Entity>>& pieces) const override;

private:
    std::int16_t flags_;
    std::int16_t mSize_ = 0;
    std::int16_t nSize_ = 0;
    std::int16_t mDensity_ = 0;
    std::int16_t nDensity_ = 0;
    std::int16_t curveType_ = 0;
};

}  // namespace cad::db
