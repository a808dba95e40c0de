// The picture of a part's block, in the insertion dialog and the library window's preview: the
// block fitted with its base point and BOM mark named, drawn again only when the block or the
// size changes; "No preview" when there is nothing to draw.
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

class PartPicture : public QWidget {
    Q_OBJECT
public:
    // The drawing a picture comes from, asked for each time the picture is drawn (the one a
    // dialog holds, or one the library window keeps or reads again); nullptr when it cannot
    // be had.
    using OpenDrawing = std::function<cad::db::Database*(const std::string& path)>;

    explicit PartPicture(OpenDrawing openDrawing, QWidget* parent = nullptr);

    // Shows `block` of the drawing at `path`, with the BOM mark's offset when given.
    void showBlock(const std::string& path, const std::string& block,
                   std::optional<cad::ge::Point3d> bomMark);
    void clear() { showBlock({}, {}, std::nullopt); }
    const std::string& block() const { return block_; }
    // The picture as drawn now; null while "No preview" shows.
    const QImage& picture();

    QSize sizeHint() const override { return {220, 180}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    OpenDrawing openDrawing_;
    std::string path_;
    std::string block_;
    std::optional<cad::ge::Point3d> bomMark_;
    QImage picture_;
    bool current_ = false;  // the picture is of the block shown, at the widget's size
};

}  // namespace vantor
