// Texts as outlines: where the box and the glyphs land for each alignment, rotation, mirror
// and factor; MTEXT boxes, wrapping, columns and colours; Korean text; and input that must
// neither hang nor crash.
#include "cad/gs/text/TextGeometry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <string>

#include "cad/db/AttributeDefinition.h"
#include "cad/db/MText.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

using db::TextHorzMode;
using db::TextVertMode;
constexpr double kPi = std::numbers::pi;
constexpr double kTol = 1e-6;

QRectF outlineBounds(const TextGeometry& geometry) {
    QRectF bounds;
    for (const TextPiece& piece : geometry.pieces) bounds |= piece.bounds();
    return bounds;
}

void expectBox(const TextGeometry& geometry, const std::array<QPointF, 4>& expected, double tol = kTol) {
    for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_NEAR(geometry.box[k].x(), expected[k].x(), tol) << "corner " << k;
        EXPECT_NEAR(geometry.box[k].y(), expected[k].y(), tol) << "corner " << k;
    }
}

bool undrawable(const TextGeometry& geometry) {
    return geometry.pieces.empty() && geometry.height == 0.0 && std::isnan(geometry.box[0].x());
}

// The width of "HH" at height 2 and width factor 1, drawn left at the origin: the unit the
// alignment rows are written in.
double naturalWidth() {
    db::Text text({0, 0, 0}, "HH", {}, 2.0);
    const TextGeometry g = textGeometry(text);
    return g.box[1].x() - g.box[0].x();
}

TEST(TextGeometry, CapitalHeightIsTheTextHeight) {
    for (double height : {0.1, 2.5, 1000.0}) {
        SCOPED_TRACE(height);
        db::Text text({5, 7, 0}, "H", {}, height);
        const TextGeometry g = textGeometry(text);
        ASSERT_FALSE(g.pieces.empty());
        const QRectF ink = outlineBounds(g);
        EXPECT_NEAR(ink.height(), height, height * 1e-3);
        EXPECT_NEAR(ink.top(), 7.0, height * 1e-3);  // QRectF's top is the smaller y: the baseline
        EXPECT_EQ(g.height, height);
    }
}

TEST(TextGeometry, Alignments) {
    const double w = naturalWidth();
    ASSERT_GT(w, 1.0);
    const struct {
        const char* name;
        TextHorzMode horizontal;
        TextVertMode vertical;
        double left, baseline;  // where the box's first corner lands, alignment point at (10, 20)
    } rows[] = {
        {"left baseline sits on the position", TextHorzMode::kTextLeft, TextVertMode::kTextBase, 10, 20},
        {"centre", TextHorzMode::kTextCenter, TextVertMode::kTextBase, 10 - w / 2, 20},
        {"right", TextHorzMode::kTextRight, TextVertMode::kTextBase, 10 - w, 20},
        {"middle", TextHorzMode::kTextMid, TextVertMode::kTextBase, 10 - w / 2, 19},
        {"left top", TextHorzMode::kTextLeft, TextVertMode::kTextTop, 10, 18},
        {"right middle", TextHorzMode::kTextRight, TextVertMode::kTextVertMid, 10 - w, 19},
        {"centre top", TextHorzMode::kTextCenter, TextVertMode::kTextTop, 10 - w / 2, 18},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        db::Text text({10, 20, 0}, "HH", {}, 2.0);
        text.setHorizontalMode(row.horizontal);
        text.setVerticalMode(row.vertical);
        text.setAlignmentPoint({10, 20, 0});
        if (row.horizontal == TextHorzMode::kTextLeft && row.vertical == TextVertMode::kTextBase)
            text.setPosition({10, 20, 0});
        const TextGeometry g = textGeometry(text);
        expectBox(g, {QPointF(row.left, row.baseline), QPointF(row.left + w, row.baseline),
                      QPointF(row.left + w, row.baseline + 2), QPointF(row.left, row.baseline + 2)});
        // The ink agrees with the box: an H fills it.
        const QRectF ink = outlineBounds(g);
        EXPECT_NEAR(ink.top(), row.baseline, 1e-2);
        EXPECT_NEAR(ink.bottom(), row.baseline + 2, 1e-2);
        EXPECT_GT(ink.left(), row.left);
        EXPECT_LT(ink.right(), row.left + w);
    }
}

