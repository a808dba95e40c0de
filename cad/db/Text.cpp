// Text: the AcDbText layout, alignment, and transforms through the text's frame (baseline and
// up direction with the generation flags applied), which survives any non-singular map.
#include "cad/db/Text.h"

#include <cmath>
#include <numbers>

#include "cad/db/Database.h"
#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

namespace {

// Code points of the wide scripts (Hangul, CJK, full-width forms) take a full cell.
bool isWide(char32_t c) {
    return (c >= 0x1100 && c <= 0x11FF) || (c >= 0x2E80 && c <= 0xA4CF) ||
           (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0xFF00 && c <= 0xFF60) || (c >= 0xFFE0 && c <= 0xFFE6);
}

double angleOf(const ge::Vector3d& v) {
    return normalizedAngle(std::atan2(v.y, v.x));
}

double angularDistance(double a, double b) {
    const double d = normalizedAngle(a - b);
    return std::min(d, 2.0 * std::numbers::pi - d);
}

}  // namespace

Text::Text(const ge::Point3d& position, std::string text, ObjectId style, double height,
           double rotation)
    : position_(position),
      alignmentPoint_(position),
      text_(std::move(text)),
      style_(style),
      height_(height),
      rotation_(normalizedAngle(rotation)) {}

ErrorStatus Text::setPosition(const ge::Point3d& position) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    position_ = position;
    return ErrorStatus::eOk;
}

ErrorStatus Text::setAlignmentPoint(const ge::Point3d& point) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    alignmentPoint_ = point;
    alignPosition();
    return ErrorStatus::eOk;
}

bool Text::isDefaultAlignment() const {
    return horizontal_ == 0 && vertical_ == 0;
}

bool Text::isFitted() const {
    return horizontal_ == static_cast<std::int16_t>(TextHorzMode::kTextAlign) ||
           horizontal_ == static_cast<std::int16_t>(TextHorzMode::kTextFit);
}

ErrorStatus Text::setHorizontalMode(TextHorzMode mode) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const auto value = static_cast<std::int16_t>(mode);
    if (value < 0 || value > 5) return ErrorStatus::eInvalidInput;
    horizontal_ = value;
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setVerticalMode(TextVertMode mode) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const auto value = static_cast<std::int16_t>(mode);
    if (value < 0 || value > 3) return ErrorStatus::eInvalidInput;
    vertical_ = value;
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setTextString(std::string text) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    text_ = std::move(text);
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setTextStyle(ObjectId style) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (style.isNull()) return ErrorStatus::eNullObjectId;
    style_ = style;
    return ErrorStatus::eOk;
}

ErrorStatus Text::setHeight(double height) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(height > 0.0)) return ErrorStatus::eInvalidInput;
    height_ = height;
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setRotation(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    rotation_ = normalizedAngle(radians);
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setWidthFactor(double factor) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(factor > 0.0)) return ErrorStatus::eInvalidInput;
    widthFactor_ = factor;
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::setOblique(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (std::abs(radians) >= std::numbers::pi / 2.0) return ErrorStatus::eInvalidInput;
    oblique_ = radians;
    return ErrorStatus::eOk;
}

ErrorStatus Text::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Text::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

ErrorStatus Text::mirrorInX(bool mirror) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    generation_ =
        static_cast<std::int16_t>(mirror ? generation_ | kBackward : generation_ & ~kBackward);
    alignPosition();
    return ErrorStatus::eOk;
}

ErrorStatus Text::mirrorInY(bool mirror) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    generation_ =
        static_cast<std::int16_t>(mirror ? generation_ | kUpsideDown : generation_ & ~kUpsideDown);
    alignPosition();
    return ErrorStatus::eOk;
}

void Text::copyTextFrom(const Text& other) {
    setPropertiesFrom(other);
    position_ = other.position_;
    alignmentPoint_ = other.alignmentPoint_;
    normal_ = other.normal_;
    text_ = other.text_;
    style_ = other.style_;
    height_ = other.height_;
    rotation_ = other.rotation_;
    widthFactor_ = other.widthFactor_;
    oblique_ = other.oblique_;
    thickness_ = other.thickness_;
    generation_ = other.generation_;
    horizontal_ = other.horizontal_;
    vertical_ = other.vertical_;
}

void Text::dxfFields(DxfFiler& filer) {
    textFields(filer);
    filer.subclass("AcDbText");
    verticalModeField(filer, 73);
}

void Text::verticalModeField(DxfFiler& filer, int code) {
    filer.int16(code, vertical_, 0);
}

void Text::textFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbText");
    filer.real(39, thickness_, 0.0);
    // Both points are stored in the object coordinate system of the normal, which follows
    // them in the file: points read are converted once the normal is known.
    const ge::Matrix3d toOcs = ge::Matrix3d::worldToPlane(normal_);
    ge::Point3d position = toOcs * position_;
    ge::Point3d alignment = toOcs * alignmentPoint_;
    filer.point(10, position);
    filer.real(40, height_);
    filer.string(1, text_);
    double rotation = degreesFromRadians(rotation_);
    filer.real(50, rotation, 0.0);
    filer.real(41, widthFactor_, 1.0);
    double oblique = degreesFromRadians(oblique_);
    filer.real(51, oblique, 0.0);
    const Database* db = database();
    const ObjectId standard =
        db != nullptr && !style_.isNull() ? db->textStyleStandard() : ObjectId::kNull;
    filer.symbol(7, style_, DxfFiler::SymbolTable::TextStyle, standard);
    filer.int16(71, generation_, 0);
    filer.int16(72, horizontal_, 0);
    // The host writes the alignment point only when it places the text.
    if (!filer.isWriting() || !isDefaultAlignment()) filer.point(11, alignment);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    if (filer.isReading()) {
        const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
        position_ = toWorld * position;
        alignmentPoint_ = toWorld * alignment;
        rotation_ = normalizedAngle(radiansFromDegrees(rotation));
        oblique_ = radiansFromDegrees(oblique);
    }
}

