// Hatch: the declared head of AcDbHatch, and a reader of the kept definition that finds the
// tags holding geometry (points, vectors, lengths, angles, bulges, arc and ellipse edges) so
// transforms rewrite them in place and extents can be measured.
#include "cad/db/Hatch.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "cad/db/BulgedPath.h"
#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/EllipticalArc.h"
#include "cad/db/PlaneMapping.h"
#include "cad/db/dxf/Tag.h"

namespace cad::db {

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

// An x tag and its y tag.
struct Pair {
    std::size_t x = kNone;
    std::size_t y = kNone;
};

struct ArcEdge {
    Pair center;
    std::size_t radius, start, end, ccw;
};

struct EllipseEdge {
    Pair center, axis;
    std::size_t ratio, start, end, ccw;
};

struct Loop {
    std::vector<Pair> vertices;
    std::vector<std::size_t> bulges;  // kNone where a vertex has none
    bool closed = true;
};

// Where the geometry sits in a hatch definition. Counts are never trusted beyond the tags
// there are: reading stops at the first tag out of place.
class DefinitionLayout {
public:
    explicit DefinitionLayout(const std::vector<RawTag>& tags) : tags_(tags) { read(); }

    bool ok() const { return ok_; }
    double number(std::size_t index) const { return value(index).value_or(0.0); }

    std::vector<Pair> boundaryPoints;     // line ends, spline control and fit points
    std::vector<Pair> placedPoints;       // seeds, pattern base points: moved, not measured
    std::vector<Pair> vectors;            // pattern offsets, spline tangents
    std::vector<std::size_t> lengths;     // pattern scale and dashes
    std::vector<std::size_t> directions;  // angles of directions in degrees: 52, 53
    std::vector<Loop> loops;
    std::vector<ArcEdge> arcs;
    std::vector<EllipseEdge> ellipses;

private:
    std::optional<double> value(std::size_t index) const {
        if (index >= tags_.size()) return std::nullopt;
        return dxf::toDouble(dxf::Tag{tags_[index].code, tags_[index].value, 0});
    }
    bool at(int code) const { return ok_ && i_ < tags_.size() && tags_[i_].code == code; }
    std::size_t take(int code) {
        if (!at(code)) {
            ok_ = false;
            return kNone;
        }
        return i_++;
    }
    Pair takePair(int xCode, int yCode) {
        Pair pair;
        pair.x = take(xCode);
        pair.y = take(yCode);
        return pair;
    }
    long count(int code) {
        const std::optional<double> n = value(take(code));
        if (!ok_ || !n || *n < 0.0) {
            ok_ = false;
            return 0;
        }
        return static_cast<long>(*n);
    }

    void read() {
        const long paths = count(91);
        for (long p = 0; p < paths && ok_; ++p) {
            const long flags = count(92);
            if ((flags & 2) != 0)
                readPolylinePath();
            else
                readEdgePath();
            if (at(97)) {
                const long sources = count(97);
                for (long s = 0; s < sources && ok_; ++s) take(330);
            }
        }
        take(75);
        take(76);
        if (at(52)) directions.push_back(take(52));
        if (at(41)) lengths.push_back(take(41));
        if (at(77)) take(77);
        if (at(78)) {
            const long lines = count(78);
            for (long l = 0; l < lines && ok_; ++l) {
                directions.push_back(take(53));
                placedPoints.push_back(takePair(43, 44));
                vectors.push_back(takePair(45, 46));
                const long dashes = count(79);
                for (long d = 0; d < dashes && ok_; ++d) lengths.push_back(take(49));
            }
        }
        if (at(47)) take(47);
        if (at(98)) {
            const long seeds = count(98);
            for (long s = 0; s < seeds && ok_; ++s) placedPoints.push_back(takePair(10, 20));
        }
        // What follows (gradient) holds no geometry.
    }

    void readPolylinePath() {
        take(72);  // has bulges
        Loop loop;
        loop.closed = count(73) != 0;
        const long vertices = count(93);
        for (long v = 0; v < vertices && ok_; ++v) {
            loop.vertices.push_back(takePair(10, 20));
            loop.bulges.push_back(at(42) ? take(42) : kNone);
        }
        loops.push_back(std::move(loop));
    }

