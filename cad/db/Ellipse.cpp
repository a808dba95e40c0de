// Ellipse: kept in the host's form (major axis, ratio, parameters) and transformed through its
// conjugate-diameter form, whose principal axes give the new major axis and ratio.
#include "cad/db/Ellipse.h"

#include <algorithm>
#include <cmath>

#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
}  // namespace

Ellipse::Ellipse(const ge::Point3d& center, const ge::Vector3d& normal,
                 const ge::Vector3d& majorAxis, double radiusRatio, double startParam,
                 double endParam) {
    set(center, normal, majorAxis, radiusRatio, startParam, endParam);
}

ErrorStatus Ellipse::set(const ge::Point3d& center, const ge::Vector3d& normal,
                         const ge::Vector3d& majorAxis, double radiusRatio, double startParam,
                         double endParam) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength() || majorAxis.isZeroLength() || !(radiusRatio > 0.0) ||
        radiusRatio > 1.0 + 1e-12)
        return ErrorStatus::eInvalidInput;
    EllipticalArc arc;
    arc.center = center;
    arc.u = majorAxis;
    arc.v = normal.normal().crossProduct(majorAxis) * radiusRatio;
    arc.start = normalizedAngle(startParam);
    const double sweep = normalizedAngle(endParam - startParam);
    arc.end = arc.start + (sweep == 0.0 ? kTwoPi : sweep);
    setFrom(arc, normal.normal());
    return ErrorStatus::eOk;
}

ge::Vector3d Ellipse::minorAxis() const {
    return normal_.crossProduct(majorAxis_) * ratio_;
}

EllipticalArc Ellipse::toEllipticalArc() const {
    EllipticalArc arc;
    arc.center = center_;
    arc.u = majorAxis_;
    arc.v = minorAxis();
    arc.start = start_;
    arc.end = end_ >= start_ ? end_ : end_ + kTwoPi;
    return arc;
}

void Ellipse::setFrom(const EllipticalArc& arc, const ge::Vector3d& normal) {
    center_ = arc.center;
    majorAxis_ = arc.u;
    normal_ = normal;
    ratio_ = std::min(1.0, arc.v.length() / arc.u.length());
    if (arc.isFull()) {
        start_ = 0.0;
        end_ = kTwoPi;
        return;
    }
    // As the host stores them: the start in [0, 2 pi), the end in (0, 2 pi].
    start_ = normalizedAngle(arc.start);
    end_ = normalizedAngle(arc.end);
    if (end_ == 0.0) end_ = kTwoPi;
}

void Ellipse::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbEllipse");
    filer.point(10, center_);
    ge::Point3d axisEnd = ge::Point3d::kOrigin + majorAxis_;
    filer.point(11, axisEnd);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    filer.real(40, ratio_);
    filer.real(41, start_, 0.0);
    filer.real(42, end_, kTwoPi);
    if (filer.isReading()) majorAxis_ = axisEnd.asVector();
}

ErrorStatus Ellipse::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    EllipticalArc arc = toEllipticalArc();
    arc.transformBy(xform);
    arc.makePrincipal();
    if (arc.u.isZeroLength() || arc.v.isZeroLength()) return ErrorStatus::eInvalidInput;
    // Keep the normal on the side the transform sends it to, as the host does for a mirror;
    // the parameters then run the other way.
    ge::Vector3d normal = arc.u.crossProduct(arc.v).normal();
    if (normal.dotProduct(mapping.newNormal()) < 0.0) {
        arc.reverseParameter();
        normal = -normal;
    }
    setFrom(arc, normal);
    return ErrorStatus::eOk;
}

ErrorStatus Ellipse::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    toEllipticalArc().addToExtents(extents);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
