// Line: its DXF layout and geometry.
#include "cad/db/Line.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

Line::Line(const ge::Point3d& start, const ge::Point3d& end) : start_(start), end_(end) {}

ErrorStatus Line::setStartPoint(const ge::Point3d& p) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    start_ = p;
    return ErrorStatus::eOk;
}

ErrorStatus Line::setEndPoint(const ge::Point3d& p) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    end_ = p;
    return ErrorStatus::eOk;
}

ErrorStatus Line::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Line::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

void Line::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbLine");
    filer.real(39, thickness_, 0.0);
    filer.point(10, start_);
    filer.point(11, end_);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
}

ErrorStatus Line::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    start_ = xform * start_;
    end_ = xform * end_;
    normal_ = mapping.newNormal();
    thickness_ *= mapping.thicknessScale();
    return ErrorStatus::eOk;
}

ErrorStatus Line::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    const ge::Vector3d rise = normal_ * thickness_;
    for (const ge::Point3d& p : {start_, end_}) {
        extents.addPoint(p);
        if (thickness_ != 0.0) extents.addPoint(p + rise);
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
