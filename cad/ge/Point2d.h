// A position in a plane: a point on the screen or in a view, as the jig and the drawing view use.
#pragma once

#include <cmath>

#include "cad/ge/Tolerance.h"

namespace cad::ge {

class Point2d {
public:
    constexpr Point2d() = default;
    constexpr Point2d(double xx, double yy) : x(xx), y(yy) {}

    static const Point2d kOrigin;

    double distanceTo(const Point2d& p) const { return std::hypot(x - p.x, y - p.y); }
    bool isEqualTo(const Point2d& p, const Tolerance& tol = Tolerance::global()) const {
        return distanceTo(p) <= tol.equalPoint;
    }
    bool operator==(const Point2d& p) const { return isEqualTo(p); }

    double x = 0.0;
    double y = 0.0;
};

inline constexpr Point2d Point2d::kOrigin{};

}  // namespace cad::ge
