// A layer: colour, linetype, on/off, frozen and locked state, plotting and lineweight of the
// entities drawn on it.
#pragma once

#include <cstdint>
#include <memory>

#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class LayerTableRecord : public SymbolTableRecord {
public:
    static constexpr std::int16_t kFrozen = 1;
    static constexpr std::int16_t kFrozenInNewViewports = 2;
    static constexpr std::int16_t kLocked = 4;

    LayerTableRecord() = default;

    std::string_view dxfName() const override { return "LAYER"; }
    std::string_view className() const override { return "AcDbLayerTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::Layer; }

    // 1 to 255. A layer that is off keeps its colour: the file stores it negated.
    std::int16_t colorIndex() const;
    ErrorStatus setColorIndex(std::int16_t index);
    bool isOff() const { return color_ < 0; }
    ErrorStatus setIsOff(bool off);
    bool isFrozen() const { return (flags() & kFrozen) != 0; }
    ErrorStatus setIsFrozen(bool frozen);
    bool isLocked() const { return (flags() & kLocked) != 0; }
    ErrorStatus setIsLocked(bool locked);

    ObjectId linetypeObjectId() const { return linetype_; }
    ErrorStatus setLinetypeObjectId(ObjectId linetype);
    bool isPlottable() const { return plottable_; }
    ErrorStatus setIsPlottable(bool plottable);
    // In hundredths of a millimetre; -3 the default weight.
    std::int16_t lineWeight() const { return lineWeight_; }
    ErrorStatus setLineWeight(std::int16_t weight);
    // The plot style name object (an entry of ACAD_PLOTSTYLENAME).
    ObjectId plotStyleNameId() const { return plotStyle_; }
    ErrorStatus setPlotStyleNameId(ObjectId plotStyle);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

protected:
    // A layer made without a linetype gets "Continuous", and the plot style of layer "0".
    ErrorStatus completeNewRecord() override;

private:
    LayerTableRecord(const LayerTableRecord&) = default;
    ErrorStatus setFlag(std::int16_t flag, bool on);

    std::int16_t color_ = 7;
    ObjectId linetype_;
    bool plottable_ = true;
    std::int16_t lineWeight_ = -3;
    ObjectId plotStyle_;
};

}  // namespace cad::db
