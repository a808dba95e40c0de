// Collects a text's glyphs and rules (underlines, fraction bars) in the text's own frame,
// then places them in block coordinates as pieces, one per colour.
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QTransform>
#include <array>
#include <optional>
#include <vector>

#include "cad/gs/text/TextGeometry.h"

namespace cad::gs {

class OutlineBuilder {
public:
    // The colour of what is added next (none: the entity's own).
    void setColor(std::optional<int> index, std::optional<std::int32_t> trueColor);
    // A cached glyph outline mapped into the text's frame; the path must outlive the builder.
    void addGlyph(const QPainterPath& glyph, const QTransform& toText);
    // A filled quadrilateral in the text's frame.
    void addQuad(const std::array<QPointF, 4>& corners);
    bool isEmpty() const { return glyphs_.empty() && quads_.empty(); }

    // The pieces in block coordinates. Rules get pieces of their own: under the winding rule
    // a rule drawn against a glyph's turning sense would cut a hole where they overlap.
    std::vector<TextPiece> pieces(const QTransform& toBlock) const;

private:
    struct Color {
        std::optional<int> index;
        std::optional<std::int32_t> trueColor;
        friend bool operator==(const Color&, const Color&) = default;
    };
    struct Glyph {
        const QPainterPath* outline;
        QTransform toText;
        std::size_t color;
    };
    struct Quad {
        std::array<QPointF, 4> corners;
        std::size_t color;
    };

    std::vector<Color> colors_{Color{}};
    std::size_t color_ = 0;
    std::vector<Glyph> glyphs_;
    std::vector<Quad> quads_;
};

}  // namespace cad::gs