TEST(TextGeometry, BottomAlignmentLiftsTheBaselineByTheDescent) {
    db::Text text({0, 0, 0}, "Hg", {}, 2.0);
    text.setVerticalMode(TextVertMode::kTextBottom);
    text.setAlignmentPoint({0, 0, 0});
    const TextGeometry g = textGeometry(text);
    EXPECT_GT(g.box[0].y(), 0.3);
    EXPECT_LT(g.box[0].y(), 1.0);
    EXPECT_NEAR(outlineBounds(g).top(), 0.0, 0.15);  // the g's descender reaches the point
}

TEST(TextGeometry, AlignedAndFitSpanTheirPoints) {
    const double w = naturalWidth();
    for (TextHorzMode mode : {TextHorzMode::kTextAlign, TextHorzMode::kTextFit}) {
        SCOPED_TRACE(static_cast<int>(mode));
        db::Text text({1, 1, 0}, "HH", {}, 2.0);
        text.setHorizontalMode(mode);
        text.setPosition({1, 1, 0});
        text.setAlignmentPoint({1 + 2 * w, 1, 0});
        const TextGeometry g = textGeometry(text);
        const double height = mode == TextHorzMode::kTextAlign ? 4.0 : 2.0;
        expectBox(g, {QPointF(1, 1), QPointF(1 + 2 * w, 1), QPointF(1 + 2 * w, 1 + height), QPointF(1, 1 + height)});
        EXPECT_NEAR(g.height, height, kTol);
    }
}

TEST(TextGeometry, FrameOfTheText) {
    const double w = naturalWidth();
    const double slant = 2.0 * std::tan(kPi / 12);
    const struct {
        const char* name;
        double rotation, widthFactor, oblique;
        std::int16_t flags;
        ge::Vector3d normal;
        std::array<QPointF, 4> box;
    } rows[] = {
        {"quarter turn", kPi / 2, 1, 0, 0, ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(0, w), QPointF(-2, w), QPointF(-2, 0)}},
        {"width factor", 0, 2, 0, 0, ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(2 * w, 0), QPointF(2 * w, 2), QPointF(0, 2)}},
        {"oblique slants the top", 0, 1, kPi / 12, 0, ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(w, 0), QPointF(w + slant, 2), QPointF(slant, 2)}},
        {"backward runs to the left", 0, 1, 0, db::Text::kBackward, ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(-w, 0), QPointF(-w, 2), QPointF(0, 2)}},
        {"upside down hangs below", 0, 1, 0, db::Text::kUpsideDown, ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(w, 0), QPointF(w, -2), QPointF(0, -2)}},
        // Seen from above, a text on a plane facing down reads mirrored: its x axis is -x.
        {"normal facing down", 0, 1, 0, 0, -ge::Vector3d::kZAxis,
         {QPointF(0, 0), QPointF(-w, 0), QPointF(-w, 2), QPointF(0, 2)}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        db::Text text({0, 0, 0}, "HH", {}, 2.0, row.rotation);
        text.setWidthFactor(row.widthFactor);
        text.setOblique(row.oblique);
        text.mirrorInX((row.flags & db::Text::kBackward) != 0);
        text.mirrorInY((row.flags & db::Text::kUpsideDown) != 0);
        text.setNormal(row.normal);
        const TextGeometry g = textGeometry(text);
        expectBox(g, row.box);
        // Every glyph lies within the box's bounds.
        QRectF box;
        for (const QPointF& p : row.box) box |= QRectF(p, QSizeF(1e-9, 1e-9));
        const QRectF ink = outlineBounds(g);
        EXPECT_TRUE(box.adjusted(-1e-3, -1e-3, 1e-3, 1e-3).contains(ink)) << ink.x() << " " << ink.y();
    }
}

