// The base of the VERTEX entities a POLYLINE owns: a position and the vertex flags.
#pragma once

#include <cstdint>

#include "cad/db/Entity.h"

namespace cad::db {

class Vertex : public Entity {
public:
    // Vertex flags (70).
    static constexpr std::int16_t kExtraFitVertex = 1;  // made by curve fitting
    static constexpr std::int16_t kFitTangent = 2;      // the tangent (50) is set
    static constexpr std::int16_t kSplineVertex = 8;    // made by spline fitting
    static constexpr std::int16_t kSplineFrame = 16;    // control point, not on the curve
    static constexpr std::int16_t kPolyline3d = 32;     // of a 3D polyline
    static constexpr std::int16_t kPolygonMesh = 64;    // of a polygon or polyface mesh
    static constexpr std::int16_t kPolyfaceMesh = 128;  // of a polyface mesh (a face with 64 off)

    // Which class a VERTEX of these flags is read into.
    static bool isVertex3dFlags(std::int16_t flags) {
        return (flags & (kPolyline3d | kPolygonMesh | kPolyfaceMesh)) != 0;
    }

    const ge::Point3d& position() const { return position_; }
    ErrorStatus setPosition(const ge::Point3d& position);
    std::int16_t flags() const { return flags_; }
    // Frame control points and face records are not on the drawn curve.
    bool isOnCurve() const;

    std::string_view dxfName() const override { return "VERTEX"; }

protected:
    Vertex() = default;
    explicit Vertex(std::int16_t flags) : flags_(flags) {}
    Vertex(const Vertex&) = default;

    // The "AcDbVertex" subclass, which has no fields of its own.
    void vertexFields(DxfFiler& filer);
    ge::Point3d& positionField() { return position_; }
    std::int16_t& flagsField() { return flags_; }

private:
    ge::Point3d position_;
    std::int16_t flags_ = 0;
};

}  // namespace cad::db
