// MText: the AcDbMText layout with the text split into chunks, the transform of its frame and
// an extents estimate.
#include "cad/db/MText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"
#include "cad/db/Text.h"

namespace cad::db {

namespace {

// Texts longer than this go into 3 chunks of this size ahead of the final 1.
constexpr std::size_t kChunkBytes = 250;
// Line pitch of multi-line text relative to the height, at the default spacing factor.
constexpr double kLinePitch = 5.0 / 3.0;

// Splits on UTF-8 character boundaries, so no chunk ends inside a character; the writer
// converts each chunk on its own.
std::vector<std::string> chunksOf(const std::string& text, std::string& last) {
    std::vector<std::string> chunks;
    std::size_t begin = 0;
    while (text.size() - begin > kChunkBytes) {
        std::size_t end = begin + kChunkBytes;
        while (end > begin && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
        chunks.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    last = text.substr(begin);
    return chunks;
}

}  // namespace

MText::MText(const ge::Point3d& location, std::string contents, ObjectId style, double height)
    : location_(location), contents_(std::move(contents)), style_(style), height_(height) {}

ErrorStatus MText::setLocation(const ge::Point3d& location) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    location_ = location;
    return ErrorStatus::eOk;
}

ErrorStatus MText::setContents(std::string contents) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    contents_ = std::move(contents);
    return ErrorStatus::eOk;
}

ErrorStatus MText::setTextStyle(ObjectId style) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (style.isNull()) return ErrorStatus::eNullObjectId;
    style_ = style;
    return ErrorStatus::eOk;
}

ErrorStatus MText::setTextHeight(double height) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(height > 0.0)) return ErrorStatus::eInvalidInput;
    height_ = height;
    return ErrorStatus::eOk;
}

ErrorStatus MText::setWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    width_ = width;
    return ErrorStatus::eOk;
}

ErrorStatus MText::setAttachment(AttachmentPoint attachment) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const auto value = static_cast<std::int16_t>(attachment);
    if (value < 1 || value > 9) return ErrorStatus::eInvalidInput;
    attachment_ = value;
    return ErrorStatus::eOk;
}

ErrorStatus MText::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    const double angle = rotation();
    normal_ = normal.normal();
    direction_ =
        ge::Matrix3d::planeToWorld(normal_) * ge::Vector3d(std::cos(angle), std::sin(angle), 0.0);
    return ErrorStatus::eOk;
}

ErrorStatus MText::setDirection(const ge::Vector3d& direction) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    // Only the part in the text's plane counts.
    const ge::Vector3d inPlane = direction - normal_ * direction.dotProduct(normal_);
    if (inPlane.isZeroLength()) return ErrorStatus::eInvalidInput;
    direction_ = inPlane.normal();
    return ErrorStatus::eOk;
}

double MText::rotation() const {
    const ge::Vector3d d = ge::Matrix3d::worldToPlane(normal_) * direction_;
    return normalizedAngle(std::atan2(d.y, d.x));
}

ErrorStatus MText::setRotation(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    direction_ = ge::Matrix3d::planeToWorld(normal_) *
                 ge::Vector3d(std::cos(radians), std::sin(radians), 0.0);
    return ErrorStatus::eOk;
}

