// A tiled viewport of model space. The "*Active" records describe the viewports the drawing
// was last shown in, which is where a program opening it starts.
#pragma once

#include <cstdint>
#include <memory>

#include "cad/db/AbstractViewTableRecord.h"

namespace cad::db {

class ViewportTableRecord : public AbstractViewTableRecord {
public:
    static constexpr std::string_view kActive = "*Active";

    ViewportTableRecord() = default;

    std::string_view dxfName() const override { return "VPORT"; }
    std::string_view className() const override { return "AcDbViewportTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::Viewport; }

    // The viewport's place on the screen, from (0, 0) to (1, 1).
    ge::Point2d lowerLeftCorner() const { return {lowerLeft_.x, lowerLeft_.y}; }
    ge::Point2d upperRightCorner() const { return {upperRight_.x, upperRight_.y}; }
    ErrorStatus setCorners(const ge::Point2d& lowerLeft, const ge::Point2d& upperRight);
    bool gridEnabled() const { return gridOn_ != 0; }
    ErrorStatus setGridEnabled(bool on);
    ge::Point2d gridIncrements() const { return {gridSpacing_.x, gridSpacing_.y}; }
    ErrorStatus setGridIncrements(const ge::Point2d& spacing);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    ViewportTableRecord(const ViewportTableRecord&) = default;

    ge::Point3d lowerLeft_;
    ge::Point3d upperRight_{1.0, 1.0, 0.0};
    ge::Point3d snapBase_;
    ge::Point3d snapSpacing_{10.0, 10.0, 0.0};
    ge::Point3d gridSpacing_{10.0, 10.0, 0.0};
    double aspectAsRead_ = 0.0;  // the file's width-to-height ratio, to write it back unchanged
    double snapAngleDegrees_ = 0.0;
    std::int16_t circleZoom_ = 1000;
    std::int16_t fastZoom_ = 1;
    std::int16_t ucsIcon_ = 3;
    std::int16_t snapOn_ = 0;
    std::int16_t gridOn_ = 0;
    std::int16_t snapStyle_ = 0;
    std::int16_t snapIsoPair_ = 0;
    std::int16_t renderMode_ = 0;
    std::int16_t ucsPerViewport_ = 1;
    ge::Point3d ucsOrigin_;
    ge::Vector3d ucsXAxis_{1.0, 0.0, 0.0};
    ge::Vector3d ucsYAxis_{0.0, 1.0, 0.0};
    std::int16_t orthographicType_ = 0;
    double elevation_ = 0.0;
};

}  // namespace cad::db
