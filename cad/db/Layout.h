// A layout: model space or one paper space sheet, with its plot settings, limits, extents
// and user coordinate system. Each layout is tied to its block table record both ways (the
// layout names the record, the record names the layout).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cad/db/PlotSettings.h"
#include "cad/ge/Point2d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

class Layout : public PlotSettings {
public:
    static constexpr std::string_view kModelName = "Model";

    Layout() = default;

    std::string_view dxfName() const override { return "LAYOUT"; }
    std::string_view className() const override { return "AcDbLayout"; }

    const std::string& layoutName() const { return name_; }
    ErrorStatus setLayoutName(std::string name);
    // The place of the layout's tab: 0 for model space, then 1, 2, ... for the sheets.
    std::int16_t tabOrder() const { return tabOrder_; }
    ErrorStatus setTabOrder(std::int16_t order);
    bool isModelLayout() const { return tabOrder_ == 0 && name_ == kModelName; }

    ObjectId blockTableRecordId() const { return blockRecord_; }
    ErrorStatus setBlockTableRecordId(ObjectId record);
    ObjectId lastActiveViewportId() const { return lastViewport_; }

    ge::Point2d limitsMin() const { return {limMin_.x, limMin_.y}; }
    ge::Point2d limitsMax() const { return {limMax_.x, limMax_.y}; }
    ErrorStatus setLimits(const ge::Point2d& min, const ge::Point2d& max);
    const ge::Point3d& insertionBase() const { return insBase_; }
    const ge::Point3d& extentsMin() const { return extMin_; }
    const ge::Point3d& extentsMax() const { return extMax_; }
    ErrorStatus setExtents(const ge::Point3d& min, const ge::Point3d& max);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    Layout(const Layout&) = default;

    std::string name_;
    std::int16_t flags_ = 1;  // 1: linetypes scaled in paper space
    std::int16_t tabOrder_ = 0;
    ge::Point3d limMin_;
    ge::Point3d limMax_{420.0, 297.0, 0.0};
    ge::Point3d insBase_;
    // Empty extents, as a sheet with nothing on it has them.
    ge::Point3d extMin_{1e20, 1e20, 1e20};
    ge::Point3d extMax_{-1e20, -1e20, -1e20};
    double elevation_ = 0.0;
    ge::Point3d ucsOrigin_;
    ge::Vector3d ucsXAxis_{1.0, 0.0, 0.0};
    ge::Vector3d ucsYAxis_{0.0, 1.0, 0.0};
    std::int16_t ucsOrthographicType_ = 1;
    ObjectId blockRecord_;
    ObjectId lastViewport_;
};

}  // namespace cad::db