TEST(TextGeometry, SpecialCodesDrawSymbolsAndRules) {
    db::Text plain({0, 0, 0}, "10", {}, 1.0);
    db::Text coded({0, 0, 0}, "%%c10%%d%%u", {}, 1.0);
    db::Text underlined({0, 0, 0}, "%%u10", {}, 1.0);
    const TextGeometry a = textGeometry(plain), b = textGeometry(coded), c = textGeometry(underlined);
    EXPECT_GT(b.box[1].x(), a.box[1].x());  // two more characters
    ASSERT_EQ(c.pieces.size(), 2u);          // glyphs, then the underline of its own
    EXPECT_LT(c.pieces[1].bounds().top(), -0.1);
}

TEST(TextGeometry, KoreanTextIsDrawnWithAHangulFont) {
    // Whatever the style asks for, Hangul and Hanja come out as outlines.
    for (const char* file : {"", "arial.ttf", "romans.shx", "NanumMyeongjo.ttf"}) {
        SCOPED_TRACE(file);
        db::Database db;
        auto style = std::make_unique<db::TextStyleTableRecord>();
        style->setFileName(file);
        style->setBigFontFileName("whgtxt.shx");
        const db::ObjectId styleId = db::testing_support::addRecord(db.textStyleTableId(), std::move(style), "K");
        db::Text text({0, 0, 0}, "\xed\x95\x9c\xea\xb8\x80 \xe6\xbc\xa2\xe5\xad\x97", styleId, 3.0);  // 한글 漢字
        const TextGeometry g = textGeometry(text);
        ASSERT_EQ(g.pieces.size(), 1u);
        const QRectF ink = outlineBounds(g);
        EXPECT_GT(ink.width(), 4 * 3.0 * 0.8);
        EXPECT_GT(ink.height(), 3.0 * 0.9);
        QPainterPath drawn;
        g.pieces[0].appendTo(drawn, QTransform());
        EXPECT_GT(drawn.elementCount(), 100);
    }
}

TEST(TextGeometry, AttributeDefinitionShowsItsTag) {
    db::AttributeDefinition definition({0, 0, 0}, "1", "PART-NUMBER", "Part number?");
    definition.setHeight(1.0);
    db::Text value({0, 0, 0}, "1", {}, 1.0);
    db::Text tag({0, 0, 0}, "PART-NUMBER", {}, 1.0);
    EXPECT_NEAR(textGeometry(definition).box[1].x(), textGeometry(tag).box[1].x(), kTol);
    definition.setConstant(true);
    EXPECT_NEAR(textGeometry(definition).box[1].x(), textGeometry(value).box[1].x(), kTol);
}

TEST(TextGeometry, UndrawableInput) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* name;
        const char* text;
        double height;
        ge::Point3d position;
        const char* mtext;  // the same for MTEXT
    } rows[] = {
        {"empty string", "", 1.0, {0, 0, 0}, ""},
        {"only blanks", "   ", 1.0, {0, 0, 0}, " \\~\\P "},
        {"only codes", "%%u%%o", 1.0, {0, 0, 0}, "{\\H2;\\C1;}\\L"},
        {"nan height", "x", nan, {0, 0, 0}, "x"},
        {"huge height", "x", 1e300, {0, 0, 0}, "x"},
        {"infinite height", "x", std::numeric_limits<double>::infinity(), {0, 0, 0}, "x"},
        {"zero height", "x", 0.0, {0, 0, 0}, "x"},
        {"nan position", "x", 1.0, {nan, 0, 0}, "x"},
        {"position beyond any drawing", "x", 1.0, {1e200, 0, 0}, "x"},
        {"inline height beyond any drawing", "", 1.0, {0, 0, 0}, "\\H1e200;x"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        // The constructors take what a file holds; only the setters refuse bad values.
        db::Text text(row.position, row.text, {}, row.height);
        EXPECT_TRUE(undrawable(textGeometry(text)));
        db::MText mtext(row.position, row.mtext, {}, row.height);
        EXPECT_TRUE(undrawable(mtextGeometry(mtext)));
    }
}

