// Vector operations that need more than one expression: lengths, angles and transforms.
#include "cad/ge/Vector3d.h"

#include <cmath>
#include <numbers>

#include "cad/ge/Matrix3d.h"

namespace cad::ge {

const Vector3d Vector3d::kIdentity{0.0, 0.0, 0.0};
const Vector3d Vector3d::kXAxis{1.0, 0.0, 0.0};
const Vector3d Vector3d::kYAxis{0.0, 1.0, 0.0};
const Vector3d Vector3d::kZAxis{0.0, 0.0, 1.0};

double Vector3d::length() const {
    return std::sqrt(lengthSqrd());
}

Vector3d Vector3d::normal(const Tolerance& tol) const {
    if (isZeroLength(tol)) return kIdentity;
    return *this / length();
}

Vector3d& Vector3d::normalize(const Tolerance& tol) {
    return *this = normal(tol);
}

double Vector3d::angleTo(const Vector3d& v) const {
    // atan2 of sine and cosine stays accurate near 0 and pi, where acos of the cosine does not.
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double Vector3d::angleTo(const Vector3d& v, const Vector3d& reference) const {
    const double angle = angleTo(v);
    if (crossProduct(v).dotProduct(reference) < 0.0 && angle > 0.0)
        return 2.0 * std::numbers::pi - angle;
    return angle;
}

bool Vector3d::isZeroLength(const Tolerance& tol) const {
    return length() <= tol.equalVector;
}

bool Vector3d::isEqualTo(const Vector3d& v, const Tolerance& tol) const {
    return (*this - v).length() <= tol.equalVector;
}

bool Vector3d::isParallelTo(const Vector3d& v, const Tolerance& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector;
}

Vector3d Vector3d::perpVector() const {
    const Vector3d n = normal();
    if (n.isZeroLength()) return kIdentity;
    // Below this threshold the normal is too close to the world Z axis for Z x N to be stable.
    constexpr double kNearZ = 1.0 / 64.0;
    const Vector3d& helper = (std::fabs(n.x) < kNearZ && std::fabs(n.y) < kNearZ) ? kYAxis : kZAxis;
    return helper.crossProduct(n).normal();
}

Vector3d& Vector3d::transformBy(const Matrix3d& m) {
    const Vector3d v = *this;
    x = m(0, 0) * v.x + m(0, 1) * v.y + m(0, 2) * v.z;
    y = m(1, 0) * v.x + m(1, 1) * v.y + m(1, 2) * v.z;
    z = m(2, 0) * v.x + m(2, 1) * v.y + m(2, 2) * v.z;
    return *this;
}

}  // namespace cad::ge
