// The view data shared by VIEW and VPORT records.
#include "cad/db/AbstractViewTableRecord.h"

#include "cad/db/DxfAngle.h"

namespace cad::db {

ErrorStatus AbstractViewTableRecord::setCenterPoint(const ge::Point2d& center) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    center_ = {center.x, center.y, 0.0};
    return ErrorStatus::eOk;
}

ErrorStatus AbstractViewTableRecord::setHeight(double height) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(height > 0.0)) return ErrorStatus::eInvalidInput;
    height_ = height;
    return ErrorStatus::eOk;
}

ErrorStatus AbstractViewTableRecord::setWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(width > 0.0)) return ErrorStatus::eInvalidInput;
    width_ = width;
    return ErrorStatus::eOk;
}

ErrorStatus AbstractViewTableRecord::setViewDirection(const ge::Vector3d& direction) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (direction.x == 0.0 && direction.y == 0.0 && direction.z == 0.0)
        return ErrorStatus::eInvalidInput;
    direction_ = direction;
    return ErrorStatus::eOk;
}

ErrorStatus AbstractViewTableRecord::setTarget(const ge::Point3d& target) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    target_ = target;
    return ErrorStatus::eOk;
}

double AbstractViewTableRecord::viewTwist() const {
    return radiansFromDegrees(twistDegrees_);
}

ErrorStatus AbstractViewTableRecord::setViewTwist(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    twistDegrees_ = degreesFromRadians(radians);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