TEST(TextGeometry, HugeTextsAreCutShort) {
    const std::string million(1'000'000, 'W');
    const auto start = std::chrono::steady_clock::now();
    db::Text text({0, 0, 0}, million, {}, 1.0);
    const TextGeometry g = textGeometry(text);
    db::MText mtext({0, 0, 0}, million, {}, 1.0);
    const TextGeometry m = mtextGeometry(mtext);
    std::string words;
    for (int i = 0; i < 200'000; ++i) words += "word ";
    db::MText wrapped({0, 0, 0}, words, {}, 1.0);
    wrapped.setWidth(10.0);
    const TextGeometry w = mtextGeometry(wrapped);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 5.0);
    ASSERT_FALSE(g.pieces.empty());
    ASSERT_FALSE(m.pieces.empty());
    const double width = g.box[1].x() - g.box[0].x();
    EXPECT_GT(width, kMaxTextCharacters * 0.5);
    EXPECT_LT(width, kMaxTextCharacters * 1.5);
    EXPECT_LT(m.box[1].x() - m.box[0].x(), kMaxTextCharacters * 1.5);
    ASSERT_FALSE(w.pieces.empty());
    EXPECT_LT(w.box[0].y() - w.box[3].y(), kMaxTextCharacters / 5 * 5.0 / 3.0);
}

// ---- MTEXT ----

TEST(MTextGeometry, AttachmentPoints) {
    // One line "HH" of height 2 in a box 10 wide: top is the cap line, bottom the baseline.
    const double w = naturalWidth();
    const struct {
        db::MText::AttachmentPoint attachment;
        double left, top;
    } rows[] = {
        {db::MText::AttachmentPoint::kTopLeft, 0, 0},     {db::MText::AttachmentPoint::kTopCenter, -5, 0},
        {db::MText::AttachmentPoint::kTopRight, -10, 0},  {db::MText::AttachmentPoint::kMiddleLeft, 0, 1},
        {db::MText::AttachmentPoint::kMiddleCenter, -5, 1}, {db::MText::AttachmentPoint::kMiddleRight, -10, 1},
        {db::MText::AttachmentPoint::kBottomLeft, 0, 2},  {db::MText::AttachmentPoint::kBottomCenter, -5, 2},
        {db::MText::AttachmentPoint::kBottomRight, -10, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.attachment));
        db::MText mtext({0, 0, 0}, "HH", {}, 2.0);
        mtext.setWidth(10.0);
        mtext.setAttachment(row.attachment);
        const TextGeometry g = mtextGeometry(mtext);
        expectBox(g, {QPointF(row.left, row.top), QPointF(row.left + 10, row.top),
                      QPointF(row.left + 10, row.top - 2), QPointF(row.left, row.top - 2)});
        // The line follows the attachment's column: left, centred or right in the box.
        const QRectF ink = outlineBounds(g);
        const int column = (static_cast<int>(row.attachment) - 1) % 3;
        const double inkCentre = (ink.left() + ink.right()) / 2;
        const double expectedCentre[] = {row.left + w / 2, row.left + 5, row.left + 10 - w / 2};
        EXPECT_NEAR(inkCentre, expectedCentre[column], 0.2);
        EXPECT_NEAR(ink.bottom(), row.top, 1e-2);
    }
}

