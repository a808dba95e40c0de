// Layers: colour with the off state in its sign, flags, linetype and plotting properties.
#include "cad/db/LayerTableRecord.h"

#include <cstdlib>

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectPtr.h"

namespace cad::db {

std::int16_t LayerTableRecord::colorIndex() const {
    return static_cast<std::int16_t>(std::abs(color_));
}

ErrorStatus LayerTableRecord::setColorIndex(std::int16_t index) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index < 1 || index > 255) return ErrorStatus::eInvalidInput;
    color_ = isOff() ? static_cast<std::int16_t>(-index) : index;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::setIsOff(bool off) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const std::int16_t index = colorIndex();
    color_ = off ? static_cast<std::int16_t>(-index) : index;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::setFlag(std::int16_t flag, bool on) {
    return setFlags(static_cast<std::int16_t>(on ? (flags() | flag) : (flags() & ~flag)));
}

ErrorStatus LayerTableRecord::setIsFrozen(bool frozen) {
    return setFlag(kFrozen, frozen);
}

ErrorStatus LayerTableRecord::setIsLocked(bool locked) {
    return setFlag(kLocked, locked);
}

ErrorStatus LayerTableRecord::setLinetypeObjectId(ObjectId linetype) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (linetype.isNull()) return ErrorStatus::eNullObjectId;
    linetype_ = linetype;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::setIsPlottable(bool plottable) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    plottable_ = plottable;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::setLineWeight(std::int16_t weight) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (weight < -3 || weight > 211) return ErrorStatus::eInvalidInput;
    lineWeight_ = weight;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::setPlotStyleNameId(ObjectId plotStyle) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    plotStyle_ = plotStyle;
    return ErrorStatus::eOk;
}

ErrorStatus LayerTableRecord::completeNewRecord() {
    const Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (linetype_.isNull()) linetype_ = db->continuousLinetype();
    if (plotStyle_.isNull() && db->layerZero() != objectId()) {
        if (auto zero = open<LayerTableRecord>(db->layerZero(), OpenMode::ForRead))
            plotStyle_ = zero->plotStyleNameId();
    }
    return ErrorStatus::eOk;
}

void LayerTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbLayerTableRecord");
    nameAndFlags(filer);
    filer.int16(62, color_);
    filer.symbol(6, linetype_, DxfFiler::SymbolTable::Linetype);
    if (filer.atLeast(DxfVersion::R2000)) {
        // Only a layer that is not plotted says so; plotting is what a missing 290 means.
        if (!filer.isWriting() || !plottable_) filer.boolean(290, plottable_);
        filer.int16(370, lineWeight_);
        if (!filer.isWriting() || !plotStyle_.isNull()) filer.reference(390, plotStyle_);
    }
}

std::unique_ptr<DbObject> LayerTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new LayerTableRecord(*this));
}

}  // namespace cad::db
