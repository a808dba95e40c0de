// Offscreen drawing onto images, SVG and PDF files.
#include "cad/gs/OffscreenRender.h"

#include <QFileInfo>
#include <algorithm>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Layout.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/PngStream.h"
#include "cad/gs/SceneRenderer.h"
#include "cad/gs/ViewTransform.h"

namespace cad::gs {

namespace {

// A PNG is painted in this many bands.
constexpr int kBands = 4;

db::ObjectId layoutBlock(db::Database& database, const std::string& name) {
    db::ObjectPtr<db::Dictionary> layouts(database.layoutDictionaryId(), db::OpenMode::ForRead);
    if (!layouts) return {};
    db::ObjectId id;
    if (layouts->getAt(name, id) != ErrorStatus::eOk) return {};
    layouts.close();
    db::ObjectPtr<db::Layout> layout(id, db::OpenMode::ForRead);
    return layout ? layout->blockTableRecordId() : db::ObjectId{};
}

}  // namespace

db::ObjectId blockToRender(db::Database& database, const RenderRequest& request, std::string& error) {
    if (!request.block.empty()) {
        db::ObjectPtr<db::SymbolTable> blocks(database.blockTableId(), db::OpenMode::ForRead);
        db::ObjectId id;
        if (!blocks || blocks->getAt(request.block, id) != ErrorStatus::eOk) {
            error = "no block named '" + request.block + "'";
            return {};
        }
        return id;
    }
    if (request.layout.empty() || request.layout == "Model") return database.modelSpaceId();
    db::ObjectId id = layoutBlock(database, request.layout);
    if (id.isNull()) error = "no layout named '" + request.layout + "'";
    return id;
}

namespace {

ViewTransform fittedView(DrawingScene& scene, db::ObjectId block, const RenderRequest& request) {
    // A window asked for is shown exactly; the extents with a margin, found from each
    // entity's geometry made and let go.
    ViewTransform view({0, 0}, 1.0, request.width, request.height);
    if (request.window) {
        view.fit(*request.window, 0.0);
    } else {
        Box2d extents;
        scene.forEachEntityList(block, [&](const DisplayList& list) { extents.add(list.bounds()); });
        view.fit(extents);
    }
    return view;
}

void paintBlock(DrawingScene& scene, db::ObjectId block, const RenderRequest& request, const ViewTransform& view,
                QPainter& painter, const QRect& rows) {
    RenderOptions options;
    options.background = request.whiteBackground ? QColor(Qt::white) : QColor(33, 40, 48);
    options.showAttributeDefinitions = !request.block.empty();
    painter.fillRect(rows, options.background);
    SceneRenderer renderer(scene, painter, options);
    const Box2d clip{double(rows.left()), double(rows.top()), double(rows.right() + 1), double(rows.bottom() + 1)};
    // One entity's geometry at a time, none of it kept: a picture of a large drawing never
    // holds the drawing twice.
    scene.forEachEntityList(block, [&](const DisplayList& list) {
        renderer.drawEntities(list, view.worldToDevice(), clip);
    });
}

}  // namespace

Box2d renderBlock(DrawingScene& scene, db::ObjectId block, const RenderRequest& request,
                  QPaintDevice& device) {
    const ViewTransform view = fittedView(scene, block, request);
    QPainter painter(&device);
    paintBlock(scene, block, request, view, painter, QRect(0, 0, request.width, request.height));
    return view.visibleBox();
}

std::string renderToFile(db::Database& database, const RenderRequest& request, const std::string& path,
                         Box2d* shown) {
    std::string error;
    const db::ObjectId block = blockToRender(database, request, error);
    if (block.isNull()) return error;
    const QString file = QString::fromStdString(path);
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix != "png" && suffix != "svg" && suffix != "pdf")
        return "unknown picture format '." + suffix.toStdString() + "' (png, svg or pdf)";
    // Written beside the target and renamed over it: a failed render leaves no half picture.
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly)) return out.errorString().toStdString();
    DrawingScene scene(database);
    Box2d box;
    if (suffix == "png") {
        // Painted and written a band of rows at a time: the picture is never held whole
        // beside a large drawing.
        const ViewTransform view = fittedView(scene, block, request);
        box = view.visibleBox();
        PngStream png(out, request.width, request.height);
        const int bandHeight = std::max(64, (request.height + kBands - 1) / kBands);
        for (int top = 0; top < request.height; top += bandHeight) {
            const int rows = std::min(bandHeight, request.height - top);
            QImage band(request.width, rows, QImage::Format_RGB32);
            {
                QPainter painter(&band);
                painter.translate(0, -top);
                paintBlock(scene, block, request, view, painter, QRect(0, top, request.width, rows));
            }
            if (!png.write(band)) return "the picture could not be written";
        }
        if (!png.finish()) return "the picture could not be written";
    } else if (suffix == "svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&out);
        svg.setSize(QSize(request.width, request.height));
        svg.setViewBox(QRect(0, 0, request.width, request.height));
        svg.setTitle(QFileInfo(QString::fromStdString(database.fileName())).fileName());
        box = renderBlock(scene, block, request, svg);
    } else {
        QPdfWriter pdf(&out);
        // One point per pixel, so the page is the requested size.
        pdf.setResolution(72);
        pdf.setPageSize(QPageSize(QSizeF(request.width, request.height), QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        box = renderBlock(scene, block, request, pdf);
    }
    if (!out.commit()) return out.errorString().toStdString();
    if (shown != nullptr) *shown = box;
    return {};
}

}  // namespace cad::gs
