// Sort-tile-recursive packing: entries sorted by x into vertical slices, each slice by y,
// then cut into nodes of kFanout; upper levels group consecutive nodes, which are already
// near each other.
#include "cad/gs/SpatialIndex.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace cad::gs {

namespace {

constexpr std::size_t kFanout = 16;

float down(double v) {
    if (v <= -FLT_MAX) return -FLT_MAX;
    if (v >= FLT_MAX) return FLT_MAX;
    float f = static_cast<float>(v);
    return f > v ? std::nextafter(f, -FLT_MAX) : f;
}

float up(double v) {
    if (v <= -FLT_MAX) return -FLT_MAX;
    if (v >= FLT_MAX) return FLT_MAX;
    float f = static_cast<float>(v);
    return f < v ? std::nextafter(f, FLT_MAX) : f;
}

}  // namespace

SpatialIndex::FloatBox SpatialIndex::outward(const Box2d& box) const {
    return {down(box.minX - originX_), down(box.minY - originY_), up(box.maxX - originX_), up(box.maxY - originY_)};
}

SpatialIndex::SpatialIndex(std::vector<Entry> entries) {
    std::erase_if(entries, [](const Entry& e) { return e.box.isEmpty(); });
    auto centreX = [](const Entry& e) { return e.box.minX + e.box.maxX; };
    auto centreY = [](const Entry& e) { return e.box.minY + e.box.maxY; };
    std::sort(entries.begin(), entries.end(),
              [&](const Entry& l, const Entry& r) { return centreX(l) < centreX(r); });
    const std::size_t leafCount = (entries.size() + kFanout - 1) / kFanout;
    const auto slices = static_cast<std::size_t>(std::ceil(std::sqrt(double(leafCount))));
    const std::size_t sliceSize = std::max<std::size_t>(1, slices) * kFanout;
    for (std::size_t begin = 0; begin < entries.size(); begin += sliceSize) {
        auto end = entries.begin() + static_cast<std::ptrdiff_t>(std::min(begin + sliceSize, entries.size()));
        std::sort(entries.begin() + static_cast<std::ptrdiff_t>(begin), end,
                  [&](const Entry& l, const Entry& r) { return centreY(l) < centreY(r); });
    }
    Box2d all;
    for (const Entry& e : entries) all.add(e.box);
    if (!all.isEmpty()) {
        originX_ = (all.minX + all.maxX) / 2;
        originY_ = (all.minY + all.maxY) / 2;
    }
    boxes_.reserve(entries.size());
    ids_.reserve(entries.size());
    for (const Entry& e : entries) {
        boxes_.push_back(outward(e.box));
        ids_.push_back(e.id);
    }
    if (boxes_.empty()) return;

    // Leaves over the entries, then levels over the nodes below until one node is left.
    auto group = [](const std::vector<FloatBox>& below) {
        std::vector<Node> level;
        level.reserve((below.size() + kFanout - 1) / kFanout);
        for (std::size_t first = 0; first < below.size(); first += kFanout) {
            const std::size_t count = std::min(kFanout, below.size() - first);
            FloatBox box = below[first];
            for (std::size_t i = first + 1; i < first + count; ++i) {
                box.minX = std::min(box.minX, below[i].minX);
                box.minY = std::min(box.minY, below[i].minY);
                box.maxX = std::max(box.maxX, below[i].maxX);
                box.maxY = std::max(box.maxY, below[i].maxY);
            }
            level.push_back({box, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count)});
        }
        return level;
    };
    levels_.push_back(group(boxes_));
    while (levels_.back().size() > 1) {
        std::vector<FloatBox> boxes;
        for (const Node& n : levels_.back()) boxes.push_back(n.box);
        levels_.push_back(group(boxes));
    }
}

void SpatialIndex::query(const Box2d& box, std::vector<std::uint32_t>& out) const {
    if (levels_.empty() || box.isEmpty()) return;
    const FloatBox b = outward(box);
    queryNode(levels_.size() - 1, 0, b, out);
}

void SpatialIndex::queryNode(std::size_t level, std::uint32_t node, const FloatBox& b,
                             std::vector<std::uint32_t>& out) const {
    const Node& n = levels_[level][node];
    if (n.box.minX > b.maxX || b.minX > n.box.maxX || n.box.minY > b.maxY || b.minY > n.box.maxY)
        return;
    if (level == 0) {
        for (std::uint32_t i = n.first; i < n.first + n.count; ++i) {
            const FloatBox& e = boxes_[i];
            if (e.minX <= b.maxX && b.minX <= e.maxX && e.minY <= b.maxY && b.minY <= e.maxY)
                out.push_back(ids_[i]);
        }
        return;
    }
    for (std::uint32_t child = n.first; child < n.first + n.count; ++child)
        queryNode(level - 1, child, b, out);
}

}  // namespace cad::gs