    void readEdgePath() {
        const long edges = count(93);
        for (long e = 0; e < edges && ok_; ++e) {
            switch (count(72)) {
                case 1:
                    boundaryPoints.push_back(takePair(10, 20));
                    boundaryPoints.push_back(takePair(11, 21));
                    break;
                case 2: {
                    ArcEdge arc{};
                    arc.center = takePair(10, 20);
                    arc.radius = take(40);
                    arc.start = take(50);
                    arc.end = take(51);
                    arc.ccw = take(73);
                    arcs.push_back(arc);
                    break;
                }
                case 3: {
                    EllipseEdge ellipse{};
                    ellipse.center = takePair(10, 20);
                    ellipse.axis = takePair(11, 21);
                    ellipse.ratio = take(40);
                    ellipse.start = take(50);
                    ellipse.end = take(51);
                    ellipse.ccw = take(73);
                    ellipses.push_back(ellipse);
                    break;
                }
                case 4:
                    readSplineEdge();
                    break;
                default:
                    ok_ = false;
                    break;
            }
        }
    }

    void readSplineEdge() {
        take(94);
        take(73);
        take(74);
        const long knots = count(95);
        const long controls = count(96);
        for (long k = 0; k < knots && ok_; ++k) take(40);
        for (long c = 0; c < controls && ok_; ++c) {
            boundaryPoints.push_back(takePair(10, 20));
            if (at(42)) take(42);
        }
        while (at(42)) take(42);
        if (at(97)) {
            const long fits = count(97);
            for (long f = 0; f < fits && ok_; ++f) boundaryPoints.push_back(takePair(11, 21));
        }
        if (at(12)) vectors.push_back(takePair(12, 22));
        if (at(13)) vectors.push_back(takePair(13, 23));
    }

    const std::vector<RawTag>& tags_;
    std::size_t i_ = 0;
    bool ok_ = true;
};

std::string numberText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// Clockwise arc and ellipse edges are stored with complementary angles (360 - angle) in the
// reverse order; this is the counter-clockwise range they cover, in degrees.
void ccwRange(double start, double end, bool ccw, double& from, double& to) {
    from = ccw ? start : 360.0 - end;
    to = ccw ? end : 360.0 - start;
    if (to < from) to += 360.0;
}

}  // namespace

ErrorStatus Hatch::setPatternName(std::string name) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    patternName_ = std::move(name);
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::setSolidFill(bool solid) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    solidFill_ = solid ? 1 : 0;
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::setAssociative(bool associative) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    associative_ = associative ? 1 : 0;
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::setElevation(double elevation) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    elevation_ = elevation;
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::setDefinitionTags(std::vector<RawTag> tags) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    definition_ = std::move(tags);
    return ErrorStatus::eOk;
}

void Hatch::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbHatch");
    ge::Point3d elevation(0.0, 0.0, elevation_);
    filer.point(10, elevation);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    filer.string(2, patternName_);
    filer.int16(70, solidFill_);
    filer.int16(71, associative_);
    filer.rawTags(definition_);
    if (filer.isReading()) elevation_ = elevation.z;
}

