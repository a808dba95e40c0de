// Glyph outlines copied element by element through one transform each, into a path per colour.
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
        glyphs.outline.setFillRule(Qt::WindingFill);
        rules.outline.setFillRule(Qt::WindingFill);
        // Sized once: a display list keeps every text's outline, and a path grown by doubling
        // holds up to twice what it needs.
        int elements = 0, quads = 0;
        for (const PlacedGlyph& glyph : glyphs_)
            if (glyph.color == color) elements += glyph.outline->elementCount();
        for (const Quad& quad : quads_)
            if (quad.color == color) ++quads;
        if (elements > 0) glyphs.outline.reserve(elements);
        if (quads > 0) rules.outline.reserve(5 * quads);
        for (const PlacedGlyph& glyph : glyphs_)
            if (glyph.color == color) appendMapped(glyphs.outline, *glyph.outline, glyph.toText * toBlock);
        for (const Quad& quad : quads_) {
            if (quad.color != color) continue;
            rules.outline.moveTo(toBlock.map(quad.corners[0]));
            for (int k = 1; k < 4; ++k) rules.outline.lineTo(toBlock.map(quad.corners[k]));
            rules.outline.closeSubpath();
        }
        for (TextPiece* piece : {&glyphs, &rules}) {
            if (piece->outline.isEmpty()) continue;
            piece->colorIndex = colors_[color].index;
            piece->trueColor = colors_[color].trueColor;
            out.push_back(std::move(*piece));
        }
    }
    return out;
}

}  // namespace cad::gs
