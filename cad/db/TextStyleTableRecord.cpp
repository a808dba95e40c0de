// Text styles: sizes, angles, fonts and generation flags.
#include "cad/db/TextStyleTableRecord.h"

#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus TextStyleTableRecord::setTextSize(double size) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(size >= 0.0)) return ErrorStatus::eInvalidInput;
    textSize_ = size;
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setXScale(double scale) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(scale > 0.0)) return ErrorStatus::eInvalidInput;
    xScale_ = scale;
    return ErrorStatus::eOk;
}

double TextStyleTableRecord::obliquingAngle() const {
    return radiansFromDegrees(obliqueDegrees_);
}

ErrorStatus TextStyleTableRecord::setObliquingAngle(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    obliqueDegrees_ = degreesFromRadians(radians);
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setPriorSize(double size) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(size >= 0.0)) return ErrorStatus::eInvalidInput;
    priorSize_ = size;
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setFileName(std::string file) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    fileName_ = std::move(file);
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setBigFontFileName(std::string file) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    bigFontFileName_ = std::move(file);
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setFlagBits(std::int16_t bits) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    generation_ = bits;
    return ErrorStatus::eOk;
}

ErrorStatus TextStyleTableRecord::setGenerationFlag(std::int16_t flag, bool on) {
    return setFlagBits(
        static_cast<std::int16_t>(on ? (generation_ | flag) : (generation_ & ~flag)));
}

ErrorStatus TextStyleTableRecord::setIsBackwards(bool backwards) {
    return setGenerationFlag(kBackwards, backwards);
}

ErrorStatus TextStyleTableRecord::setIsUpsideDown(bool upsideDown) {
    return setGenerationFlag(kUpsideDown, upsideDown);
}

void TextStyleTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbTextStyleTableRecord");
    nameAndFlags(filer);
    filer.real(40, textSize_);
    filer.real(41, xScale_);
    filer.real(50, obliqueDegrees_);
    filer.int16(71, generation_);
    filer.real(42, priorSize_);
    filer.string(3, fileName_);
    filer.string(4, bigFontFileName_);
}

std::unique_ptr<DbObject> TextStyleTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new TextStyleTableRecord(*this));
}

}  // namespace cad::db
