// Drawing a block's preview with its markers.
#include "vantor/ui/models/BlockPreview.h"

#include <QPainter>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/OffscreenRender.h"
#include "vantor/ui/models/BlockLookup.h"

namespace vantor {

namespace {

constexpr double kMargin = 0.08;  // of the larger side, so markers at the edge stay readable

QPointF toPixels(const cad::gs::Box2d& shown, QSize size, double x, double y) {
    return {(x - shown.minX) / shown.width() * size.width(),
            size.height() - (y - shown.minY) / shown.height() * size.height()};
}

// The name goes to the right of the marker, or to its left where the picture ends.
void drawMarker(QPainter& painter, QPointF at, const QColor& color, const char* name, bool round) {
    painter.setPen(QPen(color, 1.5));
    painter.setBrush(Qt::NoBrush);
    constexpr double r = 5.0;
    if (round) {
        painter.drawEllipse(at, r, r);
    } else {
        painter.drawLine(at + QPointF(-r, -r), at + QPointF(r, r));
        painter.drawLine(at + QPointF(-r, r), at + QPointF(r, -r));
    }
    const QString text = QString::fromLatin1(name);
    const double width = painter.fontMetrics().horizontalAdvance(text);
    const bool fitsRight = at.x() + r + 3 + width <= painter.device()->width();
    painter.drawText(at + QPointF(fitsRight ? r + 3 : -r - 3 - width, -r), text);
}

}  // namespace

QImage drawBlockPreview(cad::db::Database& database, const BlockPreviewRequest& request) {
    if (request.size.isEmpty()) return {};
    const cad::db::ObjectId blockId = blockNamed(database, request.block);
    if (blockId.isNull()) return {};
    cad::ge::Point3d origin;
    if (auto block = cad::db::open<cad::db::BlockTableRecord>(blockId, cad::db::OpenMode::ForRead))
        origin = block->origin();
    else
        return {};

    cad::gs::DrawingScene scene(database);
    // The picture holds the drawn geometry, the base point and the mark, whatever lies where.
    cad::gs::Box2d window = scene.blockList(blockId).bounds();
    window.add(origin.x, origin.y);
    std::optional<cad::ge::Point3d> mark;
    if (request.bomMark) {
        mark = cad::ge::Point3d(origin.x + request.bomMark->x, origin.y + request.bomMark->y,
                                origin.z + request.bomMark->z);
        window.add(mark->x, mark->y);
    }
    if (window.isEmpty()) return {};
    const double margin = std::max({window.width(), window.height(), 1e-6}) * kMargin;
    window.minX -= margin;
    window.minY -= margin;
    window.maxX += margin;
    window.maxY += margin;

    cad::gs::RenderRequest render;
    render.width = request.size.width();
    render.height = request.size.height();
    render.window = window;
    render.block = request.block;
    QImage image(request.size, QImage::Format_RGB32);
    const cad::gs::Box2d shown = cad::gs::renderBlock(scene, blockId, render, image);

    if (!request.markers) return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMarker(painter, toPixels(shown, request.size, origin.x, origin.y), QColor(255, 220, 0),
               kBasePointMarker, false);
    if (mark)
        drawMarker(painter, toPixels(shown, request.size, mark->x, mark->y), QColor(0, 220, 255),
                   kBomMarkMarker, true);
    return image;
}

}  // namespace vantor
