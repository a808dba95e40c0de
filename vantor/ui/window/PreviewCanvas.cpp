// The preview picture.
#include "vantor/ui/window/PreviewCanvas.h"

#include <QPainter>

#include "vantor/ui/models/BlockPreview.h"

namespace vantor {

PreviewCanvas::PreviewCanvas(OpenDrawing openDrawing, QWidget* parent)
    : QWidget(parent), openDrawing_(std::move(openDrawing)) {
    setAccessibleName(QStringLiteral("미리보기"));
    setMinimumSize(40, 40);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PreviewCanvas::showBlock(const std::string& path, const std::string& block,
                              std::optional<cad::ge::Point3d> bomMark) {
    path_ = path;
    block_ = block;
    bomMark_ = bomMark;
    current_ = false;
    update();
}

void PreviewCanvas::clear() {
    showBlock({}, {}, std::nullopt);
}

const QImage& PreviewCanvas::picture() {
    if (!current_ || picture_.size() != size()) drawPicture();
    return picture_;
}

void PreviewCanvas::drawPicture() {
    current_ = true;
    picture_ = {};
    if (block_.empty() || path_.empty()) return;
    cad::db::Database* database = openDrawing_(path_);
    if (database == nullptr) return;
    picture_ = drawBlockPreview(*database, {block_, size(), bomMark_});
}

void PreviewCanvas::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QImage& image = picture();
    if (!image.isNull()) {
        painter.drawImage(0, 0, image);
        return;
    }
    painter.fillRect(rect(), QColor(33, 40, 48));
    painter.setPen(QColor(200, 200, 200));
    painter.drawText(rect(), Qt::AlignCenter, QString::fromLatin1(kNoPreview));
}

}  // namespace vantor
