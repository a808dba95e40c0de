// Comparison of scale factors and their extraction from a transform.
#include "cad/ge/Scale3d.h"

#include <algorithm>
#include <cmath>

#include "cad/ge/Matrix3d.h"

namespace cad::ge {

namespace {
// Factors are unit-free, so they are compared relative to their size (a factor of 1000 carries
// the same rounding as a factor of 1, three orders of magnitude larger).
bool sameFactor(double a, double b, const Tolerance& tol) {
    return std::fabs(a - b) <= tol.equalVector * std::max({1.0, std::fabs(a), std::fabs(b)});
}
}  // namespace

const Scale3d Scale3d::kIdentity{1.0, 1.0, 1.0};

Scale3d& Scale3d::set(double x, double y, double z) {
    sx = x;
    sy = y;
    sz = z;
    return *this;
}

bool Scale3d::isEqualTo(const Scale3d& s, const Tolerance& tol) const {
    return sameFactor(sx, s.sx, tol) && sameFactor(sy, s.sy, tol) && sameFactor(sz, s.sz, tol);
}

bool Scale3d::isProportional(const Tolerance& tol) const {
    return sameFactor(std::fabs(sx), std::fabs(sy), tol) &&
           sameFactor(std::fabs(sx), std::fabs(sz), tol);
}

Scale3d& Scale3d::extractScale(const Matrix3d& m) {
    const Tolerance& tol = Tolerance::global();
    double factor[3];
    bool axisAligned = true;
    for (int c = 0; c < 3; ++c) {
        factor[c] = std::sqrt(m(0, c) * m(0, c) + m(1, c) * m(1, c) + m(2, c) * m(2, c));
        for (int r = 0; r < 3; ++r) {
            if (r != c && std::fabs(m(r, c)) > tol.equalVector * std::max(1.0, factor[c]))
                axisAligned = false;
        }
    }
    if (m.det() < 0.0) {
        if (axisAligned) {
            for (int c = 0; c < 3; ++c) {
                if (m(c, c) < 0.0) factor[c] = -factor[c];
            }
        } else {
            factor[0] = -factor[0];
        }
    }
    return set(factor[0], factor[1], factor[2]);
}

Scale3d& Scale3d::removeScale(Matrix3d& m) {
    extractScale(m);
    const double factor[3] = {sx, sy, sz};
    for (int c = 0; c < 3; ++c) {
        if (factor[c] == 0.0) continue;  // a collapsed axis has no direction to keep
        for (int r = 0; r < 3; ++r) m(r, c) /= factor[c];
    }
    return *this;
}

}  // namespace cad::ge
