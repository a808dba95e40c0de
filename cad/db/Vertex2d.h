// A vertex of a 2D POLYLINE: position in the polyline's object coordinate system, widths,
// bulge of the segment that starts here, and the curve-fit tangent.
#pragma once

#include "cad/db/Vertex.h"

namespace cad::db {

class PlaneMapping;

class Vertex2d : public Vertex {
public:
    Vertex2d() = default;
    explicit Vertex2d(const ge::Point3d& position, double bulge = 0.0, double startWidth = 0.0,
                      double endWidth = 0.0);

    double bulge() const { return bulge_; }
    ErrorStatus setBulge(double bulge);
    double startWidth() const { return startWidth_; }
    ErrorStatus setStartWidth(double width);
    double endWidth() const { return endWidth_; }
    ErrorStatus setEndWidth(double width);
    double tangent() const { return tangent_; }  // radians, meaningful with kFitTangent
    ErrorStatus setTangent(double radians);

    std::string_view className() const override { return "AcDb2dVertex"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Vertex2d>(*this); }

    // A 2D vertex lives in its polyline's plane and moves with it (Polyline2d::transformBy);
    // on its own it answers eNotApplicable.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // In the object coordinate system of its polyline; see Polyline2d for world extents.
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

    // Moves the vertex with its polyline's plane, the polyline being at `elevation`.
    void transformInPlane(const PlaneMapping& mapping, double elevation);

private:
    double startWidth_ = 0.0;
    double endWidth_ = 0.0;
    double bulge_ = 0.0;
    double tangent_ = 0.0;
};

}  // namespace cad::db
