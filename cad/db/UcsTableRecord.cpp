// UCS records: origin and axes.
#include "cad/db/UcsTableRecord.h"

#include <cmath>

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus UcsTableRecord::setOrigin(const ge::Point3d& origin) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    origin_ = origin;
    return ErrorStatus::eOk;
}

ErrorStatus UcsTableRecord::setAxes(const ge::Vector3d& xAxis, const ge::Vector3d& yAxis) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (xAxis.isZeroLength() || yAxis.isZeroLength() ||
        std::fabs(xAxis.normal().dotProduct(yAxis.normal())) > ge::Tolerance::global().equalVector)
        return ErrorStatus::eInvalidInput;
    xAxis_ = xAxis;
    yAxis_ = yAxis;
    return ErrorStatus::eOk;
}

void UcsTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbUCSTableRecord");
    nameAndFlags(filer);
    filer.point(10, origin_);
    filer.vector(11, xAxis_);
    filer.vector(12, yAxis_);
}

std::unique_ptr<DbObject> UcsTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new UcsTableRecord(*this));
}

}  // namespace cad::db
