// The picture of the preview pane: the chosen block drawn to fit, drawn again only when the
// block or the pane's size changes; "No preview" when there is nothing to draw.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "cad/ge/Point3d.h"

namespace cad::db {
class Database;
}

namespace vantor {

inline constexpr const char* kNoPreview = "No preview";

class PreviewCanvas : public QWidget {
    Q_OBJECT
public:
    // The drawing a preview comes from, read (or kept) when the picture is drawn.
    using OpenDrawing = std::function<cad::db::Database*(const std::string& path)>;

    PreviewCanvas(OpenDrawing openDrawing, QWidget* parent = nullptr);

    // Shows `block` of the drawing at `path`, with the BOM mark when given.
    void showBlock(const std::string& path, const std::string& block,
                   std::optional<cad::ge::Point3d> bomMark);
    void clear();
    // The picture as it is drawn now; null when "No preview" shows.
    const QImage& picture();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawPicture();

    OpenDrawing openDrawing_;
    std::string path_;
    std::string block_;
    std::optional<cad::ge::Point3d> bomMark_;
    QImage picture_;
    bool current_ = false;  // the picture is of the block shown, at the pane's size
};

}  // namespace vantor
