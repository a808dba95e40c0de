// The fonts texts are drawn with: a style's font files or an inline family mapped to installed
// fonts (through fontconfig, via Qt), Korean always from a Hangul font, a glyph a font lacks
// taken from one that has it, and each glyph's outline cached once per font.
#pragma once

#include <QPainterPath>
#include <QRawFont>
#include <QString>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cad::gs {

class FontLibrary {
public:
    // A glyph in units of the font's capital height (a capital H is 1 tall), y up, the pen at
    // the origin on the baseline.
    struct Glyph {
        QPainterPath outline;
        double advance = 0.0;
        int face = -1;  // the face the glyph came from (after fallback)
    };

    // What a face is drawn like, for tests and diagnostics.
    struct FaceInfo {
        QString family;
        QString style;
        double descent = 0.0;  // below the baseline, in capital heights
    };

    // The one library of the process. Its functions are not reentrant: callers hold lock()
    // for the whole of a text, which costs one lock per text rather than one per character.
    static FontLibrary& instance();
    std::unique_lock<std::mutex> lock() { return std::unique_lock<std::mutex>(mutex_); }

    // The face for a text style's font file ("arial.ttf", "romans.shx", "" for the default)
    // and big font file (only a hint for which Hangul font to use).
    int styleFace(std::string_view fontFile, std::string_view bigFontFile);
    // The face for an inline font (MTEXT \f family or \F file) with its weight and slant;
    // `base` is the face in force, whose Korean choice the new face keeps.
    int inlineFace(std::string_view name, bool bold, bool italic, int base);

    // The glyph for a character in a face, from a fallback face when that one lacks it. A
    // character no installed font has draws as the face's replacement glyph.
    const Glyph& glyph(int face, char32_t c);
    // How far below the baseline the face's descenders reach, in capital heights.
    double descent(int face) const;
    FaceInfo faceInfo(int face) const;

    // Korean script (Hangul syllables and jamo, and the CJK ideographs Korean writes as Hanja).
    static bool isKorean(char32_t c);

private:
    struct Face {
        QRawFont font;
        double unit = 1.0;      // font pixels to capital heights
        double descent = 0.0;   // in capital heights
        int korean = -1;        // the face that draws Korean for this one (itself if it can)
        bool hangul = false;    // a Hangul font itself
        bool myeongjo = false;  // Korean drawn in a serif (Myeongjo) face
    };
    enum class Generic { Sans, Serif, Mono };

    FontLibrary();
    // Lets go of every face while the application's font database still exists (a post
    // routine of the application); the library fills again on next use.
    static void releaseFonts();
    int addFace(const QRawFont& font, bool myeongjo);
    int genericFace(Generic generic, bool bold = false, bool italic = false, bool myeongjo = false);
    int fileFace(const std::string& stem, const std::string& file, bool bold, bool italic,
                 bool myeongjo);
    int koreanFace(bool myeongjo);
    QRawFont rawFromFamily(const QString& family, bool bold, bool italic) const;
    const std::string* installedFile(const std::string& lowerName);
    int fallbackFor(int face, char32_t c);
    Glyph makeGlyph(int face, char32_t c);

    std::mutex mutex_;
    std::vector<std::unique_ptr<Face>> faces_;
    std::unordered_map<std::string, int> faceByKey_;      // resolved font identity
    std::unordered_map<std::string, int> faceByRequest_;  // what a style or code asked for
    std::unordered_map<std::uint64_t, Glyph> glyphs_;     // (face, character)
    std::unordered_map<std::string, std::string> files_;  // lower-case file name to path
    bool filesIndexed_ = false;
    std::vector<int> fallbacks_;
    bool fallbacksMade_ = false;
    int korean_[2] = {-1, -1};  // gothic, myeongjo
};

}  // namespace cad::gs
