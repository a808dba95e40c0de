// Picking by drawn geometry.
#include "cad/gs/EntityPicker.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/ItemSegments.h"

namespace cad::gs {

namespace {

// Whether the segment meets the box (Liang-Barsky clipping).
bool crosses(const Segment& s, const Box2d& box) {
    double t0 = 0.0, t1 = 1.0;
    const double d[2] = {s.b.x - s.a.x, s.b.y - s.a.y};
    const double p[2] = {s.a.x, s.a.y};
    const double lo[2] = {box.minX, box.minY}, hi[2] = {box.maxX, box.maxY};
    for (int axis = 0; axis < 2; ++axis) {
        if (d[axis] == 0.0) {
            if (p[axis] < lo[axis] || p[axis] > hi[axis]) return false;
            continue;
        }
        double a = (lo[axis] - p[axis]) / d[axis], b = (hi[axis] - p[axis]) / d[axis];
        if (a > b) std::swap(a, b);
        t0 = std::max(t0, a);
        t1 = std::min(t1, b);
        if (t0 > t1) return false;
    }
    return true;
}

// Whether `p` lies inside the rings of a filled item, by the even-odd rule.
bool insideFill(const DisplayList& list, const DisplayItem& item, const ge::Point2d& p) {
    bool inside = false;
    const auto& points = list.points();
    for (std::uint32_t r = item.first; r < item.first + item.count; ++r) {
        const Ring& ring = list.rings()[r];
        for (std::uint32_t i = 0, j = ring.count - 1; i < ring.count; j = i++) {
            const ge::Point2d& a = points[ring.first + i];
            const ge::Point2d& b = points[ring.first + j];
            if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
                inside = !inside;
        }
    }
    return inside;
}

bool insideText(const DisplayList& list, const DisplayItem& item, const ge::Point2d& p) {
    const auto& box = list.texts()[item.first].box;
    bool inside = false;
    for (std::size_t i = 0, j = box.size() - 1; i < box.size(); j = i++) {
        const QPointF& a = box[i];
        const QPointF& b = box[j];
        if ((a.y() > p.y) != (b.y() > p.y) && p.x < (b.x() - a.x()) * (p.y - a.y()) / (b.y() - a.y()) + a.x())
            inside = !inside;
    }
    return inside;
}

}  // namespace

EntityPicker::EntityPicker(DrawingScene& scene, db::ObjectId block) : scene_(scene), block_(block) {}

bool EntityPicker::pickable(const DisplayList& list, const DisplayItem& item) const {
    if (item.flags & DisplayItem::kAttributeDefinition) return false;
    const auto& layers = scene_.styles().layers();
    const std::int32_t layer = list.look(item.look).layer;
    return layer < 0 || static_cast<std::size_t>(layer) >= layers.size() ||
           layers[static_cast<std::size_t>(layer)].visible;
}

std::vector<db::ObjectId> EntityPicker::entitiesAt(const ge::Point2d& point, double radius) const {
    const DisplayList& list = scene_.blockList(block_);
    std::vector<std::uint32_t> hits;
    list.query(Box2d{point.x - radius, point.y - radius, point.x + radius, point.y + radius}, hits);
    struct Hit {
        db::ObjectId entity;
        double distance;
        std::uint32_t order;
    };
    std::vector<Hit> found;
    std::unordered_map<db::ObjectId, std::size_t> where;
    const double tolerance = std::max(radius / 8.0, 1e-12);
    for (std::uint32_t index : hits) {
        const DisplayItem& item = list.items()[index];
        if (!pickable(list, item)) continue;
        double best = 1e300;
        if ((item.kind == ItemKind::Fill && insideFill(list, item, point)) ||
            (item.kind == ItemKind::Text && insideText(list, item, point))) {
            best = 0.0;
        } else {
            forEachSegment(scene_, list, item, Affine2d{}, tolerance, [&](const Segment& s) {
                best = std::min(best, distanceTo(s, point));
                return best > 0.0;
            });
        }
        if (!(best <= radius)) continue;
        auto [it, added] = where.emplace(item.entity, found.size());
        if (added)
            found.push_back({item.entity, best, index});
        else if (best <= found[it->second].distance)
            found[it->second] = {item.entity, best, index};
    }
    std::sort(found.begin(), found.end(), [](const Hit& a, const Hit& b) {
        return a.distance != b.distance ? a.distance < b.distance : a.order > b.order;
    });
    std::vector<db::ObjectId> out;
    for (const Hit& hit : found) out.push_back(hit.entity);
    return out;
}

std::vector<db::ObjectId> EntityPicker::entitiesIn(const Box2d& box, bool crossing) const {
    const DisplayList& list = scene_.blockList(block_);
    std::vector<std::uint32_t> hits;
    list.query(box, hits);
    // An entity is inside when each of its items is; it crosses when one of them does.
    struct State {
        bool inside = true, crossing = false;
        std::uint32_t order = 0;
    };
    std::unordered_map<db::ObjectId, State> states;
    for (std::uint32_t index : hits) {
        const DisplayItem& item = list.items()[index];
        if (!pickable(list, item)) continue;
        State& state = states[item.entity];
        state.order = index;
        const bool whollyInside = !(item.flags & DisplayItem::kInfiniteBounds) && box.contains(item.bounds);
        state.inside = state.inside && whollyInside;
        if (crossing && !state.crossing)
            state.crossing = whollyInside || !forEachSegment(scene_, list, item, Affine2d{}, box.width() / 1e4 + 1e-12,
                                                             [&](const Segment& s) { return !crosses(s, box); });
    }
    // Items outside the box were not visited: an entity with one of them is not wholly inside.
    if (!crossing)
        for (const DisplayItem& item : list.items()) {
            auto it = states.find(item.entity);
            if (it != states.end() && !item.bounds.intersects(box)) it->second.inside = false;
        }
    std::vector<std::pair<std::uint32_t, db::ObjectId>> ordered;
    for (const auto& [entity, state] : states)
        if (crossing ? state.crossing : state.inside) ordered.push_back({state.order, entity});
    std::sort(ordered.begin(), ordered.end());
    std::vector<db::ObjectId> out;
    for (const auto& entry : ordered) out.push_back(entry.second);
    return out;
}

}  // namespace cad::gs
