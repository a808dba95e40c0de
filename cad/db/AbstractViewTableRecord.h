// What saved views and viewports share: the view's centre and size on the view plane, its
// direction and target, lens, clipping and twist.
#pragma once

#include <cstdint>

#include "cad/db/SymbolTableRecord.h"
#include "cad/ge/Point2d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

class AbstractViewTableRecord : public SymbolTableRecord {
public:
    ge::Point2d centerPoint() const { return {center_.x, center_.y}; }
    ErrorStatus setCenterPoint(const ge::Point2d& center);
    double height() const { return height_; }
    ErrorStatus setHeight(double height);
    double width() const { return width_; }
    ErrorStatus setWidth(double width);
    const ge::Vector3d& viewDirection() const { return direction_; }
    ErrorStatus setViewDirection(const ge::Vector3d& direction);
    const ge::Point3d& target() const { return target_; }
    ErrorStatus setTarget(const ge::Point3d& target);
    double lensLength() const { return lensLength_; }
    double frontClipDistance() const { return frontClip_; }
    double backClipDistance() const { return backClip_; }
    // Radians.
    double viewTwist() const;
    ErrorStatus setViewTwist(double radians);
    // Perspective, clipping and the like (71).
    std::int16_t viewMode() const { return viewMode_; }

protected:
    AbstractViewTableRecord() = default;
    AbstractViewTableRecord(const AbstractViewTableRecord&) = default;

    ge::Point3d center_;  // 2D in the file
    double height_ = 1.0;
    double width_ = 1.0;
    ge::Vector3d direction_{0.0, 0.0, 1.0};
    ge::Point3d target_;
    double lensLength_ = 50.0;
    double frontClip_ = 0.0;
    double backClip_ = 0.0;
    double twistDegrees_ = 0.0;  // as the file keeps it
    std::int16_t viewMode_ = 0;
};

}  // namespace cad::db
