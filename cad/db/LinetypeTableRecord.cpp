// Linetypes: description and dash pattern, each dash a record starting at 49.
#include "cad/db/LinetypeTableRecord.h"

#include <cmath>

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus LinetypeTableRecord::setComments(std::string comments) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    comments_ = std::move(comments);
    return ErrorStatus::eOk;
}

ErrorStatus LinetypeTableRecord::setPatternLength(double length) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(length >= 0.0)) return ErrorStatus::eInvalidInput;
    patternLength_ = length;
    return ErrorStatus::eOk;
}

ErrorStatus LinetypeTableRecord::setDashes(std::vector<Dash> dashes) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    double length = 0.0;
    for (const Dash& dash : dashes) length += std::fabs(dash.length);
    dashes_ = std::move(dashes);
    patternLength_ = length;
    return ErrorStatus::eOk;
}

void LinetypeTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbLinetypeTableRecord");
    nameAndFlags(filer);
    filer.string(3, comments_);
    filer.int16(72, alignment_);
    // The count comes before the length, the dashes after; on reading the dashes found count.
    auto count = static_cast<std::int16_t>(dashes_.size());
    filer.int16(73, count);
    filer.real(40, patternLength_);
    filer.records(49, dashes_, [&](Dash& dash) {
        filer.real(49, dash.length);
        filer.int16(74, dash.type);
        if (filer.isWriting() && dash.type == 0) return;
        filer.int16(75, dash.shapeNumber);
        filer.reference(340, dash.style);
        filer.real(46, dash.scale);
        filer.real(50, dash.rotationDegrees);
        filer.real(44, dash.offsetX);
        filer.real(45, dash.offsetY);
        if (!filer.isWriting() || (dash.type & kText) != 0) filer.string(9, dash.text);
    });
}

std::unique_ptr<DbObject> LinetypeTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new LinetypeTableRecord(*this));
}

}  // namespace cad::db
