// Font resolution and the glyph cache. Faces are loaded at one pixel size without hinting and
// their outlines scaled to capital heights once, so a text only maps cached paths.
#include "cad/gs/text/FontLibrary.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTransform>
#include <algorithm>
#include <array>

#include "cad/sys/AsciiCase.h"

namespace cad::gs {

namespace {

// Outlines come from FreeType at this size in 26.6 fixed point: 1/64 of a pixel is well below
// a thousandth of a capital height.
constexpr double kPixelSize = 256.0;

// Letters and digits only, lower case: "Times New Roman" and "timesnewroman" compare equal.
std::string squeezed(std::string_view text) {
    std::string out;
    for (char c : sys::asciiLower(text))
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 0x80)
            out += c;
    return out;
}

// The file name of a path written the Windows way or the POSIX way.
std::string_view baseName(std::string_view path) {
    const std::size_t slash = path.find_last_of("/\\:");
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

// Names of Korean serif (Myeongjo) fonts and big fonts, for which a Myeongjo face is chosen.
bool soundsMyeongjo(std::string_view lowerName) {
    for (std::string_view hint : {"myeong", "batang", "gungsuh", "\xeb\xaa\x85\xec\xa1\xb0" /* 명조 */,
                                  "\xeb\xb0\x94\xed\x83\x95" /* 바탕 */, "\xea\xb6\x81\xec\x84\x9c" /* 궁서 */,
                                  "whtm", "hymj", "hysm"})
        if (contains(lowerName, hint)) return true;
    return false;
}

enum class Kind { Unknown, Sans, Serif, Mono, KoreanGothic, KoreanMyeongjo };

// Fonts drawings name that are not installed here, by what they look like. Checked on the
// squeezed name, first match wins (so "centurygothic" is sans before "century" is serif).
// Answers the kind and where the matched name ends, so the rest can be read as its style
// ("arialbd", "timesbi").
std::pair<Kind, std::size_t> kindOf(std::string_view name) {
    if (soundsMyeongjo(name)) return {Kind::KoreanMyeongjo, name.size()};
    static constexpr std::array<std::pair<std::string_view, Kind>, 37> kTable{{
        {"malgun", Kind::KoreanGothic},   {"gulim", Kind::KoreanGothic},
        {"dotum", Kind::KoreanGothic},    {"hygt", Kind::KoreanGothic},
        {"\xea\xb5\xb4\xeb\xa6\xbc", Kind::KoreanGothic} /* 굴림 */,
        {"\xeb\x8f\x8b\xec\x9b\x80", Kind::KoreanGothic} /* 돋움 */,
        {"\xeb\xa7\x91\xec\x9d\x80", Kind::KoreanGothic} /* 맑은 */,
        {"\xea\xb3\xa0\xeb\x94\x95", Kind::KoreanGothic} /* 고딕 */,
        {"whg", Kind::KoreanGothic},
        {"mono", Kind::Mono},             {"cour", Kind::Mono},
        {"consola", Kind::Mono},          {"lucon", Kind::Mono},
        {"lucidaconsole", Kind::Mono},    {"menlo", Kind::Mono},
        {"monaco", Kind::Mono},           {"centurygothic", Kind::Sans},
        {"times", Kind::Serif},           {"georgia", Kind::Serif},
        {"cambria", Kind::Serif},         {"garamond", Kind::Serif},
        {"bookman", Kind::Serif},         {"century", Kind::Serif},
        {"palatino", Kind::Serif},        {"serif", Kind::Serif},
        {"arial", Kind::Sans},            {"helvetica", Kind::Sans},
        {"verdana", Kind::Sans},          {"tahoma", Kind::Sans},
        {"segoe", Kind::Sans},            {"calibri", Kind::Sans},
        {"trebuc", Kind::Sans},           {"franklin", Kind::Sans},
        {"isocp", Kind::Sans},            {"isoct", Kind::Sans},
        {"simplex", Kind::Sans},          {"romans", Kind::Sans},
    }};
    for (const auto& [prefix, kind] : kTable)
        if (const std::size_t at = name.find(prefix); at != std::string_view::npos)
            return {kind, at + prefix.size()};
    return {Kind::Unknown, name.size()};
}

// Weight and slant a font file's name carries ("arialbd", "DejaVuSans-BoldOblique").
void styleOfName(std::string_view squeezedName, bool& bold, bool& italic) {
    if (contains(squeezedName, "bold") || squeezedName.ends_with("bd") || squeezedName.ends_with("bi") ||
        squeezedName.ends_with("z"))
        bold = true;
    if (contains(squeezedName, "italic") || contains(squeezedName, "oblique") ||
        squeezedName.ends_with("i") || squeezedName.ends_with("z"))
        italic = true;
}

bool isControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

bool postRoutineAdded = false;

}  // namespace

FontLibrary& FontLibrary::instance() {
    // Made once and never destroyed: its faces are let go by the application's post routine.
    static FontLibrary* library = new FontLibrary;
    return *library;
}

FontLibrary::FontLibrary() = default;

void FontLibrary::releaseFonts() {
    FontLibrary& library = instance();
    auto guard = library.lock();
    library.glyphs_.clear();
    library.faceByRequest_.clear();
    library.faceByKey_.clear();
    library.faces_.clear();
    library.fallbacks_.clear();
    library.fallbacksMade_ = false;
    library.korean_[0] = library.korean_[1] = -1;
    postRoutineAdded = false;
}

bool FontLibrary::isKorean(char32_t c) {
    return (c >= 0x1100 && c <= 0x11FF) || (c >= 0x3130 && c <= 0x318F) ||
           (c >= 0xA960 && c <= 0xA97F) || (c >= 0xAC00 && c <= 0xD7FF) ||
           (c >= 0xFFA0 && c <= 0xFFDC) || (c >= 0x3200 && c <= 0x321E) ||
           (c >= 0x3260 && c <= 0x327E) || (c >= 0x3400 && c <= 0x4DBF) ||
           (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF);
}

QRawFont FontLibrary::rawFromFamily(const QString& family, bool bold, bool italic) const {
    QFont font(family);
    font.setPixelSize(static_cast<int>(kPixelSize));
    font.setBold(bold);
    font.setItalic(italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    return QRawFont::fromFont(font);
}

int FontLibrary::addFace(const QRawFont& font, bool myeongjo) {
    const std::string key = font.familyName().toStdString() + '|' + font.styleName().toStdString() +
                            '|' + std::to_string(font.weight()) + '|' +
                            std::to_string(static_cast<int>(font.style())) + (myeongjo ? "|m" : "|g");
    if (auto found = faceByKey_.find(key); found != faceByKey_.end()) return found->second;

    auto face = std::make_unique<Face>();
    face->font = font;
    face->myeongjo = myeongjo;
    if (face->font.isValid()) {
        face->font.setPixelSize(kPixelSize);
        double cap = 0.0;
        const QList<quint32> h = face->font.glyphIndexesForString(QStringLiteral("H"));
        if (!h.isEmpty() && h[0] != 0) cap = -face->font.pathForGlyph(h[0]).boundingRect().top();
        if (!(cap > kPixelSize * 0.2)) cap = face->font.capHeight();
        if (!(cap > kPixelSize * 0.2)) cap = kPixelSize * 0.7;
        face->unit = 1.0 / cap;
        face->descent = face->font.descent() * face->unit;
        face->hangul = face->font.supportsCharacter(char32_t(0xAC00));
    }
    const int index = static_cast<int>(faces_.size());
    faces_.push_back(std::move(face));
    faceByKey_.emplace(key, index);
    faces_[index]->korean = faces_[index]->hangul ? index : koreanFace(myeongjo);
    return index;
}

int FontLibrary::genericFace(Generic generic, bool bold, bool italic, bool myeongjo) {
    static const QString kFamilies[] = {QStringLiteral("sans-serif"), QStringLiteral("serif"),
                                        QStringLiteral("monospace")};
    return addFace(rawFromFamily(kFamilies[static_cast<int>(generic)], bold, italic), myeongjo);
}

int FontLibrary::koreanFace(bool myeongjo) {
    int& slot = korean_[myeongjo ? 1 : 0];
    if (slot >= 0) return slot;
    // NanumGothic and NanumMyeongjo come with fonts-nanum; Barun Gothic when only it is there.
    QRawFont font = rawFromFamily(myeongjo ? QStringLiteral("NanumMyeongjo") : QStringLiteral("NanumGothic"),
                                  false, false);
    if (!font.supportsCharacter(char32_t(0xAC00)))
        font = rawFromFamily(QStringLiteral("NanumBarunGothic"), false, false);
    // A face that cannot draw Hangul points at itself, so the search below ends.
    slot = static_cast<int>(faces_.size());
    const int index = addFace(font, myeongjo);
    slot = index;
    return slot;
}

const std::string* FontLibrary::installedFile(const std::string& lowerName) {
    if (!filesIndexed_) {
        filesIndexed_ = true;
        QStringList folders = QStandardPaths::standardLocations(QStandardPaths::FontsLocation);
        for (const char* folder : {"/usr/share/fonts", "/usr/local/share/fonts"})
            if (!folders.contains(QLatin1String(folder))) folders << QLatin1String(folder);
        for (const QString& folder : folders) {
            QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
            while (it.hasNext()) {
                const QString path = it.next();
                files_.emplace(sys::asciiLower(it.fileName().toStdString()), path.toStdString());
            }
        }
    }
    const auto found = files_.find(lowerName);
    return found == files_.end() ? nullptr : &found->second;
}

int FontLibrary::fileFace(const std::string& stem, const std::string& file, bool bold, bool italic,
                          bool myeongjo) {
    // The very file, when it is installed.
    for (const std::string& name :
         {file, stem + ".ttf", stem + ".otf", stem + ".ttc"}) {
        if (name.empty()) continue;
        if (const std::string* path = installedFile(name)) {
            QRawFont font(QString::fromStdString(*path), kPixelSize, QFont::PreferNoHinting);
            if (font.isValid()) return addFace(font, myeongjo);
        }
    }
    // An installed family of that name ("NanumGothic" for "nanumgothic.ttf"), the rest of the
    // name read as its style ("nanumgothicbold").
    const std::string key = squeezed(stem);
    for (const QString& family : QFontDatabase::families()) {
        const std::string candidate = squeezed(family.toStdString());
        if (candidate.empty() || !key.starts_with(candidate)) continue;
        const std::string rest = key.substr(candidate.size());
        bool restBold = bold, restItalic = italic;
        styleOfName(rest, restBold, restItalic);
        if (rest.empty() || rest == "regular" || restBold != bold || restItalic != italic)
            return addFace(rawFromFamily(family, restBold, restItalic), myeongjo);
    }
    // A font of the same kind.
    const auto [kind, end] = kindOf(key);
    bool nameBold = bold, nameItalic = italic;
    if (end < key.size()) styleOfName(key.substr(end), nameBold, nameItalic);
    switch (kind) {
        case Kind::Serif: return genericFace(Generic::Serif, nameBold, nameItalic, myeongjo);
        case Kind::Mono: return genericFace(Generic::Mono, nameBold, nameItalic, myeongjo);
        case Kind::KoreanGothic: return koreanFace(false);
        case Kind::KoreanMyeongjo: return koreanFace(true);
        default: return genericFace(Generic::Sans, nameBold, nameItalic, myeongjo);
    }
}

int FontLibrary::styleFace(std::string_view fontFile, std::string_view bigFontFile) {
    if (!postRoutineAdded && QCoreApplication::instance() != nullptr) {
        postRoutineAdded = true;
        qAddPostRoutine(releaseFonts);
    }
    std::string request = "s|";
    request.append(fontFile).append("|").append(bigFontFile);
    if (auto found = faceByRequest_.find(request); found != faceByRequest_.end()) return found->second;

    const std::string file = sys::asciiLower(baseName(fontFile));
    const std::size_t dot = file.rfind('.');
    const std::string stem = file.substr(0, dot);
    const std::string extension = dot == std::string::npos ? std::string() : file.substr(dot + 1);
    const bool myeongjo = soundsMyeongjo(sys::asciiLower(bigFontFile)) || soundsMyeongjo(stem);
    int face;
    if (stem.empty()) {
        face = genericFace(Generic::Sans, false, false, myeongjo);
    } else if (extension == "shx" || (extension.empty() && kindOf(squeezed(stem)).first == Kind::Unknown)) {
        // Vector fonts are single-stroke: the nearest installed look is a plain sans, or a
        // mono for the fixed-pitch ones.
        face = contains(stem, "mono") ? genericFace(Generic::Mono, false, false, myeongjo)
                                      : genericFace(Generic::Sans, false, false, myeongjo);
    } else {
        face = fileFace(stem, file, false, false, myeongjo);
    }
    faceByRequest_.emplace(std::move(request), face);
    return face;
}

int FontLibrary::inlineFace(std::string_view name, bool bold, bool italic, int base) {
    std::string request = "i|";
    request.append(name).append(bold ? "|b" : "|-").append(italic ? "i|" : "-|").append(std::to_string(base));
    if (auto found = faceByRequest_.find(request); found != faceByRequest_.end()) return found->second;

    const bool baseMyeongjo = base >= 0 && base < static_cast<int>(faces_.size()) && faces_[base]->myeongjo;
    const std::string file = sys::asciiLower(baseName(name));
    const std::size_t dot = file.rfind('.');
    const std::string extension = dot == std::string::npos ? std::string() : file.substr(dot + 1);
    const bool myeongjo = baseMyeongjo || soundsMyeongjo(file);
    int face;
    if (file.empty()) {
        face = base;
    } else if (extension == "shx") {
        face = styleFace(name, "");
    } else if (extension == "ttf" || extension == "ttc" || extension == "otf") {
        face = fileFace(file.substr(0, dot), file, bold, italic, myeongjo);
    } else {
        // A family name ("Arial", "맑은 고딕"): installed, or one of its kind.
        const std::string key = squeezed(file);
        face = -1;
        for (const QString& family : QFontDatabase::families()) {
            if (squeezed(family.toStdString()) == key) {
                face = addFace(rawFromFamily(family, bold, italic), myeongjo);
                break;
            }
        }
        if (face < 0) {
            switch (kindOf(key).first) {
                case Kind::Serif: face = genericFace(Generic::Serif, bold, italic, myeongjo); break;
                case Kind::Mono: face = genericFace(Generic::Mono, bold, italic, myeongjo); break;
                case Kind::KoreanGothic: face = koreanFace(false); break;
                case Kind::KoreanMyeongjo: face = koreanFace(true); break;
                default: face = genericFace(Generic::Sans, bold, italic, myeongjo); break;
            }
        }
    }
    faceByRequest_.emplace(std::move(request), face);
    return face;
}

int FontLibrary::fallbackFor(int face, char32_t c) {
    if (isKorean(c)) {
        // Hangul fonts first, whatever the text's own font: NanumMyeongjo has no Hanja, so
        // the gothic one stands in.
        for (int candidate : {faces_[face]->korean, koreanFace(false), koreanFace(true)})
            if (faces_[candidate]->font.supportsCharacter(c)) return candidate;
    }
    if (!fallbacksMade_) {
        fallbacksMade_ = true;
        fallbacks_ = {genericFace(Generic::Sans), koreanFace(false), genericFace(Generic::Serif),
                      genericFace(Generic::Mono)};
        for (const QString& family : QFontDatabase::families())
            fallbacks_.push_back(addFace(rawFromFamily(family, false, false), false));
        fallbacks_.erase(std::unique(fallbacks_.begin(), fallbacks_.end()), fallbacks_.end());
    }
    for (int candidate : fallbacks_)
        if (faces_[candidate]->font.supportsCharacter(c)) return candidate;
    return -1;
}

FontLibrary::Glyph FontLibrary::makeGlyph(int face, char32_t c) {
    Glyph glyph;
    glyph.face = face;
    const Face& f = *faces_[face];
    const QList<quint32> indexes = f.font.glyphIndexesForString(QString::fromUcs4(&c, 1));
    if (indexes.isEmpty()) return glyph;
    const QList<QPointF> advances =
        f.font.advancesForGlyphIndexes(indexes, QRawFont::UseDesignMetrics);
    if (!advances.isEmpty()) glyph.advance = advances[0].x() * f.unit;
    glyph.outline = QTransform(f.unit, 0.0, 0.0, -f.unit, 0.0, 0.0).map(f.font.pathForGlyph(indexes[0]));
    glyph.outline.setFillRule(Qt::WindingFill);
    return glyph;
}

const FontLibrary::Glyph& FontLibrary::glyph(int face, char32_t c) {
    const std::uint64_t key = (static_cast<std::uint64_t>(face) << 32) | c;
    if (auto found = glyphs_.find(key); found != glyphs_.end()) return found->second;

    Glyph made;
    if (face < 0 || face >= static_cast<int>(faces_.size()) || isControl(c)) {
        made.face = face;
    } else {
        int target = face;
        if (isKorean(c) && !faces_[face]->hangul) target = faces_[face]->korean;
        if (!faces_[target]->font.supportsCharacter(c)) target = fallbackFor(face, c);
        if (target >= 0) {
            made = makeGlyph(target, c);
        } else if (c == 0xA0 || c == 0x3000) {
            // Blanks no font has are blanks all the same.
            made = glyph(face, U' ');
        } else if (c != 0xFFFD) {
            made = glyph(face, faces_[face]->font.supportsCharacter(char32_t(0xFFFD)) ? U'\uFFFD' : U'?');
        } else {
            made.face = face;
        }
    }
    return glyphs_.emplace(key, std::move(made)).first->second;
}

FontLibrary::FaceInfo FontLibrary::faceInfo(int face) const {
    if (face < 0 || face >= static_cast<int>(faces_.size())) return {};
    const Face& f = *faces_[face];
    return {f.font.familyName(), f.font.styleName(), f.descent};
}

double FontLibrary::descent(int face) const {
    if (face < 0 || face >= static_cast<int>(faces_.size())) return 0.3;
    return faces_[face]->descent;
}

}  // namespace cad::gs
