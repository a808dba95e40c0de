// Spline: the AcDbSpline layout (counts, tolerances, then knots, weights, control points and
// fit points as repeated tags) and geometry.
#include "cad/db/Spline.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

ErrorStatus Spline::setNurbsData(std::int16_t degree, std::int16_t flags,
                                 std::vector<ge::Point3d> controlPoints, std::vector<double> knots,
                                 std::vector<double> weights) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (degree < 1 || controlPoints.size() < static_cast<std::size_t>(degree) + 1 ||
        knots.size() != controlPoints.size() + static_cast<std::size_t>(degree) + 1 ||
        (!weights.empty() && weights.size() != controlPoints.size()))
        return ErrorStatus::eInvalidInput;
    degree_ = degree;
    flags_ = static_cast<std::int16_t>(weights.empty() ? flags & ~kRational : flags | kRational);
    controlPoints_ = std::move(controlPoints);
    knots_ = std::move(knots);
    weights_ = std::move(weights);
    return ErrorStatus::eOk;
}

ErrorStatus Spline::setFitData(std::vector<ge::Point3d> fitPoints, std::int16_t degree,
                               double fitTolerance, const ge::Vector3d& startTangent,
                               const ge::Vector3d& endTangent) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (degree < 1 || fitPoints.size() < 2 || fitTolerance < 0.0) return ErrorStatus::eInvalidInput;
    fitPoints_ = std::move(fitPoints);
    degree_ = degree;
    fitTolerance_ = fitTolerance;
    startTangent_ = startTangent;
    endTangent_ = endTangent;
    return ErrorStatus::eOk;
}

ErrorStatus Spline::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

void Spline::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbSpline");
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    filer.int16(70, flags_);
    filer.int16(71, degree_);
    // The counts are derived from the lists when writing and not trusted when reading.
    auto knotCount = static_cast<std::int16_t>(knots_.size());
    auto controlCount = static_cast<std::int16_t>(controlPoints_.size());
    auto fitCount = static_cast<std::int16_t>(fitPoints_.size());
    filer.int16(72, knotCount);
    filer.int16(73, controlCount);
    filer.int16(74, fitCount);
    filer.real(42, knotTolerance_);
    filer.real(43, controlTolerance_);
    if (!filer.isWriting() || !fitPoints_.empty()) filer.real(44, fitTolerance_, 1e-10);
    filer.vector(12, startTangent_, ge::Vector3d::kIdentity);
    filer.vector(13, endTangent_, ge::Vector3d::kIdentity);
    filer.records(40, knots_, [&](double& knot) { filer.real(40, knot); });
    filer.records(41, weights_, [&](double& weight) { filer.real(41, weight); });
    filer.records(10, controlPoints_, [&](ge::Point3d& p) { filer.point(10, p); });
    filer.records(11, fitPoints_, [&](ge::Point3d& p) { filer.point(11, p); });
}

ErrorStatus Spline::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    for (ge::Point3d& p : controlPoints_) p = xform * p;
    for (ge::Point3d& p : fitPoints_) p = xform * p;
    startTangent_ = xform * startTangent_;
    endTangent_ = xform * endTangent_;
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Spline::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    for (const ge::Point3d& p : controlPoints_.empty() ? fitPoints_ : controlPoints_)
        extents.addPoint(p);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