void MText::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbMText");
    filer.point(10, location_);
    filer.real(40, height_);
    filer.real(41, width_);
    filer.int16(71, attachment_);
    filer.int16(72, drawingDirection_);
    std::string last;
    std::vector<std::string> chunks;
    if (filer.isWriting()) chunks = chunksOf(contents_, last);
    filer.records(3, chunks, [&](std::string& chunk) { filer.string(3, chunk); });
    filer.string(1, last);
    const Database* db = database();
    const ObjectId standard =
        db != nullptr && !style_.isNull() ? db->textStyleStandard() : ObjectId::kNull;
    filer.symbol(7, style_, DxfFiler::SymbolTable::TextStyle, standard);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    ge::Point3d direction = ge::Point3d::kOrigin + direction_;
    if (filer.isReading()) direction.x = std::numeric_limits<double>::quiet_NaN();
    filer.point(11, direction);
    if (!filer.isReading()) return;

    // The rotation (50) is read, never written: the direction takes precedence, and a kept
    // rotation would go stale after a transform. Other programs write it in degrees.
    double degrees = 0.0;
    filer.real(50, degrees, 0.0);
    contents_.clear();
    for (const std::string& chunk : chunks) contents_ += chunk;
    contents_ += last;
    if (!std::isnan(direction.x) && !direction.asVector().isZeroLength()) {
        direction_ = direction.asVector().normal();
        return;
    }
    const double angle = radiansFromDegrees(degrees);
    direction_ =
        ge::Matrix3d::planeToWorld(normal_) * ge::Vector3d(std::cos(angle), std::sin(angle), 0.0);
}

ErrorStatus MText::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const ge::Vector3d xAxis = xform * direction_;
    const ge::Vector3d yAxis = xform * normal_.crossProduct(direction_);
    const ge::Vector3d normal = xAxis.crossProduct(yAxis);
    if (xAxis.isZeroLength() || normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    const ge::Vector3d newDirection = xAxis.normal();
    // Height along the new up direction, width along the new x axis.
    const double heightScale = normal.length() / xAxis.length();
    location_ = xform * location_;
    normal_ = normal.normal();
    direction_ = newDirection;
    height_ *= heightScale;
    width_ *= xAxis.length();
    return ErrorStatus::eOk;
}

std::string MText::plainText(std::string_view contents) {
    std::string text;
    for (std::size_t i = 0; i < contents.size(); ++i) {
        const char c = contents[i];
        if (c == '{' || c == '}') continue;
        if (c != '\\' || i + 1 == contents.size()) {
            text += c;
            continue;
        }
        const char code = contents[++i];
        switch (code) {
            case 'P':
                text += '\n';
                break;
            case '~':
                text += ' ';
                break;
            case '\\':
            case '{':
            case '}':
                text += code;
                break;
            case 'L':
            case 'l':
            case 'O':
            case 'o':
            case 'K':
            case 'k':
                break;
            default: {
                // Codes with a value run to the next ';' (\fArial|b0;  \H2.5x;  \S1^2;).
                const std::size_t end = contents.find(';', i);
                if (end == std::string_view::npos) return text;
                if (code == 'S') {
                    std::string_view stacked = contents.substr(i + 1, end - i - 1);
                    for (char s : stacked)
                        if (s != '^' && s != '/' && s != '#') text += s;
                }
                i = end;
                break;
            }
        }
    }
    return text;
}

ErrorStatus MText::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    const std::string plain = plainText(contents_);
    double widest = 0.0;
    std::size_t lines = 0;
    for (std::size_t begin = 0; begin <= plain.size(); ++lines) {
        std::size_t end = plain.find('\n', begin);
        if (end == std::string::npos) end = plain.size();
        widest = std::max(
            widest,
            Text::estimatedWidth(std::string_view(plain).substr(begin, end - begin), height_, 1.0));
        begin = end + 1;
    }
    const double width = width_ > 0.0 ? width_ : widest;
    const double boxHeight = height_ * (1.0 + (static_cast<double>(lines) - 1.0) * kLinePitch);
    const int column = (attachment_ - 1) % 3;  // 0 left, 1 centre, 2 right
    const int row = (attachment_ - 1) / 3;     // 0 top, 1 middle, 2 bottom
    const double left = -width * column / 2.0;
    const double top = boxHeight * row / 2.0;
    const ge::Vector3d up = normal_.crossProduct(direction_);
    for (double x : {left, left + width}) {
        for (double y : {top, top - boxHeight})
            extents.addPoint(location_ + direction_ * x + up * y);
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
