// Pattern segments: a sweep across each family of lines with the boundary edges sorted by
// where they begin, so a hatch of many lines and many edges costs lines + edges + crossings,
// not lines times edges.
#include "cad/gs/geometry/PatternSegments.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cad::gs {

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

double dot(const ge::Point2d& a, const ge::Point2d& b) {
    return a.x * b.x + a.y * b.y;
}

// A boundary edge in the frame of one family: n across the lines, t along them.
struct Edge {
    double n0, t0, n1, t1;
    double nMin() const { return std::min(n0, n1); }
    double nMax() const { return std::max(n0, n1); }
};

// One family of lines in its own frame: line k lies at `across` = first + k * spacing and
// its dashes start at `along` = origin + k * shift.
struct Family {
    ge::Point2d direction, normal;
    double first = 0.0, spacing = 0.0, origin = 0.0, shift = 0.0;
    long lowest = 0, highest = -1;  // the lines that cross the boundary's extents
};

class Generator {
public:
    Generator(const HatchDefinition::PatternLine& line, double dotLength, std::size_t maxSegments,
              std::vector<Segment2d>& out)
        : line_(line), dotLength_(dotLength), maxSegments_(maxSegments), out_(out) {}

    // False when the dashes would pass the budget; what was added is then to be dropped.
    bool run(const Family& family, const std::vector<const Polyline2d*>& loops) {
        family_ = family;
        std::vector<Edge> edges;
        for (const Polyline2d* loop : loops) {
            for (std::size_t i = 0; i < loop->size(); ++i) {
                const ge::Point2d& p = (*loop)[i];
                const ge::Point2d& q = (*loop)[(i + 1) % loop->size()];
                const Edge edge{dot(p, family.normal), dot(p, family.direction),
                                dot(q, family.normal), dot(q, family.direction)};
                if (edge.n0 != edge.n1) edges.push_back(edge);
            }
        }
        std::sort(edges.begin(), edges.end(),
                  [](const Edge& a, const Edge& b) { return a.nMin() < b.nMin(); });

        std::vector<std::size_t> active;
        std::vector<double> crossings;
        std::size_t next = 0;
        const long count = family.highest - family.lowest + 1;
        for (long j = 0; j < count; ++j) {
            // Lines are visited in increasing `across`, whichever way the offset points.
            const long k = family.spacing > 0.0 ? family.lowest + j : family.highest - j;
            const double across = family.first + double(k) * family.spacing;
            while (next < edges.size() && edges[next].nMin() <= across) active.push_back(next++);
            crossings.clear();
            for (std::size_t a = 0; a < active.size();) {
                const Edge& e = edges[active[a]];
                if (e.nMax() < across) {
                    active[a] = active.back();
                    active.pop_back();
                    continue;
                }
                // Half-open, so a line through a vertex counts the two edges there once.
                if ((e.n0 <= across) != (e.n1 <= across))
                    crossings.push_back(e.t0 + (across - e.n0) / (e.n1 - e.n0) * (e.t1 - e.t0));
                ++a;
            }
            std::sort(crossings.begin(), crossings.end());
            const double origin = family.origin + double(k) * family.shift;
            for (std::size_t c = 0; c + 1 < crossings.size(); c += 2)
                if (!addDashes(across, origin, crossings[c], crossings[c + 1])) return false;
        }
        return true;
    }

private:
    void add(double across, double from, double to) {
        const Family& f = family_;
        out_.push_back(
            {{f.direction.x * from + f.normal.x * across,
              f.direction.y * from + f.normal.y * across},
             {f.direction.x * to + f.normal.x * across, f.direction.y * to + f.normal.y * across}});
    }

