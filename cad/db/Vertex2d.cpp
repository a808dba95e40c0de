// Vertex2d: the AcDb2dVertex layout and the move with its polyline's plane.
#include "cad/db/Vertex2d.h"

#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

Vertex2d::Vertex2d(const ge::Point3d& position, double bulge, double startWidth, double endWidth)
    : startWidth_(startWidth), endWidth_(endWidth), bulge_(bulge) {
    setPosition(position);
}

ErrorStatus Vertex2d::setBulge(double bulge) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    bulge_ = bulge;
    return ErrorStatus::eOk;
}

ErrorStatus Vertex2d::setStartWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    startWidth_ = width;
    return ErrorStatus::eOk;
}

ErrorStatus Vertex2d::setEndWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    endWidth_ = width;
    return ErrorStatus::eOk;
}

ErrorStatus Vertex2d::setTangent(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    tangent_ = normalizedAngle(radians);
    return ErrorStatus::eOk;
}

void Vertex2d::dxfFields(DxfFiler& filer) {
    vertexFields(filer);
    filer.subclass("AcDb2dVertex");
    filer.point(10, positionField());
    filer.real(40, startWidth_, 0.0);
    filer.real(41, endWidth_, 0.0);
    filer.real(42, bulge_, 0.0);
    filer.int16(70, flagsField(), 0);
    double tangent = degreesFromRadians(tangent_);
    filer.real(50, tangent, 0.0);
    if (filer.isReading()) tangent_ = normalizedAngle(radiansFromDegrees(tangent));
}

ErrorStatus Vertex2d::transformBy(const ge::Matrix3d&) {
    return ErrorStatus::eNotApplicable;
}

ErrorStatus Vertex2d::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    extents.addPoint(position());
    return ErrorStatus::eOk;
}

void Vertex2d::transformInPlane(const PlaneMapping& mapping, double elevation) {
    const ge::Point3d p = mapping.mapPoint({position().x, position().y, elevation});
    positionField() = {p.x, p.y, position().z};
    if (mapping.isMirror()) bulge_ = -bulge_;
    startWidth_ *= mapping.scale();
    endWidth_ *= mapping.scale();
    tangent_ = mapping.mapAngle(tangent_);
}

}  // namespace cad::db
