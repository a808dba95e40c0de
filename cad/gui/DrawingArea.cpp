// The placeholder drawing area.
#include "cad/gui/DrawingArea.h"

#include <QPainter>

#include "cad/app/Document.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/ObjectPtr.h"

namespace cad::gui {

DrawingArea::DrawingArea(QWidget* parent) : QWidget(parent) {
    setMinimumSize(320, 200);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(33, 40, 48));
    colours.setColor(QPalette::WindowText, QColor(220, 226, 232));
    setPalette(colours);
}

void DrawingArea::setDocument(app::Document* document) {
    document_ = document;
    update();
}

std::optional<std::size_t> DrawingArea::modelSpaceEntityCount(db::Database& database) {
    db::ObjectPtr<db::BlockTableRecord> space(database.modelSpaceId(), db::OpenMode::ForRead);
    if (!space) return std::nullopt;
    return space->entityIds().size();
}

QString DrawingArea::caption() const {
    if (document_ == nullptr) return tr("No drawing open");
    QString name = QString::fromStdString(document_->docTitle());
    std::optional<std::size_t> count;
    if (document_->database() != nullptr) count = modelSpaceEntityCount(*document_->database());
    QString entities = count ? tr("%n entities in model space", nullptr, static_cast<int>(*count))
                             : tr("model space is in use");
    return name + (document_->isReadOnly() ? tr(" (read-only)") : QString()) + "\n" + entities;
}

void DrawingArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    painter.setFont(font);
    painter.drawText(rect(), Qt::AlignCenter, caption());
}

}  // namespace cad::gui
