// POLYLINE (2D): a polyline whose Vertex2d entities lie in the object coordinate system of
// its normal at its elevation; optionally curve- or spline-fitted, in which case the fitted
// vertices are the drawn ones and the frame control points are kept beside them.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/db/BulgedPath.h"
#include "cad/db/ComplexEntity.h"

namespace cad::db {

class Vertex2d;

class Polyline2d : public ComplexEntity {
public:
    enum class PolyType { k2dSimplePoly, k2dFitCurvePoly, k2dQuadSplinePoly, k2dCubicSplinePoly };

    // POLYLINE flags (70) of the 2D kind.
    static constexpr std::int16_t kClosed = 1;
    static constexpr std::int16_t kCurveFit = 2;
    static constexpr std::int16_t kSplineFit = 4;
    static constexpr std::int16_t kPlinegen = 128;
    // Flags that make a POLYLINE a Polyline3d (3D polyline, polygon mesh, polyface mesh).
    static constexpr std::int16_t k3dKinds = 8 | 16 | 64;

    Polyline2d() = default;
    // Vertices in the object coordinate system (their z is ignored); the vertices are held
    // until the polyline is added to a database.
    Polyline2d(const std::vector<ge::Point3d>& vertices, double elevation = 0.0,
               bool closed = false, const ge::Vector3d& normal = ge::Vector3d::kZAxis);

    ErrorStatus appendVertex(std::unique_ptr<Vertex2d> vertex, ObjectId& id);
    const std::vector<ObjectId>& vertexIds() const { return subentityIds(); }

    std::int16_t flags() const { return flags_; }
    PolyType polyType() const;
    bool isClosed() const { return (flags_ & kClosed) != 0; }
    ErrorStatus setClosed(bool closed);
    double elevation() const { return elevation_; }
    ErrorStatus setElevation(double elevation);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);
    double defaultStartWidth() const { return startWidth_; }
    ErrorStatus setDefaultStartWidth(double width);
    double defaultEndWidth() const { return endWidth_; }
    ErrorStatus setDefaultEndWidth(double width);

    std::string_view dxfName() const override { return "POLYLINE"; }
    std::string_view className() const override { return "AcDb2dPolyline"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Polyline2d>(*this); }

    // Moves the vertices with the plane; uneven scales are refused when a segment is an arc.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;
    // Lines and arcs along the drawn vertices.
    ErrorStatus explode(std::vector<std::unique_ptr<Entity>>& pieces) const override;

private:
    ErrorStatus path(BulgedPath& outline) const;

    std::int16_t flags_ = 0;
    std::int16_t curveType_ = 0;  // 75: 5 quadratic, 6 cubic B-spline
    double elevation_ = 0.0;
    double thickness_ = 0.0;
    double startWidth_ = 0.0;
    double endWidth_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
};

}  // namespace cad::db
