// Offscreen drawing onto images, SVG and PDF files.
#include "cad/gs/OffscreenRender.h"

#include <QFileInfo>
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
#include "cad/gs/SceneRenderer.h"
#include "cad/gs/ViewTransform.h"

namespace cad::gs {

namespace {

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

Box2d renderBlock(DrawingScene& scene, db::ObjectId block, const RenderRequest& request,
                  QPaintDevice& device) {
    RenderOptions options;
    options.background = request.whiteBackground ? QColor(Qt::white) : QColor(33, 40, 48);
    options.showAttributeDefinitions = !request.block.empty();
    ViewTransform view({0, 0}, 1.0, request.width, request.height);
    // A window asked for is shown exactly; extents get a margin so nothing touches the edge.
    if (request.window)
        view.fit(*request.window, 0.0);
    else
        view.fit(scene.blockList(block).bounds());
    QPainter painter(&device);
    painter.fillRect(QRectF(0, 0, request.width, request.height), options.background);
    SceneRenderer renderer(scene, painter, options);
    renderer.drawBlock(block, view.worldToDevice(), {0, 0, double(request.width), double(request.height)});
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
        QImage image(request.width, request.height, QImage::Format_ARGB32_Premultiplied);
        box = renderBlock(scene, block, request, image);
        if (!image.save(&out, "PNG")) return "the picture could not be written";
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
