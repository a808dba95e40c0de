// A static R-tree packed by sort-tile-recursive over the bounds of a display list's items,
// so a view visits only what is in it. Boxes are kept in floats rounded outward, measured
// from the middle of everything indexed: half the memory, a query can only find more, never
// miss, and drawings far from the origin (survey coordinates) keep their precision.
#pragma once

#include <cstdint>
#include <vector>

#include "cad/gs/Box2d.h"

namespace cad::gs {

class SpatialIndex {
public:
    struct Entry {
        Box2d box;
        std::uint32_t id;
    };
    explicit SpatialIndex(std::vector<Entry> entries);

    // The ids whose boxes meet `box`, in no particular order, appended to `out`.
    void query(const Box2d& box, std::vector<std::uint32_t>& out) const;
    std::size_t size() const { return ids_.size(); }

private:
    struct FloatBox {
        float minX, minY, maxX, maxY;
    };
    struct Node {
        FloatBox box;
        std::uint32_t first, count;  // children in the level below, or entries for leaves
    };
    FloatBox outward(const Box2d& box) const;
    void queryNode(std::size_t level, std::uint32_t node, const FloatBox& box,
                   std::vector<std::uint32_t>& out) const;

    double originX_ = 0.0, originY_ = 0.0;
    std::vector<FloatBox> boxes_;      // entries, in packed order
    std::vector<std::uint32_t> ids_;  // entries' ids, in packed order
    std::vector<std::vector<Node>> levels_;  // [0] leaves ... back() the root level
};

}  // namespace cad::gs
