// HatchDefinition: a reader over the definition tags in their documented order. Counts are
// never trusted beyond the tags there are, and nothing is reserved by a count from the file.
#include "cad/gs/geometry/HatchDefinition.h"

#include <cmath>
#include <numbers>
#include <optional>

#include "cad/db/dxf/Tag.h"
#include "cad/gs/geometry/NurbsCurve.h"

namespace cad::gs {

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

class TagCursor {
public:
    explicit TagCursor(const std::vector<db::RawTag>& tags) : tags_(tags) {}

    bool ok() const { return ok_; }
    bool atEnd() const { return index_ >= tags_.size(); }
    std::size_t index() const { return index_; }
    void moveTo(std::size_t index) {
        index_ = index;
        ok_ = true;
    }
    bool at(int code) const { return ok_ && index_ < tags_.size() && tags_[index_].code == code; }
    int codeAfter() const { return index_ + 1 < tags_.size() ? tags_[index_ + 1].code : -1; }
    const db::RawTag& current() const { return tags_[index_]; }
    void skip() { ++index_; }

    // The number of the tag here, which must have `code`; a failure stops the reading.
    double number(int code) {
        if (!at(code)) return fail();
        const std::optional<double> value =
            db::dxf::toDouble(db::dxf::Tag{code, tags_[index_].value, 0});
        if (!value) return fail();
        ++index_;
        return *value;
    }
    double optionalNumber(int code, double fallback) { return at(code) ? number(code) : fallback; }
    long count(int code) {
        const double n = number(code);
        if (!ok_ || n < 0.0 || n != std::floor(n)) {
            fail();
            return 0;
        }
        // Larger counts than tags can only fail on the way, so they need no exact value.
        return n > double(tags_.size()) ? static_cast<long>(tags_.size()) + 1
                                        : static_cast<long>(n);
    }
    ge::Point2d point(int xCode, int yCode) {
        const double x = number(xCode);
        const double y = number(yCode);
        return {x, y};
    }

private:
    double fail() {
        ok_ = false;
        return 0.0;
    }

    const std::vector<db::RawTag>& tags_;
    std::size_t index_ = 0;
    bool ok_ = true;
};

ge::Point3d lifted(const ge::Point2d& p) {
    return {p.x, p.y, 0.0};
}

// The counter-clockwise range an arc or ellipse edge covers, in degrees: clockwise edges are
// stored with complementary angles (360 - angle) in reverse order.
void ccwRange(double start, double end, bool ccw, double& from, double& to) {
    from = ccw ? start : 360.0 - end;
    to = ccw ? end : 360.0 - start;
    double sweep = to - from;
    if (sweep < 0.0 || sweep > 360.0) {
        sweep = std::fmod(sweep, 360.0);
        if (sweep < 0.0) sweep += 360.0;
    }
    to = from + sweep;
}

class Reader {
public:
    Reader(const std::vector<db::RawTag>& tags, double tolerance)
        : cursor_(tags), tags_(tags), tolerance_(tolerance) {}

    HatchDefinition read() {
        readBoundary();
        readPattern();
        return std::move(definition_);
    }

private:
    void readBoundary() {
        const long paths = cursor_.count(91);
        for (long p = 0; p < paths && cursor_.ok(); ++p) {
            HatchDefinition::Loop loop;
            loop.flags = static_cast<std::int32_t>(cursor_.count(92));
            if (!cursor_.ok()) break;
            if ((loop.flags & HatchDefinition::kPolylinePath) != 0)
                loop.points = readPolylinePath();
            else
                loop.points = readEdgePath();
            if (cursor_.at(97)) {
                const long sources = cursor_.count(97);
                for (long s = 0; s < sources && cursor_.ok(); ++s) {
                    if (cursor_.at(330))
                        cursor_.skip();
                    else
                        cursor_.number(330);  // fails: fewer references than counted
                }
            }
            if (!cursor_.ok()) break;
            tidy(loop.points);
            if (!loop.points.empty()) definition_.loops.push_back(std::move(loop));
        }
    }

    Polyline2d readPolylinePath() {
        cursor_.optionalNumber(72, 0);  // has bulges: the bulges say so themselves
        cursor_.optionalNumber(73, 1);  // closed: a boundary always is
        const long count = cursor_.count(93);
        struct Vertex {
            ge::Point2d point;
            double bulge;
        };
        std::vector<Vertex> vertices;
        for (long v = 0; v < count && cursor_.ok(); ++v) {
            const ge::Point2d p = cursor_.point(10, 20);
            vertices.push_back({p, cursor_.optionalNumber(42, 0.0)});
        }
        Polyline2d points;
        for (std::size_t v = 0; v < vertices.size() && cursor_.ok(); ++v) {
            const Vertex& from = vertices[v];
            const Vertex& to = vertices[(v + 1) % vertices.size()];
            const Polyline2d arc = flattenBulge(from.point, to.point, from.bulge, tolerance_);
            points.insert(points.end(), arc.begin(), arc.end() - 1);
        }
        return points;
    }

