// VIEW records: the view fields in the reference order.
#include "cad/db/ViewTableRecord.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

void ViewTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbViewTableRecord");
    nameAndFlags(filer);
    filer.real(40, height_);
    filer.point2d(10, center_);
    filer.real(41, width_);
    filer.vector(11, direction_);
    filer.point(12, target_);
    filer.real(42, lensLength_);
    filer.real(43, frontClip_);
    filer.real(44, backClip_);
    filer.real(50, twistDegrees_);
    filer.int16(71, viewMode_);
    if (filer.atLeast(DxfVersion::R2000)) {
        filer.int16(281, renderMode_);
        filer.int16(72, ucsAssociated_);
    }
}

std::unique_ptr<DbObject> ViewTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new ViewTableRecord(*this));
}

}  // namespace cad::db
