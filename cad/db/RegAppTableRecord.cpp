// APPID records: a name and flags.
#include "cad/db/RegAppTableRecord.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

void RegAppTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbRegAppTableRecord");
    nameAndFlags(filer);
}

std::unique_ptr<DbObject> RegAppTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new RegAppTableRecord(*this));
}

}  // namespace cad::db
