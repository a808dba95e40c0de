// Arc: angles in radians in memory and degrees in DXF; a mirror swaps the ends, because the
// arc keeps running counter-clockwise about the (kept) normal.
#include "cad/db/Arc.h"

#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

Arc::Arc(const ge::Point3d& center, const ge::Vector3d& normal, double radius, double startAngle,
         double endAngle)
    : CircularEntity(center, normal, radius),
      start_(normalizedAngle(startAngle)),
      end_(normalizedAngle(endAngle)) {}

ErrorStatus Arc::setStartAngle(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    start_ = normalizedAngle(radians);
    return ErrorStatus::eOk;
}

ErrorStatus Arc::setEndAngle(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    end_ = normalizedAngle(radians);
    return ErrorStatus::eOk;
}

double Arc::endAngle() const {
    const double sweep = normalizedAngle(end_ - start_);
    return start_ + (sweep == 0.0 ? 2.0 * std::numbers::pi : sweep);
}

ge::Point3d Arc::startPoint() const {
    return toEllipticalArc().pointAt(start_);
}

ge::Point3d Arc::endPoint() const {
    return toEllipticalArc().pointAt(end_);
}

void Arc::dxfFields(DxfFiler& filer) {
    CircularEntity::dxfFields(filer);
    filer.subclass("AcDbArc");
    double startDegrees = degreesFromRadians(start_);
    double endDegrees = degreesFromRadians(end_);
    filer.real(50, startDegrees);
    filer.real(51, endDegrees);
    if (filer.isReading()) {
        start_ = normalizedAngle(radiansFromDegrees(startDegrees));
        end_ = normalizedAngle(radiansFromDegrees(endDegrees));
    }
}

void Arc::transformAngles(const PlaneMapping& mapping) {
    const double start = mapping.mapAngle(start_);
    const double end = mapping.mapAngle(end_);
    start_ = mapping.isMirror() ? end : start;
    end_ = mapping.isMirror() ? start : end;
}

}  // namespace cad::db