ErrorStatus Hatch::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    if (!mapping.isUniform()) return ErrorStatus::eNotApplicable;
    const DefinitionLayout layout(definition_);
    if (!layout.ok()) return ErrorStatus::eNotApplicable;

    std::vector<RawTag> moved = definition_;
    auto set = [&](std::size_t index, double value) { moved[index].value = numberText(value); };
    auto movePair = [&](const Pair& pair, bool isPoint) {
        const double x = layout.number(pair.x), y = layout.number(pair.y);
        const ge::Point3d p = isPoint ? mapping.mapPoint({x, y, elevation_})
                                      : ge::Point3d::kOrigin + mapping.mapVector({x, y, 0.0});
        set(pair.x, p.x);
        set(pair.y, p.y);
    };
    auto mapDegrees = [&](double degrees) {
        return degreesFromRadians(mapping.mapAngle(radiansFromDegrees(degrees)));
    };

    for (const Pair& p : layout.boundaryPoints) movePair(p, true);
    for (const Pair& p : layout.placedPoints) movePair(p, true);
    for (const Pair& v : layout.vectors) movePair(v, false);
    for (std::size_t i : layout.lengths) set(i, layout.number(i) * mapping.scale());
    for (std::size_t i : layout.directions) set(i, mapDegrees(layout.number(i)));
    for (const Loop& loop : layout.loops) {
        for (const Pair& p : loop.vertices) movePair(p, true);
        for (std::size_t i : loop.bulges) {
            if (i != kNone && mapping.isMirror()) set(i, -layout.number(i));
        }
    }
    for (const ArcEdge& arc : layout.arcs) {
        movePair(arc.center, true);
        set(arc.radius, layout.number(arc.radius) * mapping.scale());
        const bool ccw = layout.number(arc.ccw) != 0.0;
        double from = 0.0, to = 0.0;
        ccwRange(layout.number(arc.start), layout.number(arc.end), ccw, from, to);
        const bool full = to - from >= 360.0 - 1e-9;
        // A mirror reverses the range's sense, and with it the edge's direction.
        double newFrom = mapDegrees(mapping.isMirror() ? to : from);
        double newTo = full ? newFrom + 360.0 : mapDegrees(mapping.isMirror() ? from : to);
        if (newTo < newFrom) newTo += 360.0;
        const bool newCcw = ccw != mapping.isMirror();
        set(arc.start, newCcw ? newFrom : 360.0 - newTo);
        set(arc.end, newCcw ? newTo : 360.0 - newFrom);
        moved[arc.ccw].value = newCcw ? "1" : "0";
    }
    for (const EllipseEdge& ellipse : layout.ellipses) {
        movePair(ellipse.center, true);
        movePair(ellipse.axis, false);
        // Parameters run from the major axis, which moves along; a mirror names the points by
        // the negated parameters and reverses the direction, which the stored (complementary
        // for clockwise) values already express once the flag is flipped.
        if (mapping.isMirror())
            moved[ellipse.ccw].value = layout.number(ellipse.ccw) != 0.0 ? "0" : "1";
    }

    definition_ = std::move(moved);
    elevation_ = mapping.mapPoint({0.0, 0.0, elevation_}).z;
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Hatch::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    const DefinitionLayout layout(definition_);
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
    auto point = [&](const Pair& p) {
        return ge::Point3d(layout.number(p.x), layout.number(p.y), elevation_);
    };
    for (const Pair& p : layout.boundaryPoints) extents.addPoint(toWorld * point(p));
    for (const Loop& loop : layout.loops) {
        BulgedPath outline;
        outline.closed = loop.closed;
        for (std::size_t v = 0; v < loop.vertices.size(); ++v) {
            const std::size_t b = loop.bulges[v];
            outline.vertices.push_back(
                {point(loop.vertices[v]), b == kNone ? 0.0 : layout.number(b)});
        }
        outline.addToExtents(extents, toWorld);
    }
    for (const ArcEdge& edge : layout.arcs) {
        double from = 0.0, to = 0.0;
        ccwRange(layout.number(edge.start), layout.number(edge.end), layout.number(edge.ccw) != 0.0,
                 from, to);
        const double r = layout.number(edge.radius);
        EllipticalArc arc;
        arc.center = point(edge.center);
        arc.u = {r, 0.0, 0.0};
        arc.v = {0.0, r, 0.0};
        arc.start = radiansFromDegrees(from);
        arc.end = radiansFromDegrees(to);
        arc.transformBy(toWorld);
        arc.addToExtents(extents);
    }
    for (const EllipseEdge& edge : layout.ellipses) {
        double from = 0.0, to = 0.0;
        ccwRange(layout.number(edge.start), layout.number(edge.end), layout.number(edge.ccw) != 0.0,
                 from, to);
        const ge::Vector3d axis(layout.number(edge.axis.x), layout.number(edge.axis.y), 0.0);
        EllipticalArc arc;
        arc.center = point(edge.center);
        arc.u = axis;
        arc.v = ge::Vector3d(-axis.y, axis.x, 0.0) * layout.number(edge.ratio);
        arc.start = radiansFromDegrees(from);
        arc.end = radiansFromDegrees(to);
        arc.transformBy(toWorld);
        arc.addToExtents(extents);
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
