// TEXT and MTEXT placed in the plan view: the style's fonts and factors, the entity's frame
// (plane, rotation, mirror flags, alignment or attachment), then the laid-out outlines mapped
// into block coordinates.
#include "cad/gs/text/TextGeometry.h"

#include <QGuiApplication>
#include <QTransform>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "cad/db/AttributeDefinition.h"
#include "cad/db/MText.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/ge/Matrix3d.h"
#include "cad/gs/text/FontLibrary.h"
#include "cad/gs/text/MTextLayout.h"
#include "cad/gs/text/MTextParser.h"
#include "cad/gs/text/OutlineBuilder.h"
#include "cad/gs/text/TextCodes.h"

namespace cad::gs {

namespace {

// Beyond this no drawing has meaningful coordinates, and painting such paths would only
// overflow the rasteriser's fixed point.
constexpr double kMaxCoordinate = 1e150;
// Beyond ±85° a glyph is sheared into a line; drawing programs refuse such obliquing.
constexpr double kMaxOblique = 85.0 * std::numbers::pi / 180.0;

// Rules of single-line text (%%u %%o %%k), as bands relative to the baseline in heights.
constexpr double kUnderline[2] = {-0.22, -0.15};
constexpr double kOverline[2] = {1.2, 1.27};
constexpr double kStrike[2] = {0.465, 0.535};

struct StyleFonts {
    std::string file;
    std::string bigFont;
    double fixedHeight = 0.0;
    double widthFactor = 1.0;
    double oblique = 0.0;
};

StyleFonts styleOf(const db::Entity& entity, db::ObjectId id) {
    StyleFonts style;
    if (id.isNull() && entity.database() != nullptr) id = entity.database()->textStyleStandard();
    db::ObjectPtr<db::TextStyleTableRecord> record(id, db::OpenMode::ForRead);
    if (!record) return style;
    style.file = record->fileName();
    style.bigFont = record->bigFontFileName();
    style.fixedHeight = record->textSize();
    style.widthFactor = record->xScale();
    style.oblique = record->obliquingAngle();
    return style;
}

TextGeometry undrawable() {
    TextGeometry geometry;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    geometry.box.fill(QPointF(nan, nan));
    return geometry;
}

bool finite(const ge::Point3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool drawable(const QTransform& t) {
    for (double v : {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()})
        if (!std::isfinite(v)) return false;
    return true;
}

bool drawable(const std::array<QPointF, 4>& box) {
    for (const QPointF& p : box)
        if (!(std::abs(p.x()) < kMaxCoordinate && std::abs(p.y()) < kMaxCoordinate)) return false;
    return true;
}

bool usable(double value) {
    return std::isfinite(value) && value > 0.0;
}

// The text's frame in the plan view: its own x and y axes (in the plane of its normal) seen
// from above, at `origin`.
QTransform planFrame(const ge::Vector3d& normal, double rotation, double xSign, double ySign,
                     const ge::Point3d& origin) {
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal);
    const ge::Vector3d x = toWorld * ge::Vector3d(std::cos(rotation), std::sin(rotation), 0.0) * xSign;
    const ge::Vector3d y = toWorld * ge::Vector3d(-std::sin(rotation), std::cos(rotation), 0.0) * ySign;
    return QTransform(x.x, x.y, y.x, y.y, origin.x, origin.y);
}

TextGeometry finish(const OutlineBuilder& builder, const std::array<QPointF, 4>& localBox,
                    const QTransform& frame, double height) {
    TextGeometry geometry;
    for (std::size_t k = 0; k < 4; ++k) geometry.box[k] = frame.map(localBox[k]);
    if (builder.isEmpty() || !drawable(frame) || !drawable(geometry.box)) return undrawable();
    geometry.height = height;
    geometry.pieces = builder.pieces(frame);
    return geometry;
}

double number(const std::string& text, double fallback) {
    double value = fallback;
    const char* begin = text.data();
    if (!text.empty() && *begin == '+') ++begin;
    const auto [ptr, ec] = std::from_chars(begin, text.data() + text.size(), value);
    return ec == std::errc() && std::isfinite(value) ? value : fallback;
}

// Line spacing and columns: the engine keeps them as the tags it read, in the MTEXT subclass
// (drawings from 2018 on) or as extended data of the ACAD application (before).
void readKeptLayout(const db::MText& mtext, MTextSettings& settings) {
    int columnType = 0;
    auto take = [&](int code, const std::string& value) {
        switch (code) {
            case 44: settings.lineSpacing = number(value, 1.0); break;
            case 73: settings.exactSpacing = number(value, 1.0) == 2.0; break;
            case 46: settings.definedHeight = number(value, 0.0); break;
            case 75: columnType = static_cast<int>(number(value, 0.0)); break;
            case 76: settings.columns = static_cast<int>(number(value, 0.0)); break;
            case 48: settings.columnWidth = number(value, 0.0); break;
            case 49: settings.gutter = number(value, 0.0); break;
            case 50: settings.columnHeights.push_back(number(value, 0.0)); break;
            default: break;
        }
    };
    for (const db::DbObject::KeptTags& kept : mtext.keptTags()) {
        if (kept.subclass != "AcDbMText") continue;
        for (const db::RawTag& tag : kept.tags) {
            // An embedded object (101) follows, whose codes mean other things: 44 there is a
            // column width, not the line spacing.
            if (tag.code == 101) break;
            take(tag.code, tag.value);
        }
    }
    // 1000 ACAD_MTEXT_COLUMN_INFO_BEGIN, then pairs of a 1070 naming a group code and the
    // value; the column heights (50) come as a count and that many 1040 values.
    const std::vector<db::RawTag>& xdata = mtext.xdata();
    bool inColumns = false, inHeight = false;
    for (std::size_t i = 0; i < xdata.size(); ++i) {
        const db::RawTag& tag = xdata[i];
        if (tag.code == 1000) {
            inColumns = tag.value == "ACAD_MTEXT_COLUMN_INFO_BEGIN";
            inHeight = tag.value == "ACAD_MTEXT_DEFINED_HEIGHT_BEGIN";
            continue;
        }
        if ((!inColumns && !inHeight) || tag.code != 1070 || i + 1 >= xdata.size()) continue;
        const int code = static_cast<int>(number(tag.value, 0.0));
        if (code == 50) {
            const int count = std::clamp(static_cast<int>(number(xdata[++i].value, 0.0)), 0, 1000);
            for (int k = 0; k < count && i + 1 < xdata.size(); ++k) take(50, xdata[++i].value);
        } else {
            take(code, xdata[++i].value);
        }
    }
    if (!usable(settings.lineSpacing) || settings.lineSpacing > 100.0) settings.lineSpacing = 1.0;
    if (columnType == 0 || settings.columns <= 1 || !usable(settings.columnWidth)) {
        settings.columns = 0;
        settings.columnHeights.clear();
    } else {
        settings.columns = std::min(settings.columns, 1000);
        if (!std::isfinite(settings.gutter) || settings.gutter < 0.0) settings.gutter = 0.0;
    }
    if (!usable(settings.definedHeight)) settings.definedHeight = 0.0;
}

}  // namespace

TextGeometry textGeometry(const db::Text& text) {
    if (QGuiApplication::instance() == nullptr) return undrawable();
    const StyleFonts style = styleOf(text, text.textStyle());
    double height = text.height();
    if (!usable(height)) height = style.fixedHeight;
    double widthFactor = text.widthFactor();
    if (!usable(widthFactor)) widthFactor = usable(style.widthFactor) ? style.widthFactor : 1.0;
    double oblique = text.oblique();
    if (!std::isfinite(oblique) || std::abs(oblique) > kMaxOblique) oblique = 0.0;
    if (!usable(height) || !finite(text.position()) || !std::isfinite(text.rotation()))
        return undrawable();

    // A block looked at on its own shows an attribute definition by its tag; a constant one
    // has no values to come and shows its text.
    const std::string* string = &text.textString();
    if (auto definition = dynamic_cast<const db::AttributeDefinition*>(&text); definition && !definition->isConstant())
        string = &definition->tag();
    const DecodedText decoded = decodeTextCodes(*string, kMaxTextCharacters);
    if (decoded.chars.empty()) return undrawable();

    FontLibrary& fonts = FontLibrary::instance();
    auto guard = fonts.lock();
    const int face = fonts.styleFace(style.file, style.bigFont);

    // The line measured in capital heights of a width factor of 1.
    std::vector<const FontLibrary::Glyph*> glyphs;
    glyphs.reserve(decoded.chars.size());
    double advance = 0.0;
    for (char32_t c : decoded.chars) {
        glyphs.push_back(&fonts.glyph(face, c));
        advance += glyphs.back()->advance;
    }

    // Where the line starts and where its baseline runs, relative to the placing point.
    double x0 = 0.0, baseline = 0.0;
    ge::Point3d origin = text.position();
    const db::TextHorzMode horizontal = text.horizontalMode();
    const db::TextVertMode vertical = text.verticalMode();
    const bool fitted =
        horizontal == db::TextHorzMode::kTextAlign || horizontal == db::TextHorzMode::kTextFit;
    if (fitted) {
        // Between the two points: aligned keeps the proportions (the height follows), fit
        // keeps the height (the width factor follows).
        const ge::Vector3d span =
            ge::Matrix3d::worldToPlane(text.normal()) * (text.alignmentPoint() - text.position());
        const double length = std::hypot(span.x, span.y);
        const double natural = advance * height * widthFactor;
        if (usable(length) && usable(natural) && finite(text.alignmentPoint())) {
            if (horizontal == db::TextHorzMode::kTextAlign)
                height *= length / natural;
            else
                widthFactor *= length / natural;
        }
    } else if (!text.isDefaultAlignment()) {
        if (!finite(text.alignmentPoint())) return undrawable();
        origin = text.alignmentPoint();
        const double width = advance * height * widthFactor;
        if (horizontal == db::TextHorzMode::kTextCenter || horizontal == db::TextHorzMode::kTextMid)
            x0 = -width / 2.0;
        else if (horizontal == db::TextHorzMode::kTextRight)
            x0 = -width;
        if (horizontal == db::TextHorzMode::kTextMid || vertical == db::TextVertMode::kTextVertMid)
            baseline = -height / 2.0;
        else if (vertical == db::TextVertMode::kTextTop)
            baseline = -height;
        else if (vertical == db::TextVertMode::kTextBottom)
            baseline = fonts.descent(face) * height;
    }

    const double sx = height * widthFactor;
    const double shear = height * std::tan(oblique);
    OutlineBuilder builder;
    double pen = x0;
    for (const FontLibrary::Glyph* glyph : glyphs) {
        builder.addGlyph(glyph->outline, QTransform(sx, 0.0, shear, height, pen, baseline));
        pen += glyph->advance * sx;
    }
    // %%u %%o %%k: one rule per stretch of characters that carry the mark.
    struct Band {
        std::uint8_t mark;
        const double* range;
    };
    for (const Band band : {Band{DecodedText::kUnderline, kUnderline}, Band{DecodedText::kOverline, kOverline},
                            Band{DecodedText::kStrike, kStrike}}) {
        double x = x0;
        for (std::size_t i = 0; i < glyphs.size();) {
            if (!(decoded.marks[i] & band.mark)) {
                x += glyphs[i++]->advance * sx;
                continue;
            }
            const double start = x;
            while (i < glyphs.size() && (decoded.marks[i] & band.mark)) x += glyphs[i++]->advance * sx;
            const double y0 = band.range[0] * height, y1 = band.range[1] * height;
            const double t = std::tan(oblique);
            builder.addQuad({QPointF(start + t * y0, baseline + y0), QPointF(x + t * y0, baseline + y0),
                             QPointF(x + t * y1, baseline + y1), QPointF(start + t * y1, baseline + y1)});
        }
    }

    const double width = advance * sx;
    const std::array<QPointF, 4> box{QPointF(x0, baseline), QPointF(x0 + width, baseline),
                                     QPointF(x0 + width + shear, baseline + height),
                                     QPointF(x0 + shear, baseline + height)};
    const QTransform frame = planFrame(text.normal(), text.rotation(), text.isMirroredInX() ? -1.0 : 1.0,
                                       text.isMirroredInY() ? -1.0 : 1.0, origin);
    return finish(builder, box, frame, height);
}

TextGeometry mtextGeometry(const db::MText& mtext) {
    if (QGuiApplication::instance() == nullptr) return undrawable();
    const StyleFonts style = styleOf(mtext, mtext.textStyle());
    MTextSettings settings;
    settings.height = mtext.textHeight();
    if (!usable(settings.height)) settings.height = style.fixedHeight;
    if (!usable(settings.height) || !finite(mtext.location())) return undrawable();
    settings.width = usable(mtext.width()) ? mtext.width() : 0.0;
    settings.attachment = static_cast<int>(mtext.attachment());
    settings.styleWidthFactor = usable(style.widthFactor) ? style.widthFactor : 1.0;
    settings.styleOblique =
        std::isfinite(style.oblique) && std::abs(style.oblique) <= kMaxOblique ? style.oblique : 0.0;
    readKeptLayout(mtext, settings);

    MTextFormat initial;
    initial.height = settings.height;
    const MTextContent content = parseMText(mtext.contents(), initial, kMaxTextCharacters);
    if (content.characters == 0) return undrawable();

    FontLibrary& fonts = FontLibrary::instance();
    auto guard = fonts.lock();
    settings.face = fonts.styleFace(style.file, style.bigFont);
    OutlineBuilder builder;
    MTextLayout layout(fonts, settings);
    layout.layout(content, builder);

    const double rotation = mtext.rotation();
    if (!std::isfinite(rotation)) return undrawable();
    const QTransform frame = planFrame(mtext.normal(), rotation, 1.0, 1.0, mtext.location());
    return finish(builder, layout.box(), frame, settings.height);
}

}  // namespace cad::gs
