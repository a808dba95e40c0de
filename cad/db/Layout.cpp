// Layouts: the AcDbLayout subclass after the plot settings.
#include "cad/db/Layout.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus Layout::setLayoutName(std::string name) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (name.empty()) return ErrorStatus::eInvalidKey;
    name_ = std::move(name);
    return ErrorStatus::eOk;
}

ErrorStatus Layout::setTabOrder(std::int16_t order) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (order < 0) return ErrorStatus::eInvalidInput;
    tabOrder_ = order;
    return ErrorStatus::eOk;
}

ErrorStatus Layout::setBlockTableRecordId(ObjectId record) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    blockRecord_ = record;
    return ErrorStatus::eOk;
}

ErrorStatus Layout::setLimits(const ge::Point2d& min, const ge::Point2d& max) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(min.x <= max.x && min.y <= max.y)) return ErrorStatus::eInvalidInput;
    limMin_ = {min.x, min.y, 0.0};
    limMax_ = {max.x, max.y, 0.0};
    return ErrorStatus::eOk;
}

ErrorStatus Layout::setExtents(const ge::Point3d& min, const ge::Point3d& max) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    extMin_ = min;
    extMax_ = max;
    return ErrorStatus::eOk;
}

void Layout::dxfFields(DxfFiler& filer) {
    PlotSettings::dxfFields(filer);
    filer.subclass("AcDbLayout");
    filer.string(1, name_);
    filer.int16(70, flags_);
    filer.int16(71, tabOrder_);
    filer.point2d(10, limMin_);
    filer.point2d(11, limMax_);
    filer.point(12, insBase_);
    filer.point(14, extMin_);
    filer.point(15, extMax_);
    filer.real(146, elevation_);
    filer.point(13, ucsOrigin_);
    filer.vector(16, ucsXAxis_);
    filer.vector(17, ucsYAxis_);
    filer.int16(76, ucsOrthographicType_);
    // This 330 is the layout's block record; the object's owner is the 330 of the common part.
    filer.reference(330, blockRecord_);
    if (!filer.isWriting() || !lastViewport_.isNull()) filer.reference(331, lastViewport_);
}

std::unique_ptr<DbObject> Layout::clone() const {
    return std::unique_ptr<DbObject>(new Layout(*this));
}

}  // namespace cad::db
