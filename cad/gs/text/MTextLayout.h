// Lays out parsed MTEXT: characters measured with the fonts, paragraphs wrapped at the
// reference (or column) width, lines spaced and aligned, columns filled, and the whole box
// placed on its attachment point. Works in the text's own frame: x along its direction, y up,
// the attachment point at the origin.
#pragma once

#include <QPointF>
#include <array>
#include <cstdint>
#include <vector>

#include "cad/gs/text/FontLibrary.h"
#include "cad/gs/text/MTextParser.h"
#include "cad/gs/text/OutlineBuilder.h"

namespace cad::gs {

struct MTextSettings {
    double height = 1.0;           // the entity's text height
    double width = 0.0;            // reference width; 0: no wrapping
    int attachment = 1;            // 1..9: top left .. bottom right
    double lineSpacing = 1.0;      // factor on the standard pitch (5/3 of the height)
    bool exactSpacing = false;     // pitch from the entity's height, not each line's tallest
    int columns = 0;               // 0: no columns; otherwise the number of columns
    double columnWidth = 0.0;
    double gutter = 0.0;
    std::vector<double> columnHeights;  // per column; a column without one takes definedHeight
    double definedHeight = 0.0;    // the box height the text was given; 0: as tall as the text
    double styleWidthFactor = 1.0;
    double styleOblique = 0.0;     // radians
    int face = -1;                 // the style's face in the font library
};

class MTextLayout {
public:
    MTextLayout(FontLibrary& fonts, const MTextSettings& settings);

    // Adds the content's glyphs and rules to `out`; the library must be locked by the caller.
    void layout(const MTextContent& content, OutlineBuilder& out);
    // The text's box after layout, in the text's frame: top left, top right, bottom right,
    // bottom left.
    const std::array<QPointF, 4>& box() const { return box_; }

private:
    struct Atom {
        const QPainterPath* outline;  // null: a rule of width sx and height sy at (x, y)
        double x, y, sx, sy, shear;
    };
    struct Element {
        const MTextFormat* format;
        double width = 0.0;
        double height = 0.0;
        double tanOblique = 0.0;
        std::uint32_t firstAtom = 0, atoms = 0;
        bool space = false;
        bool tab = false;
    };
    struct Line {
        std::size_t first = 0, end = 0;  // elements, trailing blanks included
        std::size_t contentEnd = 0;      // elements before the trailing blanks
        double width = 0.0;              // without trailing blanks
        double height = 0.0;             // tallest character
        MTextParagraphAlign align = MTextParagraphAlign::Attachment;
        bool lastOfParagraph = false;
        bool columnBreak = false;
        int column = 0;
        double baseline = 0.0;
    };

    int faceOf(const MTextFormat& format);
    void addRun(const MTextRun& run);
    void addGlyphs(const std::u32string& text, const MTextFormat& format, int face, double scale,
                   double x, double y, double& width);
    void breakParagraph(std::size_t first, std::size_t end, const MTextParagraph& paragraph);
    double pitch(const Line& line) const;
    void placeLines();
    void draw(OutlineBuilder& out, double dx, double dy);
    void drawRules(const Line& line, double lineX, OutlineBuilder& out);

    FontLibrary& fonts_;
    MTextSettings settings_;
    std::vector<Element> elements_;
    std::vector<Atom> atoms_;
    std::vector<Line> lines_;
    std::vector<double> extraSpace_;  // per line: what each blank gains when justified
    std::array<QPointF, 4> box_;
    double boxWidth_ = 0.0, boxHeight_ = 0.0;
    double columnWidth_ = 0.0;
    const MTextFormat* lastFormat_ = nullptr;
    int lastFace_ = -1;
};

}  // namespace cad::gs
