// The insertion dialog's picture of the chosen view block: the block fitted with its base point
// and BOM mark named, drawn again only when the block or the size changes; "No preview" when
// the drawing has no picture of it.
#pragma once

#include <QImage>
#include <QWidget>
#include <optional>
#include <string>

#include "cad/ge/Point3d.h"

namespace cad::db {
class Database;
}

namespace vantor {

class PartPicture : public QWidget {
    Q_OBJECT
public:
    explicit PartPicture(QWidget* parent = nullptr);

    // `library` stays valid while the picture shows it (the dialog's caller holds it).
    void showBlock(cad::db::Database* library, const std::string& block,
                   std::optional<cad::ge::Point3d> bomMark);
    const std::string& block() const { return block_; }
    // The picture as drawn now; null while "No preview" shows.
    const QImage& picture();

    QSize sizeHint() const override { return {220, 180}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    cad::db::Database* library_ = nullptr;
    std::string block_;
    std::optional<cad::ge::Point3d> bomMark_;
    QImage picture_;
    bool current_ = false;
};

}  // namespace vantor
