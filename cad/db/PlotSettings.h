// How a layout or a named page setup is plotted: device, paper, margins, area and scale.
// Layouts derive from it; the drawing's named page setups (ACAD_PLOTSETTINGS) are its own
// objects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cad/db/DbObject.h"

namespace cad::db {

class PlotSettings : public DbObject {
public:
    struct Values {
        std::string pageSetupName;                                       // 1
        std::string plotConfigurationName = "none_device";               // 2
        std::string canonicalMediaName = "ISO_A3_(420.00_x_297.00_MM)";  // 4
        std::string plotViewName;                                        // 6
        double leftMargin = 7.5;                                         // 40, millimetres
        double bottomMargin = 20.0;                                      // 41
        double rightMargin = 7.5;                                        // 42
        double topMargin = 20.0;                                         // 43
        double paperWidth = 420.0;                                       // 44
        double paperHeight = 297.0;                                      // 45
        double plotOriginX = 0.0;                                        // 46
        double plotOriginY = 0.0;                                        // 47
        double windowMinX = 0.0;                                         // 48
        double windowMinY = 0.0;                                         // 49
        double windowMaxX = 0.0;                                         // 140
        double windowMaxY = 0.0;                                         // 141
        double scaleNumerator = 1.0;                                     // 142
        double scaleDenominator = 1.0;                                   // 143
        std::int16_t layoutFlags = 0;                                    // 70
        std::int16_t paperUnits = 1;           // 72: 0 inches, 1 millimetres
        std::int16_t rotation = 0;             // 73: quarter turns
        std::int16_t plotType = 5;             // 74: 5 the layout
        std::string currentStyleSheet;         // 7
        std::int16_t standardScaleType = 16;   // 75: 16 is 1:1
        double scaleFactor = 1.0;              // 147
        double paperImageOriginX = 0.0;        // 148
        double paperImageOriginY = 0.0;        // 149
        std::int16_t shadePlotMode = 0;        // 76 (from 2004)
        std::int16_t shadePlotResolution = 2;  // 77
        std::int16_t shadePlotDpi = 300;       // 78
    };

    PlotSettings() = default;

    std::string_view dxfName() const override { return "PLOTSETTINGS"; }
    std::string_view className() const override { return "AcDbPlotSettings"; }

    const Values& plotSettings() const { return values_; }
    ErrorStatus setPlotSettings(Values values);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

protected:
    PlotSettings(const PlotSettings&) = default;

private:
    Values values_;
};

}  // namespace cad::db
