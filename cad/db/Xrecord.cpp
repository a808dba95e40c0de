// Extended records: the merge style, then the chain in order.
#include "cad/db/Xrecord.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus Xrecord::setFromRbChain(ResBufChain chain) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    chain_ = std::move(chain);
    return ErrorStatus::eOk;
}

ErrorStatus Xrecord::setMergeStyle(std::int16_t style) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (style < 0 || style > 5) return ErrorStatus::eInvalidInput;
    mergeStyle_ = style;
    return ErrorStatus::eOk;
}

void Xrecord::dxfFields(DxfFiler& filer) {
    filer.subclass("AcDbXrecord");
    // The flag came with R2000. Before that a 280 belongs to the data, so it is not taken.
    if (filer.atLeast(DxfVersion::R2000)) filer.int16(280, mergeStyle_);
    filer.resbufs(chain_);
}

std::unique_ptr<DbObject> Xrecord::clone() const {
    return std::unique_ptr<DbObject>(new Xrecord(*this));
}

}  // namespace cad::db
