// A view's picture of its drawing, kept between frames: redrawn only when the view's scale,
// size or the drawing changes. A pan moves the picture and draws only the strips it uncovers,
// and whatever follows the mouse (drag images, rubber lines, markers) is painted over it by
// the caller, so moving the mouse never redraws the drawing.
#pragma once

#include <QColor>
#include <QImage>

#include "cad/db/ObjectId.h"
#include "cad/gs/ViewTransform.h"

class QRect;

namespace cad::gs {

class DrawingScene;

class ViewImage {
public:
    // What the last call of imageFor() had to do, for tests and benchmarks.
    enum class Frame { Reused, Shifted, Redrawn };

    ViewImage(DrawingScene& scene, db::ObjectId block);

    db::ObjectId block() const { return block_; }
    void setBlock(db::ObjectId block);
    const QColor& background() const { return background_; }
    void setBackground(const QColor& colour);
    // The drawing changed: the next picture is drawn afresh.
    void invalidate() { valid_ = false; }

    // The picture of the block as `view` shows it, its size the view's device size.
    const QImage& imageFor(const ViewTransform& view);
    Frame lastFrame() const { return lastFrame_; }

private:
    // Draws the part of the drawing that falls into `rect` (device pixels) of image_.
    void drawRect(const ViewTransform& view, const QRect& rect);
    // Whole pixels the drawing moved between the drawn view and `view`, when that is all
    // that changed.
    bool pixelShift(const ViewTransform& view, int& dx, int& dy) const;

    DrawingScene& scene_;
    db::ObjectId block_;
    QColor background_{33, 40, 48};
    QImage image_;
    ViewTransform drawn_;
    bool valid_ = false;
    Frame lastFrame_ = Frame::Redrawn;
};

}  // namespace cad::gs