TEST(MTextGeometry, LinesFromParagraphsAndWrapping) {
    const double pitch = 2.0 * 5.0 / 3.0;
    const struct {
        const char* name;
        const char* contents;
        double width;
        int lines;
    } rows[] = {
        {"one line", "aaa bbb ccc", 0, 1},
        {"paragraphs", "aaa\\Pbbb\\Pccc", 0, 3},
        {"wrapped at blanks", "aaa bbb ccc", 6.0, 3},
        {"non-breaking blanks hold", "aaa\\~bbb ccc", 9.0, 2},
        {"a word longer than the width breaks where it reaches the edge", "aaaaaaaaaaaaaaaaaaaa", 6.0, 0},
        {"empty paragraphs count", "a\\P\\Pb", 0, 3},
    };
    db::MText one({0, 0, 0}, "a", {}, 2.0);
    const TextGeometry a = mtextGeometry(one);
    const double perLine = std::floor(6.0 / (a.box[1].x() - a.box[0].x()));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        db::MText mtext({0, 0, 0}, row.contents, {}, 2.0);
        mtext.setWidth(row.width);
        const TextGeometry g = mtextGeometry(mtext);
        const double lines = row.lines > 0 ? row.lines : std::ceil(20 / perLine);
        EXPECT_NEAR(g.box[0].y() - g.box[3].y(), 2.0 + (lines - 1) * pitch, kTol);
        if (row.width > 0) {
            EXPECT_NEAR(g.box[1].x() - g.box[0].x(), row.width, kTol);
            EXPECT_LT(outlineBounds(g).right(), row.width + 0.2);
        }
    }
}

TEST(MTextGeometry, LineSpacingAndColumnsFromKeptTags) {
    db::MText spaced({0, 0, 0}, "a\\Pb", {}, 2.0);
    spaced.keptTags().push_back({"AcDbMText", {{73, "1"}, {44, "2.0"}}});
    const TextGeometry s = mtextGeometry(spaced);
    EXPECT_NEAR(s.box[0].y() - s.box[3].y(), 2.0 + 2 * 2.0 * 5.0 / 3.0, kTol);

    // Two static columns 10 wide with a gutter of 2 and a height of 8: the third line no
    // longer fits the first column and starts the second.
    db::MText columns({0, 0, 0}, "one\\Ptwo\\Pthree\\Pfour", {}, 2.0);
    columns.setWidth(10.0);
    columns.keptTags().push_back(
        {"AcDbMText", {{46, "8.0"}, {75, "1"}, {79, "0"}, {76, "2"}, {78, "0"}, {48, "10.0"}, {49, "2.0"}}});
    const TextGeometry c = mtextGeometry(columns);
    expectBox(c, {QPointF(0, 0), QPointF(22, 0), QPointF(22, -8), QPointF(0, -8)});
    EXPECT_GT(outlineBounds(c).right(), 12.0);
}

TEST(MTextGeometry, InlineColoursMakePieces) {
    db::MText mtext({0, 0, 0}, "plain {\\C1;red} {\\c16711680;blue}", {}, 1.0);
    const TextGeometry g = mtextGeometry(mtext);
    ASSERT_EQ(g.pieces.size(), 3u);
    EXPECT_FALSE(g.pieces[0].colorIndex);
    EXPECT_EQ(g.pieces[1].colorIndex, 1);
    EXPECT_EQ(g.pieces[2].trueColor, 0x0000FF);
    EXPECT_LT(g.pieces[0].bounds().right(), g.pieces[1].bounds().left());
}

TEST(MTextGeometry, DirectionRotatesTheBox) {
    db::MText mtext({5, 5, 0}, "HH", {}, 2.0);
    mtext.setWidth(10.0);
    mtext.setDirection({0, 1, 0});
    const TextGeometry g = mtextGeometry(mtext);
    expectBox(g, {QPointF(5, 5), QPointF(5, 15), QPointF(7, 15), QPointF(7, 5)});
}

TEST(MTextGeometry, HeightCodesAndStacks) {
    db::MText big({0, 0, 0}, "\\H4;H", {}, 1.0);
    EXPECT_NEAR(outlineBounds(mtextGeometry(big)).height(), 4.0, 1e-2);
    db::MText fraction({0, 0, 0}, "1\\S1/2;", {}, 1.0);
    const TextGeometry f = mtextGeometry(fraction);
    ASSERT_EQ(f.pieces.size(), 2u);  // digits, then the bar
    const QRectF bar = f.pieces[1].bounds();
    EXPECT_NEAR((bar.top() + bar.bottom()) / 2, -0.5, 0.05);  // through the middle of the line
}

}  // namespace
}  // namespace cad::gs
