// SPLINE: a NURBS curve (degree, knots, control points and optional weights) and/or the fit
// points it was made through, with the tolerances and end tangents the fit used.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/db/Entity.h"

namespace cad::db {

class Spline : public Entity {
public:
    // Spline flags (70).
    static constexpr std::int16_t kClosed = 1;
    static constexpr std::int16_t kPeriodic = 2;
    static constexpr std::int16_t kRational = 4;
    static constexpr std::int16_t kPlanar = 8;
    static constexpr std::int16_t kLinear = 16;

    Spline() = default;

    std::int16_t degree() const { return degree_; }
    std::int16_t flags() const { return flags_; }
    bool isRational() const { return (flags_ & kRational) != 0; }
    bool isClosed() const { return (flags_ & kClosed) != 0; }
    bool isPeriodic() const { return (flags_ & kPeriodic) != 0; }
    const std::vector<double>& knots() const { return knots_; }
    const std::vector<double>& weights() const { return weights_; }  // empty unless rational
    const std::vector<ge::Point3d>& controlPoints() const { return controlPoints_; }
    const std::vector<ge::Point3d>& fitPoints() const { return fitPoints_; }
    // Zero vectors when the fit had none.
    const ge::Vector3d& startFitTangent() const { return startTangent_; }
    const ge::Vector3d& endFitTangent() const { return endTangent_; }
    const ge::Vector3d& normal() const { return normal_; }  // meaningful when planar

    // Knots: control points + degree + 1 values; weights: none, or one per control point.
    ErrorStatus setNurbsData(std::int16_t degree, std::int16_t flags,
                             std::vector<ge::Point3d> controlPoints, std::vector<double> knots,
                             std::vector<double> weights = {});
    ErrorStatus setFitData(std::vector<ge::Point3d> fitPoints, std::int16_t degree,
                           double fitTolerance, const ge::Vector3d& startTangent,
                           const ge::Vector3d& endTangent);
    ErrorStatus setNormal(const ge::Vector3d& normal);

    std::string_view dxfName() const override { return "SPLINE"; }
    std::string_view className() const override { return "AcDbSpline"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Spline>(*this); }

    // Exact under any non-singular transform: a NURBS curve is moved by its control points.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // The box of the control points (which contain the curve), or of the fit points when the
    // spline has no control points.
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    std::int16_t flags_ = 0;
    std::int16_t degree_ = 3;
    std::vector<double> knots_;
    std::vector<double> weights_;
    std::vector<ge::Point3d> controlPoints_;
    std::vector<ge::Point3d> fitPoints_;
    ge::Vector3d startTangent_;
    ge::Vector3d endTangent_;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    double knotTolerance_ = 1e-10;
    double controlTolerance_ = 1e-10;
    double fitTolerance_ = 1e-10;
};

}  // namespace cad::db