double Text::estimatedWidth(std::string_view utf8, double height, double widthFactor) {
    double cells = 0.0;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t c = length == 1 ? lead : lead & (0x3F >> (length - 1));
        for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k)
            c = (c << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        cells += isWide(c) ? 1.0 : 0.6;
        i += length;
    }
    return cells * height * widthFactor;
}

void Text::box(double& x0, double& baseline, double& width) const {
    const ge::Matrix3d toOcs = ge::Matrix3d::worldToPlane(normal_);
    if (isFitted()) {
        const ge::Vector3d span = toOcs * (alignmentPoint_ - position_);
        width = std::hypot(span.x, span.y);
        x0 = 0.0;
        baseline = 0.0;
        return;
    }
    width = estimatedWidth(text_, height_, widthFactor_);
    switch (static_cast<TextHorzMode>(horizontal_)) {
        case TextHorzMode::kTextCenter:
        case TextHorzMode::kTextMid:
            x0 = -width / 2.0;
            break;
        case TextHorzMode::kTextRight:
            x0 = -width;
            break;
        default:
            x0 = 0.0;
            break;
    }
    if (horizontal_ == static_cast<std::int16_t>(TextHorzMode::kTextMid)) {
        baseline = -height_ / 2.0;
        return;
    }
    switch (static_cast<TextVertMode>(vertical_)) {
        case TextVertMode::kTextVertMid:
            baseline = -height_ / 2.0;
            break;
        case TextVertMode::kTextTop:
            baseline = -height_;
            break;
        default:
            baseline = 0.0;
            break;
    }
}

void Text::axes(ge::Vector3d& xAxis, ge::Vector3d& yAxis) const {
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
    const double xs = isMirroredInX() ? -1.0 : 1.0;
    const double ys = isMirroredInY() ? -1.0 : 1.0;
    xAxis = toWorld * ge::Vector3d(std::cos(rotation_), std::sin(rotation_), 0.0) * xs;
    yAxis = toWorld * ge::Vector3d(-std::sin(rotation_), std::cos(rotation_), 0.0) * ys;
}

void Text::alignPosition() {
    if (isDefaultAlignment() || isFitted()) return;
    double x0 = 0.0, baseline = 0.0, width = 0.0;
    box(x0, baseline, width);
    ge::Vector3d xAxis, yAxis;
    axes(xAxis, yAxis);
    position_ = alignmentPoint_ + xAxis * x0 + yAxis * baseline;
}

ErrorStatus Text::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;

    // The glyph frame in the old object coordinates: e1 spans one unit of text along the
    // (possibly backward) baseline, e2 one unit up the (possibly upside-down, slanted) glyph.
    const double xs = isMirroredInX() ? -1.0 : 1.0;
    const double ys = isMirroredInY() ? -1.0 : 1.0;
    const ge::Vector3d baseDir(std::cos(rotation_), std::sin(rotation_), 0.0);
    const ge::Vector3d upDir(-std::sin(rotation_), std::cos(rotation_), 0.0);
    const ge::Vector3d e1 = baseDir * (xs * height_ * widthFactor_);
    const ge::Vector3d e2 = (upDir * ys + baseDir * (xs * std::tan(oblique_))) * height_;
    const ge::Vector3d f1 = mapping.mapVector(e1);
    const ge::Vector3d f2 = mapping.mapVector(e2);
    const double det = f1.x * f2.y - f1.y * f2.x;
    if (f1.isZeroLength() || det == 0.0) return ErrorStatus::eInvalidInput;

    bool backward = isMirroredInX();
    bool upsideDown = isMirroredInY();
    if ((det < 0.0) != (xs * ys < 0.0)) {
        const double ifBackward = angleOf(-f1 * xs);
        const double ifUpsideDown = angleOf(f1 * xs);
        if (angularDistance(ifBackward, rotation_) <= angularDistance(ifUpsideDown, rotation_))
            backward = !backward;
        else
            upsideDown = !upsideDown;
    }
    const double nxs = backward ? -1.0 : 1.0;
    const double nys = upsideDown ? -1.0 : 1.0;
    const ge::Vector3d base = (f1 * nxs).normal();
    const ge::Vector3d up(-base.y, base.x, 0.0);
    const double height = nys * f2.dotProduct(up);

    rotation_ = angleOf(base);
    height_ = height;
    widthFactor_ = f1.length() / height;
    oblique_ = std::atan(nxs * f2.dotProduct(base) / height);
    generation_ =
        static_cast<std::int16_t>((generation_ & ~(kBackward | kUpsideDown)) |
                                  (backward ? kBackward : 0) | (upsideDown ? kUpsideDown : 0));
    position_ = xform * position_;
    alignmentPoint_ = xform * alignmentPoint_;
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Text::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    double x0 = 0.0, baseline = 0.0, width = 0.0;
    box(x0, baseline, width);
    ge::Vector3d xAxis, yAxis;
    axes(xAxis, yAxis);
    const ge::Vector3d slant = xAxis * std::tan(oblique_);
    const ge::Point3d origin =
        isDefaultAlignment() || isFitted() ? position_ : alignmentPoint_ + yAxis * baseline;
    const double left = isDefaultAlignment() || isFitted() ? 0.0 : x0;
    for (double y : {0.0, height_}) {
        for (double x : {left, left + width}) {
            const ge::Point3d p = origin + xAxis * x + (yAxis + slant) * y;
            extents.addPoint(p);
            if (thickness_ != 0.0) extents.addPoint(p + normal_ * thickness_);
        }
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
