// ELLIPSE: a full or partial ellipse given by its centre, major axis and axis ratio, all in
// world coordinates; the parameters run counter-clockwise about the normal.
#pragma once

#include "cad/db/EllipticalArc.h"
#include "cad/db/Entity.h"

namespace cad::db {

class Ellipse : public Entity {
public:
    Ellipse() = default;
    // majorAxis: from the centre to the end of the major axis. Parameters in radians.
    Ellipse(const ge::Point3d& center, const ge::Vector3d& normal, const ge::Vector3d& majorAxis,
            double radiusRatio, double startParam = 0.0, double endParam = 2.0 * std::numbers::pi);

    const ge::Point3d& center() const { return center_; }
    const ge::Vector3d& normal() const { return normal_; }
    const ge::Vector3d& majorAxis() const { return majorAxis_; }
    ge::Vector3d minorAxis() const;
    double radiusRatio() const { return ratio_; }
    double startParam() const { return start_; }
    double endParam() const { return end_; }
    ErrorStatus set(const ge::Point3d& center, const ge::Vector3d& normal,
                    const ge::Vector3d& majorAxis, double radiusRatio, double startParam = 0.0,
                    double endParam = 2.0 * std::numbers::pi);

    std::string_view dxfName() const override { return "ELLIPSE"; }
    std::string_view className() const override { return "AcDbEllipse"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Ellipse>(*this); }

    // Any non-singular transform, uneven ones included: the image of an ellipse is one.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    EllipticalArc toEllipticalArc() const;
    void setFrom(const EllipticalArc& arc, const ge::Vector3d& normal);

    ge::Point3d center_;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    ge::Vector3d majorAxis_ = ge::Vector3d::kXAxis;
    double ratio_ = 1.0;
    double start_ = 0.0;
    double end_ = 2.0 * std::numbers::pi;
};

}  // namespace cad::db