    Polyline2d readEdgePath() {
        const long edges = cursor_.count(93);
        std::vector<Polyline2d> pieces;
        for (long e = 0; e < edges && cursor_.ok(); ++e) {
            Polyline2d piece;
            switch (cursor_.count(72)) {
                case 1: {
                    const ge::Point2d a = cursor_.point(10, 20);
                    const ge::Point2d b = cursor_.point(11, 21);
                    piece = {a, b};
                    break;
                }
                case 2:
                    piece = readArcEdge();
                    break;
                case 3:
                    piece = readEllipseEdge();
                    break;
                case 4:
                    piece = readSplineEdge();
                    break;
                default:
                    cursor_.number(-1);  // fails: an edge type nobody defined
                    break;
            }
            if (cursor_.ok() && !piece.empty()) pieces.push_back(std::move(piece));
        }
        return chained(pieces);
    }

    Polyline2d readArcEdge() {
        const ge::Point2d center = cursor_.point(10, 20);
        const double radius = cursor_.number(40);
        const double start = cursor_.number(50);
        const double end = cursor_.number(51);
        const bool ccw = cursor_.optionalNumber(73, 1.0) != 0.0;
        double from = 0.0, to = 0.0;
        ccwRange(start, end, ccw, from, to);
        if (!cursor_.ok() || !(radius > 0.0)) return {};
        // A clockwise edge runs from the high end of its range to the low one.
        return ccw ? flattenEllipticalArc(center, {radius, 0.0}, 1.0, from * kDegree, to * kDegree,
                                          tolerance_)
                   : flattenEllipticalArc(center, {radius, 0.0}, 1.0, to * kDegree, from * kDegree,
                                          tolerance_);
    }

    Polyline2d readEllipseEdge() {
        const ge::Point2d center = cursor_.point(10, 20);
        const ge::Point2d major = cursor_.point(11, 21);
        const double ratio = cursor_.number(40);
        const double start = cursor_.number(50);
        const double end = cursor_.number(51);
        const bool ccw = cursor_.optionalNumber(73, 1.0) != 0.0;
        if (!cursor_.ok() || !(ratio > 0.0)) return {};
        double from = 0.0, to = 0.0;
        ccwRange(start, end, ccw, from, to);
        // The stored values are angles seen from the centre; the ellipse is drawn by its
        // parameter, which differs from the angle unless the ellipse is a circle.
        auto parameter = [&](double degrees) {
            return std::atan2(std::sin(degrees * kDegree) / ratio, std::cos(degrees * kDegree));
        };
        const double pFrom = parameter(from);
        double pTo = pFrom + 2.0 * std::numbers::pi;
        if (to - from < 360.0) {
            pTo = parameter(to);
            while (pTo < pFrom) pTo += 2.0 * std::numbers::pi;
        }
        return ccw ? flattenEllipticalArc(center, major, ratio, pFrom, pTo, tolerance_)
                   : flattenEllipticalArc(center, major, ratio, pTo, pFrom, tolerance_);
    }

    Polyline2d readSplineEdge() {
        const long degree = cursor_.count(94);
        const bool rational = cursor_.optionalNumber(73, 0.0) != 0.0;
        const bool periodic = cursor_.optionalNumber(74, 0.0) != 0.0;
        const long knotCount = cursor_.count(95);
        const long controlCount = cursor_.count(96);
        std::vector<double> knots;
        for (long k = 0; k < knotCount && cursor_.ok(); ++k) knots.push_back(cursor_.number(40));
        std::vector<ge::Point3d> controls;
        std::vector<double> weights;
        for (long c = 0; c < controlCount && cursor_.ok(); ++c) {
            controls.push_back(lifted(cursor_.point(10, 20)));
            if (cursor_.at(42)) weights.push_back(cursor_.number(42));
        }
        while (cursor_.at(42)) weights.push_back(cursor_.number(42));
        std::vector<ge::Point3d> fits;
        ge::Vector3d startTangent, endTangent;
        // 97 is also the path's count of source objects, which follows the last edge: it is
        // the fit count only when fit points or the tags after them follow.
        if (cursor_.at(97)) {
            const int next = cursor_.codeAfter();
            const bool zero = cursor_.current().value.find_first_not_of(" 0") == std::string::npos;
            if (next == 11 || (zero && (next == 97 || next == 72 || next == 12 || next == 13))) {
                const long fitCount = cursor_.count(97);
                for (long f = 0; f < fitCount && cursor_.ok(); ++f)
                    fits.push_back(lifted(cursor_.point(11, 21)));
            }
        }
        if (cursor_.at(12)) {
            const ge::Point2d t = cursor_.point(12, 22);
            startTangent = {t.x, t.y, 0.0};
        }
        if (cursor_.at(13)) {
            const ge::Point2d t = cursor_.point(13, 23);
            endTangent = {t.x, t.y, 0.0};
        }
        if (!cursor_.ok()) return {};

        std::vector<ge::Point3d> points;
        std::optional<NurbsCurve> curve;
        if (!controls.empty() && degree <= NurbsCurve::kMaxDegree)
            curve =
                NurbsCurve::fromControlPoints(static_cast<int>(degree), controls, knots,
                                              rational ? weights : std::vector<double>{}, periodic);
        if (!curve && fits.size() >= 2)
            curve = NurbsCurve::throughFitPoints(fits, startTangent, endTangent, false);
        if (curve)
            points = curve->flatten(tolerance_, 4096);
        else
            points = fits.size() >= 2 ? fits : controls;
        Polyline2d piece;
        for (const ge::Point3d& p : points) piece.push_back({p.x, p.y});
        return piece;
    }

