// Texts as filled outlines for the drawing view: TEXT, ATTRIB and ATTDEF (one line placed by
// its alignment) and MTEXT (formatted paragraphs in a box placed by its attachment point).
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QTransform>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace cad::db {
class MText;
class Text;
}  // namespace cad::db

namespace cad::gs {

// A cached glyph outline and where it lands: block = (m11 x + m21 y + dx, m12 x + m22 y + dy).
// Texts hold their glyphs by reference, not as copied outlines: a drawing's thousands of
// attributes would otherwise cost kilobytes each. The outlines live in the font library for
// as long as the application does.
struct PlacedGlyph {
    const QPainterPath* outline = nullptr;
    double m11 = 1.0, m12 = 0.0, m21 = 0.0, m22 = 1.0, dx = 0.0, dy = 0.0;
    QTransform toBlock() const { return QTransform(m11, m12, m21, m22, dx, dy); }
};

struct TextPiece {
    std::vector<PlacedGlyph> glyphs;        // filled, winding, in the entity's block coordinates
    QPainterPath rules;                     // underlines, overlines, strikes and bars, likewise
    std::optional<int> colorIndex;          // an inline colour code: 0 BYBLOCK, 256 BYLAYER, 1..255
    std::optional<std::int32_t> trueColor;  // an inline true colour, 0xRRGGBB
    // Glyphs and rules, in block coordinates.
    QRectF bounds() const;
    // Glyphs and rules as one path mapped by `toDevice` (added to `out`).
    void appendTo(QPainterPath& out, const QTransform& toDevice) const;
};

struct TextGeometry {
    double height = 0.0;          // the text height in drawing units (the renderer draws the box below ~3 px)
    std::array<QPointF, 4> box;   // the text's box corners in block coordinates (rotated as the text is)
    std::vector<TextPiece> pieces;
};

// A text that cannot be drawn (no characters, a height that is not a positive finite number,
// coordinates beyond any drawing) answers no pieces, height 0 and a box of NaN corners, which
// widen no bounds. At most kMaxTextCharacters characters are drawn; the rest is left out.
inline constexpr std::size_t kMaxTextCharacters = 4096;

TextGeometry textGeometry(const db::Text& text);     // TEXT, and ATTRIB / ATTDEF (subclasses of db::Text)
TextGeometry mtextGeometry(const db::MText& mtext);

}  // namespace cad::gs
