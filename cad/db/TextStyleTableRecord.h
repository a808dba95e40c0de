// A text style: font files, fixed height, width factor, obliquing and the generation flags
// that draw text backwards or upside down.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class TextStyleTableRecord : public SymbolTableRecord {
public:
    // Record flags (70).
    static constexpr std::int16_t kShapeFile = 1;
    static constexpr std::int16_t kVertical = 4;
    // Generation flags (71).
    static constexpr std::int16_t kBackwards = 2;
    static constexpr std::int16_t kUpsideDown = 4;

    TextStyleTableRecord() = default;

    std::string_view dxfName() const override { return "STYLE"; }
    std::string_view className() const override { return "AcDbTextStyleTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::TextStyle; }

    // 0: texts choose their own height.
    double textSize() const { return textSize_; }
    ErrorStatus setTextSize(double size);
    double xScale() const { return xScale_; }
    ErrorStatus setXScale(double scale);
    // Radians, as every angle of the engine's interface.
    double obliquingAngle() const;
    ErrorStatus setObliquingAngle(double radians);
    double priorSize() const { return priorSize_; }
    ErrorStatus setPriorSize(double size);
    const std::string& fileName() const { return fileName_; }
    ErrorStatus setFileName(std::string file);
    const std::string& bigFontFileName() const { return bigFontFileName_; }
    ErrorStatus setBigFontFileName(std::string file);

    std::int16_t flagBits() const { return generation_; }
    ErrorStatus setFlagBits(std::int16_t bits);
    bool isBackwards() const { return (generation_ & kBackwards) != 0; }
    ErrorStatus setIsBackwards(bool backwards);
    bool isUpsideDown() const { return (generation_ & kUpsideDown) != 0; }
    ErrorStatus setIsUpsideDown(bool upsideDown);
    bool isVertical() const { return (flags() & kVertical) != 0; }
    bool isShapeFile() const { return (flags() & kShapeFile) != 0; }

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    TextStyleTableRecord(const TextStyleTableRecord&) = default;
    ErrorStatus setGenerationFlag(std::int16_t flag, bool on);

    double textSize_ = 0.0;
    double xScale_ = 1.0;
    double obliqueDegrees_ = 0.0;  // kept as the file has it, so it is written back unchanged
    std::int16_t generation_ = 0;
    double priorSize_ = 2.5;
    std::string fileName_;
    std::string bigFontFileName_;
};

}  // namespace cad::db
