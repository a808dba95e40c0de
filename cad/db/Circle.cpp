// Circle: a circular entity whose sweep is the full turn.
#include "cad/db/Circle.h"

#include <numbers>

namespace cad::db {

Circle::Circle(const ge::Point3d& center, const ge::Vector3d& normal, double radius)
    : CircularEntity(center, normal, radius) {}

double Circle::endAngle() const {
    return 2.0 * std::numbers::pi;
}

}  // namespace cad::db
