// MTEXT: formatted text of any length in a box of a reference width, placed by its location
// and attachment point, with its direction given as a vector in world coordinates.
#pragma once

#include <cstdint>
#include <string>

#include "cad/db/Entity.h"

namespace cad::db {

class MText : public Entity {
public:
    // Where the location sits on the text's box.
    enum class AttachmentPoint : std::int16_t {
        kTopLeft = 1,
        kTopCenter = 2,
        kTopRight = 3,
        kMiddleLeft = 4,
        kMiddleCenter = 5,
        kMiddleRight = 6,
        kBottomLeft = 7,
        kBottomCenter = 8,
        kBottomRight = 9,
    };

    MText() = default;
    MText(const ge::Point3d& location, std::string contents, ObjectId style = {},
          double height = 1.0);

    const ge::Point3d& location() const { return location_; }
    ErrorStatus setLocation(const ge::Point3d& location);
    // The text with its inline formatting codes (\P paragraph, {\fArial;...} and so on).
    const std::string& contents() const { return contents_; }
    ErrorStatus setContents(std::string contents);
    ObjectId textStyle() const { return style_; }
    ErrorStatus setTextStyle(ObjectId style);
    double textHeight() const { return height_; }
    ErrorStatus setTextHeight(double height);
    double width() const { return width_; }  // 0: no wrapping
    ErrorStatus setWidth(double width);
    AttachmentPoint attachment() const { return static_cast<AttachmentPoint>(attachment_); }
    ErrorStatus setAttachment(AttachmentPoint attachment);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);
    // The x axis of the text: a unit vector in the plane of the normal.
    const ge::Vector3d& direction() const { return direction_; }
    ErrorStatus setDirection(const ge::Vector3d& direction);
    // The direction as an angle in the object coordinate system of the normal (radians).
    double rotation() const;
    ErrorStatus setRotation(double radians);

    std::string_view dxfName() const override { return "MTEXT"; }
    std::string_view className() const override { return "AcDbMText"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<MText>(*this); }

    // The text has no mirror flags: a mirror turns its normal over, so it reads mirrored as
    // the transform asks.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // Estimated from the characters of the longest paragraph (formatting codes left out) and
    // the number of paragraphs, on the box of the attachment point.
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

    // The text without formatting codes, paragraphs separated by '\n'.
    static std::string plainText(std::string_view contents);

private:
    ge::Point3d location_;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    ge::Vector3d direction_ = ge::Vector3d::kXAxis;
    std::string contents_;
    ObjectId style_;
    double height_ = 1.0;
    double width_ = 0.0;
    std::int16_t attachment_ = 1;
    std::int16_t drawingDirection_ = 1;  // 72: left to right
};

}  // namespace cad::db
