// Point: its DXF layout and geometry.
#include "cad/db/Point.h"

#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

Point::Point(const ge::Point3d& position) : position_(position) {}

ErrorStatus Point::setPosition(const ge::Point3d& position) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    position_ = position;
    return ErrorStatus::eOk;
}

ErrorStatus Point::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Point::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

ErrorStatus Point::setEcsRotation(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    xAxisAngle_ = normalizedAngle(radians);
    return ErrorStatus::eOk;
}

void Point::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbPoint");
    filer.point(10, position_);
    filer.real(39, thickness_, 0.0);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    double degrees = degreesFromRadians(xAxisAngle_);
    filer.real(50, degrees, 0.0);
    if (filer.isReading()) xAxisAngle_ = radiansFromDegrees(degrees);
}

ErrorStatus Point::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    position_ = xform * position_;
    xAxisAngle_ = mapping.mapAngle(xAxisAngle_);
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Point::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    extents.addPoint(position_);
    if (thickness_ != 0.0) extents.addPoint(position_ + normal_ * thickness_);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
