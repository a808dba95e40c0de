// Which installed font draws a style's font file or an inline family, Korean always from a
// Hangul font, and fallback for characters a font lacks.
#include "cad/gs/text/FontLibrary.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QRawFont>

#include "cad/gs/TestGuiApplication.h"

// Failures name the family, not its UTF-16 code units.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace cad::gs {
namespace {

// What the font configuration gives for a generic family, so the rows hold on any machine
// that has the fonts the project installs.
QString generic(const char* family, bool bold = false) {
    QFont font(QString::fromLatin1(family));
    font.setBold(bold);
    return QRawFont::fromFont(font).familyName();
}

TEST(FontLibrary, StyleFontFiles) {
    const struct {
        const char* name;
        const char* file;
        QString family;
        bool bold;
    } rows[] = {
        {"no file is the default sans", "", generic("sans-serif"), false},
        {"vector font", "txt.shx", generic("sans-serif"), false},
        {"vector font without extension", "romans", generic("sans-serif"), false},
        {"fixed-pitch vector font", "monotxt.shx", generic("monospace"), false},
        {"missing sans", "arial.ttf", generic("sans-serif"), false},
        {"missing sans bold by its file name", "ARIALBD.TTF", generic("sans-serif", true), true},
        {"missing serif", "times.ttf", generic("serif"), false},
        {"missing mono", "cour.ttf", generic("monospace"), false},
        {"installed file", "NanumMyeongjo.ttf", "NanumMyeongjo", false},
        {"installed file by a Windows path", "C:\\Fonts\\NanumSquareR.ttf", "NanumSquare", false},
        {"installed family by its file name", "nanumgothicbold.ttf", "NanumGothic", true},
        {"Korean gothic", "malgun.ttf", "NanumGothic", false},
        {"Korean serif", "batang.ttc", "NanumMyeongjo", false},
    };
    FontLibrary& fonts = FontLibrary::instance();
    auto guard = fonts.lock();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const FontLibrary::FaceInfo info = fonts.faceInfo(fonts.styleFace(row.file, ""));
        EXPECT_EQ(info.family, row.family);
        EXPECT_EQ(info.style.contains(QLatin1String("Bold")), row.bold) << info.style.toStdString();
    }
}

TEST(FontLibrary, InlineFamilies) {
    FontLibrary& fonts = FontLibrary::instance();
    auto guard = fonts.lock();
    const int base = fonts.styleFace("NanumMyeongjo.ttf", "");
    const struct {
        const char* name;
        const char* family;
        bool bold;
        QString expected;
    } rows[] = {
        {"installed family", "DejaVu Serif", false, "DejaVu Serif"},
        {"family matched without blanks or case", "dejavuserif", false, "DejaVu Serif"},
        {"missing family by its kind", "Times New Roman", false, generic("serif")},
        {"bold", "Arial", true, generic("sans-serif", true)},
        {"vector font file", "romans.shx", false, generic("sans-serif")},
        {"Korean family name", "\xea\xb5\xb4\xeb\xa6\xbc", false, "NanumGothic"},  // 굴림
        {"no name keeps the face in force", "", false, "NanumMyeongjo"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(fonts.faceInfo(fonts.inlineFace(row.family, row.bold, false, base)).family, row.expected);
    }
}

TEST(FontLibrary, KoreanAndFallback) {
    FontLibrary& fonts = FontLibrary::instance();
    auto guard = fonts.lock();
    const int sans = fonts.styleFace("arial.ttf", "");
    const int serifKorean = fonts.styleFace("times.ttf", "whtmtxt.shx");
    const int nanum = fonts.styleFace("NanumGothic.ttf", "");
    const struct {
        const char* name;
        int face;
        char32_t c;
        QString family;
    } rows[] = {
        {"Hangul from a Latin style", sans, U'\uD55C', "NanumGothic"},
        {"Hanja from a Latin style", sans, U'\u6F22', "NanumGothic"},
        {"Hangul where the big font is Myeongjo", serifKorean, U'\uD55C', "NanumMyeongjo"},
        // NanumMyeongjo has no Hanja: the gothic face stands in.
        {"Hanja where the big font is Myeongjo", serifKorean, U'\u6F22', "NanumGothic"},
        {"Latin stays with the style", sans, U'A', generic("sans-serif")},
        {"Latin in a Hangul font", nanum, U'A', "NanumGothic"},
        {"symbol the Hangul font lacks", nanum, U'\u2300', generic("sans-serif")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const FontLibrary::Glyph& glyph = fonts.glyph(row.face, row.c);
        EXPECT_EQ(fonts.faceInfo(glyph.face).family, row.family);
        EXPECT_FALSE(glyph.outline.isEmpty());
        EXPECT_GT(glyph.advance, 0.0);
    }
    // A character no font has still shows (as the replacement glyph) and advances.
    const FontLibrary::Glyph& missing = fonts.glyph(sans, char32_t(0x10FFFD));
    EXPECT_FALSE(missing.outline.isEmpty());
    EXPECT_GT(missing.advance, 0.0);
    // Control characters take no room.
    EXPECT_TRUE(fonts.glyph(sans, U'\u0007').outline.isEmpty());
    EXPECT_EQ(fonts.glyph(sans, U'\u0007').advance, 0.0);
    // The same glyph is the same cached outline.
    EXPECT_EQ(&fonts.glyph(sans, U'A'), &fonts.glyph(sans, U'A'));
}

}  // namespace
}  // namespace cad::gs
