// CircularEntity: the shared centre/radius/normal part of circles and arcs.
#include "cad/db/CircularEntity.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/Ellipse.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

CircularEntity::CircularEntity(const ge::Point3d& center, const ge::Vector3d& normal, double radius)
    : center_(center),
      radius_(radius),
      normal_(normal.isZeroLength() ? ge::Vector3d::kZAxis : normal.normal()) {}

ErrorStatus CircularEntity::setCenter(const ge::Point3d& center) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    center_ = center;
    return ErrorStatus::eOk;
}

ErrorStatus CircularEntity::setRadius(double radius) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(radius > 0.0)) return ErrorStatus::eInvalidInput;
    radius_ = radius;
    return ErrorStatus::eOk;
}

ErrorStatus CircularEntity::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus CircularEntity::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

void CircularEntity::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbCircle");
    filer.real(39, thickness_, 0.0);
    // The normal follows the centre in the file, so a centre read is converted at the end.
    ge::Point3d ocsCenter = ge::Matrix3d::worldToPlane(normal_) * center_;
    filer.point(10, ocsCenter);
    filer.real(40, radius_);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    if (filer.isReading()) center_ = ge::Matrix3d::planeToWorld(normal_) * ocsCenter;
}

ErrorStatus CircularEntity::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    // The host refuses this too; getTransformedCopy answers with an ellipse instead.
    if (!mapping.isUniform()) return ErrorStatus::eNotApplicable;
    transformAngles(mapping);
    center_ = xform * center_;
    radius_ *= mapping.scale();
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

EllipticalArc CircularEntity::toEllipticalArc() const {
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
    EllipticalArc arc;
    arc.center = center_;
    arc.u = toWorld * ge::Vector3d(radius_, 0.0, 0.0);
    arc.v = toWorld * ge::Vector3d(0.0, radius_, 0.0);
    arc.start = startAngle();
    arc.end = endAngle();
    return arc;
}

ErrorStatus CircularEntity::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    const EllipticalArc arc = toEllipticalArc();
    arc.addToExtents(extents);
    if (thickness_ != 0.0) {
        EllipticalArc top = arc;
        top.center += normal_ * thickness_;
        top.addToExtents(extents);
    }
    return ErrorStatus::eOk;
}

ErrorStatus CircularEntity::getTransformedCopy(const ge::Matrix3d& xform,
                                               std::unique_ptr<Entity>& copy) const {
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    if (mapping.isUniform()) return Entity::getTransformedCopy(xform, copy);
    copy.reset();
    const EllipticalArc arc = toEllipticalArc();
    auto ellipse = std::make_unique<Ellipse>(arc.center, normal_, arc.u, 1.0, arc.start, arc.end);
    ellipse->setPropertiesFrom(*this);
    // xdata travels with the copy as it would with a clone.
    ellipse->xdata() = xdata();
    if (ErrorStatus es = ellipse->transformBy(xform); es != ErrorStatus::eOk) return es;
    copy = std::move(ellipse);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
