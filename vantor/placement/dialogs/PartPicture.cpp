// A part's block picture.
#include "vantor/placement/dialogs/PartPicture.h"

#include <QPainter>

#include "vantor/ui/models/BlockPreview.h"

namespace vantor {

PartPicture::PartPicture(OpenDrawing openDrawing, QWidget* parent)
    : QWidget(parent), openDrawing_(std::move(openDrawing)) {
    setAccessibleName(QString::fromUtf8("미리보기"));
    setMinimumSize(120, 100);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PartPicture::showBlock(const std::string& path, const std::string& block,
                            std::optional<cad::ge::Point3d> bomMark) {
    path_ = path;
    block_ = block;
    bomMark_ = bomMark;
    current_ = false;
    update();
}

const QImage& PartPicture::picture() {
    if (!current_ || picture_.size() != size()) {
        current_ = true;
        picture_ = {};
        cad::db::Database* drawing = block_.empty() ? nullptr : openDrawing_(path_);
        if (drawing != nullptr) picture_ = drawBlockPreview(*drawing, {block_, size(), bomMark_});
    }
    return picture_;
}

void PartPicture::paintEvent(QPaintEvent*) {
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
