// A vertex of a 3D POLYLINE, polygon mesh or polyface mesh, in world coordinates. A polyface
// mesh's face records are vertices too: they carry the indices of their corners (71 to 74).
#pragma once

#include <array>
#include <cstdint>

#include "cad/db/Vertex.h"

namespace cad::db {

class Vertex3d : public Vertex {
public:
    // flags: kPolyline3d for a 3D polyline, kPolygonMesh for a mesh, kPolygonMesh |
    // kPolyfaceMesh for a polyface vertex, kPolyfaceMesh alone for a face record.
    explicit Vertex3d(std::int16_t flags = kPolyline3d);
    Vertex3d(const ge::Point3d& position, std::int16_t flags = kPolyline3d);

    bool isFaceRecord() const;
    // Corner indices of a face record (1-based, negative for an invisible edge, 0 unused).
    std::int16_t faceIndex(int corner) const;
    ErrorStatus setFaceIndex(int corner, std::int16_t index);

    std::string_view className() const override;
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Vertex3d>(*this); }

    // A face record has no position of its own and is left as it is.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    std::array<std::int16_t, 4> faces_{};
};

}  // namespace cad::db
