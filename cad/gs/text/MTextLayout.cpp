// MTEXT layout: elements (a character, a blank, a tab, a stacked fraction) measured once,
// greedy wrapping at blanks, then lines stacked into columns and aligned.
#include "cad/gs/text/MTextLayout.h"

#include <algorithm>
#include <cmath>

namespace cad::gs {

namespace {

// Distance between baselines for single spacing, in text heights, as drawing programs space
// multi-line text.
constexpr double kLinePitch = 5.0 / 3.0;
// Stacked fractions: each part at this share of the height, the bar through the middle.
constexpr double kStackScale = 0.7;
constexpr double kTabStops = 4.0;  // in text heights

// Rules as bands relative to the baseline, in heights of their characters.
constexpr double kUnderline[2] = {-0.22, -0.15};
constexpr double kOverline[2] = {1.2, 1.27};
constexpr double kStrike[2] = {0.465, 0.535};
constexpr double kBar[2] = {0.47, 0.53};

}  // namespace

MTextLayout::MTextLayout(FontLibrary& fonts, const MTextSettings& settings)
    : fonts_(fonts), settings_(settings) {}

int MTextLayout::faceOf(const MTextFormat& format) {
    if (&format == lastFormat_) return lastFace_;
    lastFormat_ = &format;
    lastFace_ = format.font.empty() ? settings_.face
                                    : fonts_.inlineFace(format.font, format.bold, format.italic, settings_.face);
    return lastFace_;
}

void MTextLayout::addGlyphs(const std::u32string& text, const MTextFormat& format, int face,
                            double scale, double x, double y, double& width) {
    const double height = format.height * scale;
    const double sx = height * format.widthFactor * settings_.styleWidthFactor;
    const double tanOblique = std::tan(format.obliqueSet ? format.oblique : settings_.styleOblique);
    width = 0.0;
    for (char32_t c : text) {
        const FontLibrary::Glyph& glyph = fonts_.glyph(face, c);
        atoms_.push_back({&glyph.outline, x + width, y, sx, height, height * tanOblique});
        width += glyph.advance * sx * format.tracking;
    }
}

void MTextLayout::addRun(const MTextRun& run) {
    const MTextFormat& format = run.format;
    const int face = faceOf(format);
    const double height = format.height;
    const double tanOblique = std::tan(format.obliqueSet ? format.oblique : settings_.styleOblique);
    if (run.kind == MTextRun::Kind::Tab) {
        Element e{&format};
        e.height = height;
        e.tab = true;
        e.space = true;
        elements_.push_back(e);
        return;
    }
    if (run.kind == MTextRun::Kind::Text) {
        const double sx = height * format.widthFactor * settings_.styleWidthFactor;
        for (char32_t c : run.text) {
            const FontLibrary::Glyph& glyph = fonts_.glyph(face, c);
            Element e{&format};
            e.width = glyph.advance * sx * format.tracking;
            e.height = height;
            e.tanOblique = tanOblique;
            e.space = c == U' ' || c == U'\u3000';
            e.firstAtom = static_cast<std::uint32_t>(atoms_.size());
            if (!glyph.outline.isEmpty()) {
                atoms_.push_back({&glyph.outline, 0.0, 0.0, sx, height, height * tanOblique});
                e.atoms = 1;
            }
            elements_.push_back(e);
        }
        return;
    }
    // A stacked fraction: one element that never breaks.
    Element e{&format};
    e.height = height;
    e.tanOblique = tanOblique;
    e.firstAtom = static_cast<std::uint32_t>(atoms_.size());
    double upper = 0.0, lower = 0.0;
    const double part = kStackScale * height;
    if (run.stackKind == '#') {
        // Diagonal: upper part raised, a full-height slash, lower part on the baseline.
        addGlyphs(run.text, format, face, kStackScale, 0.0, 0.45 * height, upper);
        double slash = 0.0;
        addGlyphs(U"/", format, face, 1.0, upper, 0.0, slash);
        addGlyphs(run.lower, format, face, kStackScale, upper + slash, 0.0, lower);
        e.width = upper + slash + lower;
    } else {
        // One over the other around the middle of the height: centred over a bar for '/',
        // flush left without one for tolerances ('^').
        const double upperBase = (kBar[1] + 0.1) * height;
        const double lowerBase = (kBar[0] - 0.1) * height - part;
        const std::size_t upperAtoms = atoms_.size();
        addGlyphs(run.text, format, face, kStackScale, 0.0, upperBase, upper);
        const std::size_t lowerAtoms = atoms_.size();
        addGlyphs(run.lower, format, face, kStackScale, 0.0, lowerBase, lower);
        const bool bar = run.stackKind == '/';
        const double pad = bar ? 0.1 * height : 0.0;
        e.width = std::max(upper, lower) + 2.0 * pad;
        const double upperShift = bar ? (e.width - upper) / 2.0 : 0.0;
        const double lowerShift = bar ? (e.width - lower) / 2.0 : 0.0;
        for (std::size_t i = upperAtoms; i < lowerAtoms; ++i) atoms_[i].x += upperShift;
        for (std::size_t i = lowerAtoms; i < atoms_.size(); ++i) atoms_[i].x += lowerShift;
        if (bar && e.width > 0.0)
            atoms_.push_back({nullptr, 0.0, kBar[0] * height, e.width, (kBar[1] - kBar[0]) * height, 0.0});
    }
    e.atoms = static_cast<std::uint32_t>(atoms_.size() - e.firstAtom);
    elements_.push_back(e);
}

void MTextLayout::breakParagraph(std::size_t first, std::size_t end, const MTextParagraph& paragraph) {
    const double wrap = settings_.columns > 0 && settings_.columnWidth > 0.0 ? settings_.columnWidth
                                                                            : settings_.width;
    auto finishLine = [&](std::size_t from, std::size_t to, bool last) {
        Line line;
        line.first = from;
        line.end = to;
        line.contentEnd = to;
        while (line.contentEnd > from && elements_[line.contentEnd - 1].space) --line.contentEnd;
        for (std::size_t i = from; i < line.contentEnd; ++i) line.width += elements_[i].width;
        for (std::size_t i = from; i < to; ++i)
            if (!elements_[i].space || line.height == 0.0) line.height = std::max(line.height, elements_[i].height);
        if (line.height <= 0.0) line.height = settings_.height;
        line.align = paragraph.align;
        line.lastOfParagraph = last;
        line.columnBreak = from == first && paragraph.columnBreak;
        lines_.push_back(line);
    };

    std::size_t lineStart = first;
    std::size_t lastBlank = end;  // the last blank of the line so far; end: none
    double x = 0.0;
    for (std::size_t i = first; i < end; ++i) {
        Element& e = elements_[i];
        if (e.tab) {
            const double stop = kTabStops * settings_.height;
            e.width = stop > 0.0 ? (std::floor(x / stop + 1e-9) + 1.0) * stop - x : 0.0;
        }
        if (wrap > 0.0 && !e.space && i > lineStart && x + e.width > wrap * (1.0 + 1e-9)) {
            if (lastBlank != end && lastBlank >= lineStart) {
                finishLine(lineStart, lastBlank + 1, false);
                lineStart = lastBlank + 1;
            } else {
                // A word longer than the width breaks where it reaches the edge.
                finishLine(lineStart, i, false);
                lineStart = i;
            }
            lastBlank = end;
            x = 0.0;
            for (std::size_t k = lineStart; k < i; ++k) x += elements_[k].width;
        }
        if (e.space) lastBlank = i;
        x += e.width;
    }
    finishLine(lineStart, end, true);
}

double MTextLayout::pitch(const Line& line) const {
    const double height = settings_.exactSpacing ? settings_.height : std::max(settings_.height, line.height);
    return kLinePitch * settings_.lineSpacing * height;
}

void MTextLayout::placeLines() {
    const bool columns = settings_.columns > 0 && settings_.columnWidth > 0.0;
    auto columnHeight = [&](int column) {
        if (column < static_cast<int>(settings_.columnHeights.size()) && settings_.columnHeights[column] > 0.0)
            return settings_.columnHeights[column];
        return settings_.definedHeight;
    };
    int column = 0;
    bool columnEmpty = true;
    double baseline = 0.0, lowest = 0.0;
    for (Line& line : lines_) {
        if (columns && !columnEmpty && column + 1 < settings_.columns) {
            const double limit = columnHeight(column);
            const double next = baseline - pitch(line);
            if (line.columnBreak || (limit > 0.0 && -next > limit * (1.0 + 1e-9))) {
                ++column;
                columnEmpty = true;
            }
        }
        baseline = columnEmpty ? -line.height : baseline - pitch(line);
        line.baseline = baseline;
        line.column = column;
        columnEmpty = false;
        lowest = std::min(lowest, baseline);
    }

    double widest = 0.0;
    for (const Line& line : lines_) widest = std::max(widest, line.width);
    if (columns) {
        columnWidth_ = settings_.columnWidth;
        boxWidth_ = settings_.columns * settings_.columnWidth + (settings_.columns - 1) * settings_.gutter;
    } else {
        columnWidth_ = settings_.width > 0.0 ? settings_.width : widest;
        boxWidth_ = columnWidth_;
    }
    boxHeight_ = -lowest;
    if (columns && columnHeight(0) > 0.0) boxHeight_ = std::max(boxHeight_, columnHeight(0));

    extraSpace_.assign(lines_.size(), 0.0);
    for (std::size_t n = 0; n < lines_.size(); ++n) {
        const Line& line = lines_[n];
        const bool justify = line.align == MTextParagraphAlign::Distributed ||
                             (line.align == MTextParagraphAlign::Justified && !line.lastOfParagraph);
        if (!justify || line.width >= columnWidth_) continue;
        std::size_t blanks = 0;
        for (std::size_t i = line.first; i < line.contentEnd; ++i) blanks += elements_[i].space ? 1 : 0;
        if (blanks > 0) extraSpace_[n] = (columnWidth_ - line.width) / static_cast<double>(blanks);
    }
}

void MTextLayout::drawRules(const Line& line, double lineX, OutlineBuilder& out) {
    struct Band {
        bool MTextFormat::*flag;
        const double* range;
    };
    static constexpr Band kBands[] = {{&MTextFormat::underline, kUnderline},
                                      {&MTextFormat::overline, kOverline},
                                      {&MTextFormat::strike, kStrike}};
    for (const Band& band : kBands) {
        double x = lineX;
        std::size_t i = line.first;
        while (i < line.contentEnd) {
            const Element& start = elements_[i];
            if (!(start.format->*band.flag)) {
                x += start.width;
                ++i;
                continue;
            }
            // One rule over the run of elements that share its height, slant and colour.
            const double x0 = x;
            std::size_t j = i;
            while (j < line.contentEnd) {
                const Element& e = elements_[j];
                if (!(e.format->*band.flag) || e.height != start.height || e.tanOblique != start.tanOblique ||
                    e.format->colorIndex != start.format->colorIndex ||
                    e.format->trueColor != start.format->trueColor)
                    break;
                x += e.width;
                ++j;
            }
            const double y0 = band.range[0] * start.height;
            const double y1 = band.range[1] * start.height;
            const double t = start.tanOblique;
            const double b = line.baseline;
            out.setColor(start.format->colorIndex, start.format->trueColor);
            out.addQuad({QPointF(x0 + t * y0, b + y0), QPointF(x + t * y0, b + y0),
                         QPointF(x + t * y1, b + y1), QPointF(x0 + t * y1, b + y1)});
            i = j;
        }
    }
}

void MTextLayout::draw(OutlineBuilder& out, double dx, double dy) {
    const bool columns = settings_.columns > 0 && settings_.columnWidth > 0.0;
    const MTextFormat* colorOf = nullptr;
    for (std::size_t n = 0; n < lines_.size(); ++n) {
        Line& line = lines_[n];
        line.baseline += dy;
        const double columnX = columns ? line.column * (settings_.columnWidth + settings_.gutter) : 0.0;
        MTextParagraphAlign align = line.align;
        if (align == MTextParagraphAlign::Attachment) {
            static constexpr MTextParagraphAlign kByColumn[] = {
                MTextParagraphAlign::Left, MTextParagraphAlign::Center, MTextParagraphAlign::Right};
            align = kByColumn[(settings_.attachment - 1) % 3];
        }
        double lineX = dx + columnX;
        if (align == MTextParagraphAlign::Center) lineX += (columnWidth_ - line.width) / 2.0;
        if (align == MTextParagraphAlign::Right) lineX += columnWidth_ - line.width;
        double x = lineX;
        for (std::size_t i = line.first; i < line.end; ++i) {
            Element& e = elements_[i];
            if (e.space && i < line.contentEnd) e.width += extraSpace_[n];
            if (e.atoms > 0) {
                if (e.format != colorOf) {
                    colorOf = e.format;
                    out.setColor(e.format->colorIndex, e.format->trueColor);
                }
                // Smaller characters sit on the baseline, the middle or the top of the line.
                const double shift = (line.height - e.height) * 0.5 * e.format->lineAlign;
                for (std::uint32_t k = 0; k < e.atoms; ++k) {
                    const Atom& a = atoms_[e.firstAtom + k];
                    const double ax = x + a.x + e.tanOblique * a.y;
                    const double ay = line.baseline + shift + a.y;
                    if (a.outline != nullptr) {
                        out.addGlyph(*a.outline, QTransform(a.sx, 0.0, a.shear, a.sy, ax, ay));
                    } else {
                        out.addQuad({QPointF(ax, ay), QPointF(ax + a.sx, ay),
                                     QPointF(ax + a.sx + e.tanOblique * a.sy, ay + a.sy),
                                     QPointF(ax + e.tanOblique * a.sy, ay + a.sy)});
                    }
                }
            }
            x += e.width;
        }
        drawRules(line, lineX, out);
        colorOf = nullptr;
    }
}

void MTextLayout::layout(const MTextContent& content, OutlineBuilder& out) {
    for (const MTextParagraph& paragraph : content.paragraphs) {
        const std::size_t first = elements_.size();
        for (const MTextRun& run : paragraph.runs) addRun(run);
        breakParagraph(first, elements_.size(), paragraph);
    }
    placeLines();
    const int attachment = std::clamp(settings_.attachment, 1, 9);
    const double dx = -boxWidth_ * ((attachment - 1) % 3) / 2.0;
    const double dy = boxHeight_ * ((attachment - 1) / 3) / 2.0;
    draw(out, dx, dy);
    box_ = {QPointF(dx, dy), QPointF(dx + boxWidth_, dy), QPointF(dx + boxWidth_, dy - boxHeight_),
            QPointF(dx, dy - boxHeight_)};
}

}  // namespace cad::gs
