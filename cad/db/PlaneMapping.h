// How a transform acts on an entity that lies in a plane given by its normal (its object
// coordinate system): the new normal, the map from the old object coordinates to the new ones,
// and whether that map mirrors or scales unevenly within the plane.
#pragma once

#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

class PlaneMapping {
public:
    PlaneMapping(const ge::Matrix3d& xform, const ge::Vector3d& normal);

    // False for a singular transform, which flattens the plane and has no new normal.
    bool isValid() const { return valid_; }
    // The normal of the transformed plane, on the side the transformed old normal points to,
    // so a mirror within the plane keeps the normal (the entity is mirrored, not turned over).
    const ge::Vector3d& newNormal() const { return newNormal_; }
    // Old object coordinates to new object coordinates.
    const ge::Matrix3d& ocsMatrix() const { return ocs_; }
    // The map reverses the sense of rotation within the plane: arcs swap their ends, bulges
    // change sign, texts need a generation flag.
    bool isMirror() const { return mirror_; }
    // Angles and circles survive within the plane (rotation, uniform scale, mirror).
    bool isUniform() const { return uniform_; }
    // The scale within the plane; for an uneven map the square root of the area factor.
    double scale() const { return scale_; }
    // How much a length along the old normal (a thickness) grows along the new one.
    double thicknessScale() const { return thicknessScale_; }

    ge::Point3d mapPoint(const ge::Point3d& ocsPoint) const { return ocs_ * ocsPoint; }
    ge::Vector3d mapVector(const ge::Vector3d& ocsVector) const { return ocs_ * ocsVector; }
    // The angle of a direction in the old object coordinates, as an angle in the new ones.
    double mapAngle(double ocsAngle) const;

private:
    bool valid_ = false;
    bool mirror_ = false;
    bool uniform_ = true;
    double scale_ = 1.0;
    double thicknessScale_ = 1.0;
    ge::Vector3d newNormal_ = ge::Vector3d::kZAxis;
    ge::Matrix3d ocs_;
};

}  // namespace cad::db
