// DIMSTYLE records: name, flags and the record references; the rest is kept as read.
#include "cad/db/DimStyleTableRecord.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus DimStyleTableRecord::setDimtxsty(ObjectId textStyle) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    textStyle_ = textStyle;
    return ErrorStatus::eOk;
}

void DimStyleTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbDimStyleTableRecord");
    nameAndFlags(filer);
    // A reference the style does not set is left out rather than written as a null handle.
    int code = 340;
    for (ObjectId* id : {&textStyle_, &leaderBlock_, &arrowBlock_, &arrowBlock1_, &arrowBlock2_}) {
        if (!filer.isWriting() || !id->isNull()) filer.reference(code, *id);
        ++code;
    }
}

std::unique_ptr<DbObject> DimStyleTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new DimStyleTableRecord(*this));
}

}  // namespace cad::db