    bool addDashes(double across, double origin, double from, double to) {
        if (!(from < to)) return true;  // a line grazing a vertex
        double period = 0.0;
        for (double dash : line_.dashes) period += std::abs(dash);
        if (line_.dashes.empty() || !(period > 0.0)) {
            if (out_.size() >= maxSegments_) return false;
            add(across, from, to);
            return true;
        }
        if (period < (std::abs(from) + std::abs(to)) * 1e-12) {
            // Dashes finer than the numbers can place: the line looks continuous anyway.
            if (out_.size() >= maxSegments_) return false;
            add(across, from, to);
            return true;
        }
        const double estimate = ((to - from) / period + 2.0) * double(line_.dashes.size());
        if (!(double(out_.size()) + estimate <= double(maxSegments_))) return false;
        // The pattern starts at the line's own origin, wherever the boundary cuts the line.
        double phase = std::fmod(from - origin, period);
        if (phase < 0.0) phase += period;
        double at = from - phase;
        for (double cycles = 0.0; at < to && cycles <= estimate; ++cycles) {
            for (double dash : line_.dashes) {
                if (dash > 0.0) {
                    const double lo = std::max(at, from), hi = std::min(at + dash, to);
                    if (lo < hi) add(across, lo, hi);
                } else if (dash == 0.0 && at >= from && at <= to) {
                    add(across, at, std::min(at + dotLength_, to));
                }
                at += std::abs(dash);
                if (at >= to) break;
            }
        }
        return true;
    }

    const HatchDefinition::PatternLine& line_;
    double dotLength_;
    std::size_t maxSegments_;
    std::vector<Segment2d>& out_;
    Family family_;
};

}  // namespace

std::vector<Segment2d> patternSegments(const std::vector<HatchDefinition::PatternLine>& lines,
                                       const std::vector<const Polyline2d*>& loops,
                                       double dotLength, std::size_t maxSegments) {
    double minX = INFINITY, minY = INFINITY, maxX = -INFINITY, maxY = -INFINITY;
    for (const Polyline2d* loop : loops)
        for (const ge::Point2d& p : *loop) {
            minX = std::min(minX, p.x);
            minY = std::min(minY, p.y);
            maxX = std::max(maxX, p.x);
            maxY = std::max(maxY, p.y);
        }
    if (lines.empty() || !(minX <= maxX && minY <= maxY)) return {};
    const double size = std::max(
        {maxX - minX, maxY - minY, std::abs(minX), std::abs(maxX), std::abs(minY), std::abs(maxY)});

    // Every family's line count first: a pattern far too dense for its boundary is refused
    // before a single line is cut.
    std::vector<Family> families;
    double lineCount = 0.0;
    for (const HatchDefinition::PatternLine& line : lines) {
        Family f;
        const double angle = line.angle * kDegree;
        f.direction = {std::cos(angle), std::sin(angle)};
        f.normal = {-f.direction.y, f.direction.x};
        f.spacing = dot(line.offset, f.normal);
        f.shift = dot(line.offset, f.direction);
        f.first = dot(line.base, f.normal);
        f.origin = dot(line.base, f.direction);
        if (!(std::abs(f.spacing) > size * 1e-12) || !std::isfinite(f.spacing)) return {};
        double lowest = INFINITY, highest = -INFINITY;
        for (const Polyline2d* loop : loops)
            for (const ge::Point2d& p : *loop) {
                const double across = dot(p, f.normal);
                lowest = std::min(lowest, across);
                highest = std::max(highest, across);
            }
        double kLow = std::ceil((lowest - f.first) / f.spacing);
        double kHigh = std::floor((highest - f.first) / f.spacing);
        if (f.spacing < 0.0) {
            kLow = std::ceil((highest - f.first) / f.spacing);
            kHigh = std::floor((lowest - f.first) / f.spacing);
        }
        // Line numbers beyond this mean a base point absurdly far from the boundary.
        if (!(std::abs(kLow) < 1e15 && std::abs(kHigh) < 1e15)) return {};
        const double count = std::max(0.0, kHigh - kLow + 1.0);
        lineCount += count;
        if (lineCount > double(maxSegments)) return {};
        if (count > 0.0) {
            f.lowest = static_cast<long>(kLow);
            f.highest = static_cast<long>(kHigh);
        }
        families.push_back(f);
    }

    std::vector<Segment2d> segments;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Generator generator(lines[i], dotLength, maxSegments, segments);
        if (!generator.run(families[i], loops)) return {};
    }
    return segments;
}

}  // namespace cad::gs
