// Glyphs placed by reference, one piece per colour (and one for the rules); mapped element by
// element into one path when drawn.
#include "cad/gs/text/OutlineBuilder.h"

namespace cad::gs {

namespace {

void appendMapped(QPainterPath& out, const QPainterPath& path, const QTransform& t) {
    const int count = path.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        switch (e.type) {
            case QPainterPath::MoveToElement:
                out.moveTo(t.map(QPointF(e.x, e.y)));
                break;
            case QPainterPath::LineToElement:
                out.lineTo(t.map(QPointF(e.x, e.y)));
                break;
            case QPainterPath::CurveToElement:
                if (i + 2 < count) {
                    const QPainterPath::Element c2 = path.elementAt(i + 1);
                    const QPainterPath::Element end = path.elementAt(i + 2);
                    out.cubicTo(t.map(QPointF(e.x, e.y)), t.map(QPointF(c2.x, c2.y)),
                                t.map(QPointF(end.x, end.y)));
                    i += 2;
                }
                break;
            case QPainterPath::CurveToDataElement:
                break;
        }
    }
}

}  // namespace

void OutlineBuilder::setColor(std::optional<int> index, std::optional<std::int32_t> trueColor) {
    const Color color{index, trueColor};
    for (std::size_t i = 0; i < colors_.size(); ++i) {
        if (colors_[i] == color) {
            color_ = i;
            return;
        }
    }
    color_ = colors_.size();
    colors_.push_back(color);
}

void OutlineBuilder::addGlyph(const QPainterPath& glyph, const QTransform& toText) {
    if (glyph.isEmpty()) return;
    glyphs_.push_back({&glyph, toText, color_});
}

void OutlineBuilder::addQuad(const std::array<QPointF, 4>& corners) {
    quads_.push_back({corners, color_});
}

std::vector<TextPiece> OutlineBuilder::pieces(const QTransform& toBlock) const {
    std::vector<TextPiece> out;
    for (std::size_t color = 0; color < colors_.size(); ++color) {
        TextPiece glyphs, rules;
        rules.rules.setFillRule(Qt::WindingFill);
        std::size_t count = 0;
        for (const Glyph& glyph : glyphs_) count += glyph.color == color;
        glyphs.glyphs.reserve(count);
        for (const Glyph& glyph : glyphs_) {
            if (glyph.color != color) continue;
            const QTransform t = glyph.toText * toBlock;
            glyphs.glyphs.push_back({glyph.outline, t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()});
        }
        for (const Quad& quad : quads_) {
            if (quad.color != color) continue;
            rules.rules.moveTo(toBlock.map(quad.corners[0]));
            for (int k = 1; k < 4; ++k) rules.rules.lineTo(toBlock.map(quad.corners[k]));
            rules.rules.closeSubpath();
        }
        for (TextPiece* piece : {&glyphs, &rules}) {
            if (piece->glyphs.empty() && piece->rules.isEmpty()) continue;
            piece->colorIndex = colors_[color].index;
            piece->trueColor = colors_[color].trueColor;
            out.push_back(std::move(*piece));
        }
    }
    return out;
}

QRectF TextPiece::bounds() const {
    QRectF all = rules.isEmpty() ? QRectF() : rules.boundingRect();
    for (const PlacedGlyph& glyph : glyphs) {
        const QRectF r = glyph.toBlock().mapRect(glyph.outline->boundingRect());
        all = all.isNull() ? r : all | r;
    }
    return all;
}

void TextPiece::appendTo(QPainterPath& out, const QTransform& toDevice) const {
    for (const PlacedGlyph& glyph : glyphs) appendMapped(out, *glyph.outline, glyph.toBlock() * toDevice);
    if (!rules.isEmpty()) appendMapped(out, rules, toDevice);
}

}  // namespace cad::gs
