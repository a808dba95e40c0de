// View maths. Heights are kept within a range a double can zoom through without losing the
// difference between neighbouring pixels.
#include "cad/gs/ViewTransform.h"

#include <algorithm>
#include <cmath>

namespace cad::gs {

namespace {

constexpr double kMinHeight = 1e-9;
constexpr double kMaxHeight = 1e15;

double clampHeight(double height, double fallback) {
    if (!std::isfinite(height) || height <= 0.0) return fallback;
    return std::clamp(height, kMinHeight, kMaxHeight);
}

}  // namespace

ViewTransform::ViewTransform(const ge::Point2d& centre, double height, double deviceWidth,
                             double deviceHeight)
    : centre_(centre), height_(clampHeight(height, 1.0)) {
    setDeviceSize(deviceWidth, deviceHeight);
}

Affine2d ViewTransform::worldToDevice() const {
    const double s = pixelsPerUnit();
    return {s, 0.0, 0.0, -s, deviceWidth_ / 2 - centre_.x * s, deviceHeight_ / 2 + centre_.y * s};
}

ge::Point2d ViewTransform::toWorld(double deviceX, double deviceY) const {
    const double s = pixelsPerUnit();
    return {centre_.x + (deviceX - deviceWidth_ / 2) / s, centre_.y - (deviceY - deviceHeight_ / 2) / s};
}

Box2d ViewTransform::visibleBox() const {
    const double halfW = width() / 2, halfH = height_ / 2;
    return {centre_.x - halfW, centre_.y - halfH, centre_.x + halfW, centre_.y + halfH};
}

void ViewTransform::setDeviceSize(double width, double height) {
    deviceWidth_ = std::max(1.0, std::isfinite(width) ? width : 1.0);
    deviceHeight_ = std::max(1.0, std::isfinite(height) ? height : 1.0);
}

void ViewTransform::setHeight(double height) { height_ = clampHeight(height, height_); }

void ViewTransform::fit(const Box2d& box, double margin) {
    if (box.isEmpty()) return;
    const double w = box.width(), h = box.height();
    if (!std::isfinite(w) || !std::isfinite(h)) return;
    centre_ = {(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2};
    const double aspect = deviceWidth_ / deviceHeight_;
    double needed = std::max(h, w / aspect) * (1.0 + 2 * margin);
    // A single point or a line along an axis: show some room around it.
    if (needed <= 0.0) needed = std::max(std::abs(centre_.x), std::abs(centre_.y)) * 1e-3 + 1.0;
    height_ = clampHeight(needed, height_);
}

void ViewTransform::zoomAbout(double deviceX, double deviceY, double factor) {
    if (!std::isfinite(factor) || factor <= 0.0) return;
    const ge::Point2d anchor = toWorld(deviceX, deviceY);
    height_ = clampHeight(height_ / factor, height_);
    // Put the anchor back under the device point.
    const ge::Point2d moved = toWorld(deviceX, deviceY);
    centre_.x += anchor.x - moved.x;
    centre_.y += anchor.y - moved.y;
}

void ViewTransform::panBy(double dx, double dy) {
    const double s = pixelsPerUnit();
    centre_.x -= dx / s;
    centre_.y += dy / s;
}

}  // namespace cad::gs
