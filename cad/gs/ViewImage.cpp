// Keeping a view's picture, and moving it on a pan.
#include "cad/gs/ViewImage.h"

#include <QPainter>
#include <cmath>

#include "cad/gs/DrawingScene.h"
#include "cad/gs/SceneRenderer.h"

namespace cad::gs {

namespace {

// A shift within this of a whole pixel is one: the view's arithmetic leaves crumbs.
constexpr double kWholePixel = 1e-6;

}  // namespace

ViewImage::ViewImage(DrawingScene& scene, db::ObjectId block) : scene_(scene), block_(block) {}

void ViewImage::setBlock(db::ObjectId block) {
    if (block == block_) return;
    block_ = block;
    valid_ = false;
}

void ViewImage::setBackground(const QColor& colour) {
    if (colour == background_) return;
    background_ = colour;
    valid_ = false;
}

bool ViewImage::pixelShift(const ViewTransform& view, int& dx, int& dy) const {
    if (view.deviceWidth() != drawn_.deviceWidth() || view.deviceHeight() != drawn_.deviceHeight() ||
        view.height() != drawn_.height())
        return false;
    // Where the drawn view's centre lands in the new one.
    const ge::Point2d moved = view.toDevice(drawn_.centre());
    const double x = moved.x - view.deviceWidth() / 2, y = moved.y - view.deviceHeight() / 2;
    if (std::abs(x - std::round(x)) > kWholePixel || std::abs(y - std::round(y)) > kWholePixel)
        return false;
    dx = static_cast<int>(std::round(x));
    dy = static_cast<int>(std::round(y));
    return std::abs(dx) < image_.width() && std::abs(dy) < image_.height();
}

const QImage& ViewImage::imageFor(const ViewTransform& view) {
    const int width = static_cast<int>(view.deviceWidth()), height = static_cast<int>(view.deviceHeight());
    int dx = 0, dy = 0;
    if (valid_ && pixelShift(view, dx, dy)) {
        if (dx == 0 && dy == 0) {
            lastFrame_ = Frame::Reused;
            return image_;
        }
        QImage moved(width, height, QImage::Format_ARGB32_Premultiplied);
        {
            QPainter painter(&moved);
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.drawImage(dx, dy, image_);
        }
        image_ = std::move(moved);
        // The uncovered strips: a band across the full width, and one down the rest.
        const QRect across = dy > 0 ? QRect(0, 0, width, dy) : QRect(0, height + dy, width, -dy);
        const QRect down = dx > 0 ? QRect(0, 0, dx, height) : QRect(width + dx, 0, -dx, height);
        if (!across.isEmpty()) drawRect(view, across);
        if (!down.isEmpty()) drawRect(view, down);
        drawn_ = view;
        lastFrame_ = Frame::Shifted;
        return image_;
    }
    image_ = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
    drawRect(view, image_.rect());
    drawn_ = view;
    valid_ = true;
    lastFrame_ = Frame::Redrawn;
    return image_;
}

void ViewImage::drawRect(const ViewTransform& view, const QRect& rect) {
    QPainter painter(&image_);
    painter.setClipRect(rect);
    painter.fillRect(rect, background_);
    RenderOptions options;
    options.background = background_;
    SceneRenderer renderer(scene_, painter, options);
    renderer.drawBlock(block_, view.worldToDevice(),
                       {double(rect.left()), double(rect.top()), double(rect.right() + 1),
                        double(rect.bottom() + 1)});
}

}  // namespace cad::gs
