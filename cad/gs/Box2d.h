// An axis-aligned box in the plane: the bounds of drawn geometry, of a view, of a pick.
#pragma once

#include <algorithm>
#include <cmath>

#include "cad/gs/Affine2d.h"

namespace cad::gs {

struct Box2d {
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;

    bool isEmpty() const { return !(minX <= maxX && minY <= maxY); }
    double width() const { return maxX - minX; }
    double height() const { return maxY - minY; }
    void add(double x, double y) {
        // NaN never widens a box: a damaged coordinate must not make everything "in view".
        if (!(std::isfinite(x) && std::isfinite(y))) return;
        minX = std::min(minX, x);
        minY = std::min(minY, y);
        maxX = std::max(maxX, x);
        maxY = std::max(maxY, y);
    }
    void add(const ge::Point2d& p) { add(p.x, p.y); }
    void add(const Box2d& other) {
        if (other.isEmpty()) return;
        add(other.minX, other.minY);
        add(other.maxX, other.maxY);
    }
    bool intersects(const Box2d& o) const {
        return minX <= o.maxX && o.minX <= maxX && minY <= o.maxY && o.minY <= maxY;
    }
    bool contains(const Box2d& o) const {
        return minX <= o.minX && o.maxX <= maxX && minY <= o.minY && o.maxY <= maxY;
    }
    Box2d grown(double margin) const {
        if (isEmpty()) return *this;
        return {minX - margin, minY - margin, maxX + margin, maxY + margin};
    }
    // The box of this box's corners after the map.
    Box2d mapped(const Affine2d& m) const {
        Box2d out;
        if (isEmpty()) return out;
        out.add(m.map(minX, minY));
        out.add(m.map(maxX, minY));
        out.add(m.map(minX, maxY));
        out.add(m.map(maxX, maxY));
        return out;
    }
};

}  // namespace cad::gs
