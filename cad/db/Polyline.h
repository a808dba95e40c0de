// LWPOLYLINE: a 2D polyline held in one record: vertices in the object coordinate system of
// its normal at one elevation, each with a bulge (arc segments) and start and end widths.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/db/BulgedPath.h"
#include "cad/db/Entity.h"
#include "cad/ge/Point2d.h"

namespace cad::db {

class Polyline : public Entity {
public:
    Polyline() = default;

    unsigned numVerts() const { return static_cast<unsigned>(vertices_.size()); }
    // Inserts before `index` (numVerts() appends).
    ErrorStatus addVertexAt(unsigned index, const ge::Point2d& point, double bulge = 0.0,
                            double startWidth = 0.0, double endWidth = 0.0);
    ErrorStatus removeVertexAt(unsigned index);
    // In the object coordinate system.
    ErrorStatus getPointAt(unsigned index, ge::Point2d& point) const;
    // In world coordinates.
    ErrorStatus getPointAt(unsigned index, ge::Point3d& point) const;
    ErrorStatus setPointAt(unsigned index, const ge::Point2d& point);
    ErrorStatus getBulgeAt(unsigned index, double& bulge) const;
    ErrorStatus setBulgeAt(unsigned index, double bulge);
    ErrorStatus getWidthsAt(unsigned index, double& startWidth, double& endWidth) const;
    ErrorStatus setWidthsAt(unsigned index, double startWidth, double endWidth);
    // Succeeds only when every segment has the same width at both ends.
    ErrorStatus getConstantWidth(double& width) const;
    ErrorStatus setConstantWidth(double width);

    bool isClosed() const { return (flags_ & kClosed) != 0; }
    ErrorStatus setClosed(bool closed);
    bool hasPlinegen() const { return (flags_ & kPlinegen) != 0; }
    ErrorStatus setPlinegen(bool plinegen);
    double elevation() const { return elevation_; }
    ErrorStatus setElevation(double elevation);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    std::string_view dxfName() const override { return "LWPOLYLINE"; }
    std::string_view className() const override { return "AcDbPolyline"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Polyline>(*this); }

    // Uneven scales are refused when a segment is an arc (it would become elliptical).
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;
    // Lines and arcs, one per segment.
    ErrorStatus explode(std::vector<std::unique_ptr<Entity>>& pieces) const override;

    static constexpr std::int16_t kClosed = 1;
    static constexpr std::int16_t kPlinegen = 128;

private:
    struct Vertex {
        ge::Point3d point;  // x and y in the object coordinate system; z unused
        double startWidth = 0.0;
        double endWidth = 0.0;
        double bulge = 0.0;
    };

    BulgedPath path() const;

    std::vector<Vertex> vertices_;
    std::int16_t flags_ = 0;
    double constantWidth_ = 0.0;
    double elevation_ = 0.0;
    double thickness_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
};

}  // namespace cad::db
