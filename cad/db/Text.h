// TEXT: one line of text in the plane of its normal, placed by its position or, for any other
// alignment than left/baseline, by its alignment point; mirrored through generation flags.
#pragma once

#include <cstdint>
#include <string>

#include "cad/db/Entity.h"

namespace cad::db {

enum class TextHorzMode : std::int16_t {
    kTextLeft = 0,
    kTextCenter = 1,
    kTextRight = 2,
    kTextAlign = 3,  // between position and alignment point, height scaled to fit
    kTextMid = 4,    // centred both ways on the alignment point
    kTextFit = 5,    // between position and alignment point, width scaled to fit
};

enum class TextVertMode : std::int16_t {
    kTextBase = 0,
    kTextBottom = 1,
    kTextVertMid = 2,
    kTextTop = 3,
};

class Text : public Entity {
public:
    Text() = default;
    Text(const ge::Point3d& position, std::string text, ObjectId style = {}, double height = 1.0,
         double rotation = 0.0);

    // Points in world coordinates; DXF stores them in the object coordinate system.
    const ge::Point3d& position() const { return position_; }
    ErrorStatus setPosition(const ge::Point3d& position);
    // Meaningful for every alignment but left/baseline; setting it (or the text, height,
    // rotation, width or modes) moves the position to match, estimated from the characters,
    // since the engine draws no fonts.
    const ge::Point3d& alignmentPoint() const { return alignmentPoint_; }
    ErrorStatus setAlignmentPoint(const ge::Point3d& point);
    bool isDefaultAlignment() const;
    TextHorzMode horizontalMode() const { return static_cast<TextHorzMode>(horizontal_); }
    ErrorStatus setHorizontalMode(TextHorzMode mode);
    TextVertMode verticalMode() const { return static_cast<TextVertMode>(vertical_); }
    ErrorStatus setVerticalMode(TextVertMode mode);

    const std::string& textString() const { return text_; }
    ErrorStatus setTextString(std::string text);
    ObjectId textStyle() const { return style_; }
    ErrorStatus setTextStyle(ObjectId style);
    double height() const { return height_; }
    ErrorStatus setHeight(double height);
    double rotation() const { return rotation_; }  // radians, in the object coordinate system
    ErrorStatus setRotation(double radians);
    double widthFactor() const { return widthFactor_; }
    ErrorStatus setWidthFactor(double factor);
    double oblique() const { return oblique_; }  // radians
    ErrorStatus setOblique(double radians);
    double thickness() const { return thickness_; }
    ErrorStatus setThickness(double thickness);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    // Generation flags 2 (backward: mirrored along the baseline) and 4 (upside down).
    std::int16_t generationFlags() const { return generation_; }
    bool isMirroredInX() const { return (generation_ & kBackward) != 0; }
    ErrorStatus mirrorInX(bool mirror);
    bool isMirroredInY() const { return (generation_ & kUpsideDown) != 0; }
    ErrorStatus mirrorInY(bool mirror);

    std::string_view dxfName() const override { return "TEXT"; }
    std::string_view className() const override { return "AcDbText"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override {
        return std::unique_ptr<DbObject>(new Text(*this));
    }

    // Any non-singular transform: a mirror toggles one generation flag (the one that keeps
    // the rotation nearer the old one: mirrored across the baseline's normal the text runs
    // backward, across the baseline it stands upside down); an uneven scale goes into the
    // height, width factor and oblique angle.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // The box of the text estimated from its characters (see estimatedWidth).
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

    // Without the font's metrics: wide (East Asian) characters take one height, others 0.6.
    static double estimatedWidth(std::string_view utf8, double height, double widthFactor);

    static constexpr std::int16_t kBackward = 2;
    static constexpr std::int16_t kUpsideDown = 4;

protected:
    Text(const Text&) = default;

    // The AcDbEntity part and the first AcDbText subclass, which attributes share.
    void textFields(DxfFiler& filer);
    // The vertical mode lives in a second AcDbText subclass (73) for TEXT and in the
    // attribute subclasses (74) for ATTDEF and ATTRIB.
    void verticalModeField(DxfFiler& filer, int code);
    // Copies the text's data and entity properties (not identity) from another text.
    void copyTextFrom(const Text& other);

private:
    bool isFitted() const;
    // The text's box in its own frame: the baseline start relative to the placing point, and
    // the width.
    void box(double& x0, double& baseline, double& width) const;
    // The frame's axes in world coordinates, with the generation flags applied.
    void axes(ge::Vector3d& xAxis, ge::Vector3d& yAxis) const;
    void alignPosition();

    ge::Point3d position_;
    ge::Point3d alignmentPoint_;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    std::string text_;
    ObjectId style_;
    double height_ = 1.0;
    double rotation_ = 0.0;
    double widthFactor_ = 1.0;
    double oblique_ = 0.0;
    double thickness_ = 0.0;
    std::int16_t generation_ = 0;
    std::int16_t horizontal_ = 0;
    std::int16_t vertical_ = 0;
};

}  // namespace cad::db