    // The edges joined end to start. Edges are meant to follow one another, yet files turn
    // single edges round; each is taken in the direction that meets the loop so far. Where
    // two ends meet within the tolerance (an arc's computed end and a line's stored one) the
    // joint is one point, so no sliver of an edge is left for pattern lines to cross.
    Polyline2d chained(std::vector<Polyline2d>& pieces) const {
        Polyline2d loop;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            Polyline2d& piece = pieces[i];
            if (loop.empty()) {
                loop = std::move(piece);
                continue;
            }
            const double toStart = loop.back().distanceTo(piece.front());
            const double toEnd = loop.back().distanceTo(piece.back());
            if (i == 1) {
                // The first edge's direction is known only once the second meets it.
                const double fromFront = std::min(loop.front().distanceTo(piece.front()),
                                                  loop.front().distanceTo(piece.back()));
                if (fromFront < std::min(toStart, toEnd)) std::reverse(loop.begin(), loop.end());
            }
            if (loop.back().distanceTo(piece.back()) < loop.back().distanceTo(piece.front()))
                std::reverse(piece.begin(), piece.end());
            const bool joined = loop.back().distanceTo(piece.front()) <= joinGap();
            loop.insert(loop.end(), piece.begin() + (joined ? 1 : 0), piece.end());
        }
        return loop;
    }

    double joinGap() const { return tolerance_ > 0.0 ? tolerance_ : 0.0; }

    // No repeated points, no closing point, nothing that is not finite.
    void tidy(Polyline2d& points) const {
        Polyline2d kept;
        for (const ge::Point2d& p : points) {
            if (!std::isfinite(p.x) || !std::isfinite(p.y)) continue;
            if (!kept.empty() && kept.back().x == p.x && kept.back().y == p.y) continue;
            kept.push_back(p);
        }
        while (kept.size() > 1 && kept.back().distanceTo(kept.front()) <= joinGap())
            kept.pop_back();
        points = std::move(kept);
    }

    void readPattern() {
        // The codes of the pattern part appear nowhere in boundary paths, so after a damaged
        // boundary the part is found by its first code.
        std::size_t start = cursor_.index();
        while (start < tags_.size() && tags_[start].code != 75) ++start;
        cursor_.moveTo(start);
        while (!cursor_.atEnd() && cursor_.ok()) {
            switch (cursor_.current().code) {
                case 75:
                    definition_.style = static_cast<int>(cursor_.number(75));
                    break;
                case 41:
                    definition_.patternScale = cursor_.number(41);
                    if (!cursor_.ok()) {
                        definition_.patternScale = std::nan("");
                        cursor_.moveTo(cursor_.index() + 1);
                    }
                    break;
                case 78:
                    readPatternLines();
                    break;
                case 98:
                case 450:
                    return;  // seed points and the gradient: nothing to draw
                default:
                    cursor_.skip();
                    break;
            }
        }
    }

    void readPatternLines() {
        const long count = cursor_.count(78);
        std::vector<HatchDefinition::PatternLine> lines;
        for (long l = 0; l < count && cursor_.ok(); ++l) {
            HatchDefinition::PatternLine line;
            line.angle = cursor_.number(53);
            line.base = cursor_.point(43, 44);
            line.offset = cursor_.point(45, 46);
            const long dashes = cursor_.count(79);
            for (long d = 0; d < dashes && cursor_.ok(); ++d)
                line.dashes.push_back(cursor_.number(49));
            lines.push_back(std::move(line));
        }
        if (cursor_.ok()) {
            definition_.patternLines = std::move(lines);
        } else {
            definition_.patternReadable = false;
            cursor_.moveTo(tags_.size());
        }
    }

    TagCursor cursor_;
    const std::vector<db::RawTag>& tags_;
    double tolerance_;
    HatchDefinition definition_;
};

}  // namespace

HatchDefinition HatchDefinition::read(const std::vector<db::RawTag>& tags, double tolerance) {
    return Reader(tags, tolerance).read();
}

}  // namespace cad::gs
