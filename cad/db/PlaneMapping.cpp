// PlaneMapping: normals transform with the inverse transpose, which keeps them perpendicular to
// the transformed plane under any non-singular map, also an uneven one.
#include "cad/db/PlaneMapping.h"

#include <cmath>

#include "cad/db/DxfAngle.h"

namespace cad::db {

PlaneMapping::PlaneMapping(const ge::Matrix3d& xform, const ge::Vector3d& normal) {
    ge::Matrix3d inverse;
    if (!xform.inverse(inverse)) return;
    const ge::Vector3d oldNormal = normal.isZeroLength() ? ge::Vector3d::kZAxis : normal.normal();
    newNormal_ = (inverse.transpose() * oldNormal).normal();
    if (newNormal_.isZeroLength()) return;
    valid_ = true;
    ocs_ = ge::Matrix3d::worldToPlane(newNormal_) * xform * ge::Matrix3d::planeToWorld(oldNormal);
    thicknessScale_ = (xform * oldNormal).dotProduct(newNormal_);

    // The images of the plane's unit axes lie in the new plane: compare them in 2D.
    const double ax = ocs_(0, 0), ay = ocs_(1, 0), bx = ocs_(0, 1), by = ocs_(1, 1);
    const double det = ax * by - ay * bx;
    mirror_ = det < 0.0;
    const double la = ax * ax + ay * ay, lb = bx * bx + by * by;
    const double tol = 1e-10 * (la + lb);
    uniform_ = std::abs(la - lb) <= tol && std::abs(ax * bx + ay * by) <= tol;
    scale_ = uniform_ ? std::sqrt(la) : std::sqrt(std::abs(det));
}

double PlaneMapping::mapAngle(double ocsAngle) const {
    const ge::Vector3d d = ocs_ * ge::Vector3d(std::cos(ocsAngle), std::sin(ocsAngle), 0.0);
    return normalizedAngle(std::atan2(d.y, d.x));
}

}  // namespace cad::db
