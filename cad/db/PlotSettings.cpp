// Plot settings: the AcDbPlotSettings subclass in the reference order.
#include "cad/db/PlotSettings.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus PlotSettings::setPlotSettings(Values values) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    values_ = std::move(values);
    return ErrorStatus::eOk;
}

void PlotSettings::dxfFields(DxfFiler& filer) {
    Values& v = values_;
    filer.subclass("AcDbPlotSettings");
    filer.string(1, v.pageSetupName);
    filer.string(2, v.plotConfigurationName);
    filer.string(4, v.canonicalMediaName);
    filer.string(6, v.plotViewName);
    filer.real(40, v.leftMargin);
    filer.real(41, v.bottomMargin);
    filer.real(42, v.rightMargin);
    filer.real(43, v.topMargin);
    filer.real(44, v.paperWidth);
    filer.real(45, v.paperHeight);
    filer.real(46, v.plotOriginX);
    filer.real(47, v.plotOriginY);
    filer.real(48, v.windowMinX);
    filer.real(49, v.windowMinY);
    filer.real(140, v.windowMaxX);
    filer.real(141, v.windowMaxY);
    filer.real(142, v.scaleNumerator);
    filer.real(143, v.scaleDenominator);
    filer.int16(70, v.layoutFlags);
    filer.int16(72, v.paperUnits);
    filer.int16(73, v.rotation);
    filer.int16(74, v.plotType);
    filer.string(7, v.currentStyleSheet);
    filer.int16(75, v.standardScaleType);
    if (filer.atLeast(DxfVersion::R2004)) {
        filer.int16(76, v.shadePlotMode);
        filer.int16(77, v.shadePlotResolution);
        filer.int16(78, v.shadePlotDpi);
    }
    filer.real(147, v.scaleFactor);
    filer.real(148, v.paperImageOriginX);
    filer.real(149, v.paperImageOriginY);
}

std::unique_ptr<DbObject> PlotSettings::clone() const {
    return std::unique_ptr<DbObject>(new PlotSettings(*this));
}

}  // namespace cad::db
