// A linetype: its description and the pattern of dashes, gaps, dots and embedded texts or
// shapes that entities drawn with it repeat along their length.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class LinetypeTableRecord : public SymbolTableRecord {
public:
    // Dash types (74): plain, or carrying a text or a shape of a text style.
    static constexpr std::int16_t kAbsoluteRotation = 1;
    static constexpr std::int16_t kText = 2;
    static constexpr std::int16_t kShape = 4;

    struct Dash {
        double length = 0.0;  // 49: a dash when positive, a gap when negative, a dot at 0
        std::int16_t type = 0;
        std::int16_t shapeNumber = 0;  // 75
        ObjectId style;                // 340: the text style of the text or shape
        double scale = 1.0;            // 46
        double rotationDegrees = 0.0;  // 50, as the file keeps it
        double offsetX = 0.0;          // 44
        double offsetY = 0.0;          // 45
        std::string text;              // 9
    };

    LinetypeTableRecord() = default;

    std::string_view dxfName() const override { return "LTYPE"; }
    std::string_view className() const override { return "AcDbLinetypeTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::Linetype; }

    // The description shown in linetype lists ("Solid line").
    const std::string& comments() const { return comments_; }
    ErrorStatus setComments(std::string comments);
    // 65 ('A'): the pattern is stretched to start and end with a dash.
    std::int16_t alignment() const { return alignment_; }
    double patternLength() const { return patternLength_; }
    ErrorStatus setPatternLength(double length);
    const std::vector<Dash>& dashes() const { return dashes_; }
    std::size_t numDashes() const { return dashes_.size(); }
    // Sets the pattern and its length, the sum of the dashes' absolute lengths.
    ErrorStatus setDashes(std::vector<Dash> dashes);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    LinetypeTableRecord(const LinetypeTableRecord&) = default;

    std::string comments_;
    std::int16_t alignment_ = 'A';
    double patternLength_ = 0.0;
    std::vector<Dash> dashes_;
};

}  // namespace cad::db
