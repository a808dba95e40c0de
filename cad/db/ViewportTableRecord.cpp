// VPORT records: the viewport fields in the reference order.
#include "cad/db/ViewportTableRecord.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus ViewportTableRecord::setCorners(const ge::Point2d& lowerLeft,
                                            const ge::Point2d& upperRight) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(lowerLeft.x < upperRight.x && lowerLeft.y < upperRight.y))
        return ErrorStatus::eInvalidInput;
    lowerLeft_ = {lowerLeft.x, lowerLeft.y, 0.0};
    upperRight_ = {upperRight.x, upperRight.y, 0.0};
    return ErrorStatus::eOk;
}

ErrorStatus ViewportTableRecord::setGridEnabled(bool on) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    gridOn_ = on ? 1 : 0;
    return ErrorStatus::eOk;
}

ErrorStatus ViewportTableRecord::setGridIncrements(const ge::Point2d& spacing) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(spacing.x > 0.0 && spacing.y > 0.0)) return ErrorStatus::eInvalidInput;
    gridSpacing_ = {spacing.x, spacing.y, 0.0};
    return ErrorStatus::eOk;
}

void ViewportTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbViewportTableRecord");
    nameAndFlags(filer);
    filer.point2d(10, lowerLeft_);
    filer.point2d(11, upperRight_);
    filer.point2d(12, center_);
    filer.point2d(13, snapBase_);
    filer.point2d(14, snapSpacing_);
    filer.point2d(15, gridSpacing_);
    filer.vector(16, direction_);
    filer.point(17, target_);
    filer.real(40, height_);
    // A viewport stores its width as a ratio to the height.
    double aspect = height_ > 0.0 ? width_ / height_ : 1.0;
    if (filer.isWriting() && aspectAsRead_ * height_ == width_) aspect = aspectAsRead_;
    filer.real(41, aspect);
    if (filer.isReading()) {
        aspectAsRead_ = aspect;
        width_ = aspect * height_;
    }
    filer.real(42, lensLength_);
    filer.real(43, frontClip_);
    filer.real(44, backClip_);
    filer.real(50, snapAngleDegrees_);
    filer.real(51, twistDegrees_);
    filer.int16(71, viewMode_);
    filer.int16(72, circleZoom_);
    filer.int16(73, fastZoom_);
    filer.int16(74, ucsIcon_);
    filer.int16(75, snapOn_);
    filer.int16(76, gridOn_);
    filer.int16(77, snapStyle_);
    filer.int16(78, snapIsoPair_);
    if (filer.atLeast(DxfVersion::R2000)) {
        filer.int16(281, renderMode_);
        filer.int16(65, ucsPerViewport_);
        filer.point(110, ucsOrigin_);
        filer.vector(111, ucsXAxis_);
        filer.vector(112, ucsYAxis_);
        filer.int16(79, orthographicType_);
        filer.real(146, elevation_);
    }
}

std::unique_ptr<DbObject> ViewportTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new ViewportTableRecord(*this));
}

}  // namespace cad::db
