// What CIRCLE and ARC share: the AcDbCircle subclass (centre, radius, thickness, normal) and
// its geometry. Arc is not a kind of Circle, so each derives from this instead of the other.
#pragma once

#include "cad/db/EllipticalArc.h"
#include "cad/db/Entity.h"

namespace cad::db {

class PlaneMapping;

class CircularEntity : public Entity {
public:
    // In world coordinates; DXF stores it in the object coordinate system of the normal.
    const ge::Point3d& center() const { return center_; }
    ErrorStatus setCenter(const ge::Point3d& center);
    double radius() const { return radius_; }
    ErrorStatus setRadius(double radius);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    void dxfFields(DxfFiler& filer) override;
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;
    // Under an uneven scale the curve is no longer circular: the copy is an Ellipse.
    ErrorStatus getTransformedCopy(const ge::Matrix3d& xform,
                                   std::unique_ptr<Entity>& copy) const override;

protected:
    CircularEntity() = default;
    CircularEntity(const ge::Point3d& center, const ge::Vector3d& normal, double radius);
    CircularEntity(const CircularEntity&) = default;

    // The sweep in the object coordinate system: [0, 2 pi) for a circle.
    virtual double startAngle() const = 0;
    virtual double endAngle() const = 0;
    // Called by transformBy once the circle part is moved, with the map of the plane.
    virtual void transformAngles(const PlaneMapping& mapping) = 0;
    EllipticalArc toEllipticalArc() const;

private:
    ge::Point3d center_;
    double radius_ = 0.0;
    double thickness_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
};

}  // namespace cad::db
