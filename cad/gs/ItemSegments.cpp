// Items cut into segments.
#include "cad/gs/ItemSegments.h"

#include <algorithm>
#include <cmath>

#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"

namespace cad::gs {

namespace {

constexpr int kMaxDepth = 16;
constexpr std::size_t kMaxConicSteps = 4096;
constexpr std::int64_t kMaxCells = 10'000;
// An infinite line is measured along this much of its length each way.
constexpr double kFarAway = 1e12;

bool finite(const ge::Point2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

}  // namespace

double distanceTo(const Segment& s, const ge::Point2d& p) {
    const ge::Point2d n = nearestOn(s, p);
    return std::hypot(p.x - n.x, p.y - n.y);
}

ge::Point2d nearestOn(const Segment& s, const ge::Point2d& p) {
    const double dx = s.b.x - s.a.x, dy = s.b.y - s.a.y;
    const double length2 = dx * dx + dy * dy;
    if (!(length2 > 0.0)) return s.a;
    const double t = std::clamp(((p.x - s.a.x) * dx + (p.y - s.a.y) * dy) / length2, 0.0, 1.0);
    return {s.a.x + dx * t, s.a.y + dy * t};
}

bool forEachSegment(DrawingScene& scene, const DisplayList& list, const DisplayItem& item,
                    const Affine2d& toTarget, double tolerance,
                    const std::function<bool(const Segment&)>& out, int depth) {
    const auto& points = list.points();
    auto send = [&](const ge::Point2d& a, const ge::Point2d& b) {
        const Segment s{toTarget.map(a), toTarget.map(b)};
        return !(finite(s.a) && finite(s.b)) || out(s);
    };
    auto ring = [&](std::uint32_t first, std::uint32_t count, bool closed) {
        for (std::uint32_t i = 0; i + 1 < count; ++i)
            if (!send(points[first + i], points[first + i + 1])) return false;
        if (count == 1) return send(points[first], points[first]);
        return !closed || count < 3 || send(points[first + count - 1], points[first]);
    };
    switch (item.kind) {
    case ItemKind::Polyline: return ring(item.first, item.count, item.flags & DisplayItem::kClosed);
    case ItemKind::Point: return ring(item.first, 1, false);
    case ItemKind::Segments:
        for (std::uint32_t i = 0; i + 1 < item.count; i += 2)
            if (!send(points[item.first + i], points[item.first + i + 1])) return false;
        return true;
    case ItemKind::Fill:
    case ItemKind::Background:
        for (std::uint32_t r = item.first; r < item.first + item.count; ++r) {
            const Ring& rg = list.rings()[r];
            if (!ring(rg.first, rg.count, true)) return false;
        }
        return true;
    case ItemKind::Text: {
        const auto& box = list.texts()[item.first].box;
        for (std::size_t i = 0; i < box.size(); ++i) {
            const QPointF& a = box[i];
            const QPointF& b = box[(i + 1) % box.size()];
            if (!send({a.x(), a.y()}, {b.x(), b.y()})) return false;
        }
        return true;
    }
    case ItemKind::Conic: {
        const Conic& c = list.conics()[item.first];
        const double radius = std::max(std::hypot(c.u.x, c.u.y), std::hypot(c.v.x, c.v.y)) * toTarget.maxScale();
        const double sweep = std::min(c.end - c.start, 2.0 * M_PI);
        const double step = radius > tolerance ? 2.0 * std::acos(1.0 - tolerance / radius) : 1.0;
        const std::size_t steps = std::clamp<std::size_t>(
            static_cast<std::size_t>(std::ceil(sweep / std::max(step, 1e-9))), 4, kMaxConicSteps);
        auto at = [&](std::size_t i) {
            const double t = c.start + sweep * double(i) / double(steps);
            return ge::Point2d{c.centre.x + c.u.x * std::cos(t) + c.v.x * std::sin(t),
                               c.centre.y + c.u.y * std::cos(t) + c.v.y * std::sin(t)};
        };
        for (std::size_t i = 0; i < steps; ++i)
            if (!send(at(i), at(i + 1))) return false;
        return true;
    }
    case ItemKind::InfiniteLine: {
        const InfiniteLine& line = list.infiniteLines()[item.first];
        const double length = std::hypot(line.direction.x, line.direction.y);
        if (!(length > 0.0)) return true;
        const double k = kFarAway / length;
        const ge::Point2d far{line.base.x + line.direction.x * k, line.base.y + line.direction.y * k};
        const ge::Point2d back = line.ray ? line.base
                                          : ge::Point2d{line.base.x - line.direction.x * k, line.base.y - line.direction.y * k};
        return send(back, far);
    }
    case ItemKind::Viewport: return true;  // its border is an item of its own
    case ItemKind::Insert: {
        if (depth >= kMaxDepth) return true;
        const InsertRef& insert = list.inserts()[item.first];
        const DisplayList& block = scene.blockList(insert.block);
        if (std::int64_t(insert.columns) * insert.rows > kMaxCells) return true;
        for (std::int32_t row = 0; row < insert.rows; ++row)
            for (std::int32_t column = 0; column < insert.columns; ++column) {
                const Affine2d map = toTarget * insert.cell(row, column);
                for (const DisplayItem& inner : block.items()) {
                    if (inner.flags & DisplayItem::kAttributeDefinition) continue;
                    if (!forEachSegment(scene, block, inner, map, tolerance, out, depth + 1)) return false;
                }
            }
        return true;
    }
    }
    return true;
}

}  // namespace cad::gs
