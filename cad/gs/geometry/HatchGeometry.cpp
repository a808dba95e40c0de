// Hatch geometry: the definition read and flattened in the hatch's object coordinates, the
// loops chosen by the island style, the pattern cut there, and everything placed in the world.
#include "cad/gs/geometry/HatchGeometry.h"

#include <algorithm>
#include <cmath>

#include "cad/gs/geometry/HatchDefinition.h"
#include "cad/gs/geometry/PatternSegments.h"

namespace cad::gs {

namespace {

bool contains(const Polyline2d& loop, const ge::Point2d& p) {
    bool in = false;
    for (std::size_t i = 0, j = loop.size() - 1; i < loop.size(); j = i++) {
        const ge::Point2d& a = loop[i];
        const ge::Point2d& b = loop[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            in = !in;
    }
    return in;
}

// How many other loops hold each loop: 0 for an outer loop, 1 for an island in it, ...
std::vector<int> nestingDepths(const std::vector<HatchDefinition::Loop>& loops) {
    std::vector<int> depths(loops.size(), 0);
    for (std::size_t i = 0; i < loops.size(); ++i)
        for (std::size_t j = 0; j < loops.size(); ++j)
            if (i != j && loops[j].points.size() >= 3 &&
                contains(loops[j].points, loops[i].points.front()))
                ++depths[i];
    return depths;
}

// The loops the style lets take part. The path flags say which loops are outer and which
// are the outermost islands; drawings whose flags say neither are judged by nesting.
std::vector<std::size_t> takingPart(const HatchDefinition& definition) {
    const auto& loops = definition.loops;
    std::vector<std::size_t> chosen;
    const int style = definition.style;
    if (style != HatchDefinition::kOutermostStyle && style != HatchDefinition::kIgnoreStyle) {
        for (std::size_t i = 0; i < loops.size(); ++i) chosen.push_back(i);
        return chosen;
    }
    auto any = [&](std::int32_t flag) {
        return std::any_of(loops.begin(), loops.end(),
                           [&](const HatchDefinition::Loop& l) { return (l.flags & flag) != 0; });
    };
    const std::int32_t wanted =
        style == HatchDefinition::kOutermostStyle
            ? HatchDefinition::kExternalPath | HatchDefinition::kOutermostPath
            : HatchDefinition::kExternalPath;
    if (any(HatchDefinition::kExternalPath)) {
        for (std::size_t i = 0; i < loops.size(); ++i)
            if ((loops[i].flags & wanted) != 0) chosen.push_back(i);
        return chosen;
    }
    const int deepest = style == HatchDefinition::kOutermostStyle ? 1 : 0;
    const std::vector<int> depths = nestingDepths(loops);
    for (std::size_t i = 0; i < loops.size(); ++i)
        if (depths[i] <= deepest) chosen.push_back(i);
    return chosen;
}

}  // namespace

HatchGeometry hatchGeometry(const db::Hatch& hatch, double tolerance, std::size_t maxSegments) {
    if (!(tolerance > 0.0) || !std::isfinite(tolerance)) {
        db::Extents3d extents;
        double size = 0.0;
        if (hatch.getGeomExtents(extents) == ErrorStatus::eOk && !extents.isEmpty())
            size = std::max(extents.maxPoint.x - extents.minPoint.x,
                            extents.maxPoint.y - extents.minPoint.y);
        tolerance = std::isfinite(size) && size > 0.0 ? size * 1e-4 : 1e-6;
    }
    const HatchDefinition definition = HatchDefinition::read(hatch.definitionTags(), tolerance);
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(hatch.normal());
    const double elevation = std::isfinite(hatch.elevation()) ? hatch.elevation() : 0.0;
    auto world = [&](const ge::Point2d& p) {
        const ge::Point3d w = toWorld * ge::Point3d(p.x, p.y, elevation);
        return ge::Point2d{w.x, w.y};
    };

    HatchGeometry geometry;
    geometry.solid = hatch.isSolidFill();
    std::vector<const Polyline2d*> parts;
    for (std::size_t i : takingPart(definition)) {
        const Polyline2d& loop = definition.loops[i].points;
        if (loop.size() < 2) continue;
        if (loop.size() >= 3) parts.push_back(&loop);  // two points enclose nothing to hatch
        Polyline2d placed;
        placed.reserve(loop.size());
        for (const ge::Point2d& p : loop) placed.push_back(world(p));
        geometry.loops.push_back(std::move(placed));
    }
    const double scale = definition.patternScale;
    if (geometry.solid || !definition.patternReadable || !(scale > 0.0) || !std::isfinite(scale))
        return geometry;
    geometry.segments = patternSegments(definition.patternLines, parts, tolerance, maxSegments);
    for (Segment2d& s : geometry.segments) s = {world(s.start), world(s.end)};
    return geometry;
}

}  // namespace cad::gs
