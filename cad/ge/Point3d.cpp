// The origin and the affine transform of a point.
#include "cad/ge/Point3d.h"

#include "cad/ge/Matrix3d.h"

namespace cad::ge {

const Point3d Point3d::kOrigin{0.0, 0.0, 0.0};

Point3d& Point3d::transformBy(const Matrix3d& m) {
    const Point3d p = *this;
    x = m(0, 0) * p.x + m(0, 1) * p.y + m(0, 2) * p.z + m(0, 3);
    y = m(1, 0) * p.x + m(1, 1) * p.y + m(1, 2) * p.z + m(1, 3);
    z = m(2, 0) * p.x + m(2, 1) * p.y + m(2, 2) * p.z + m(2, 3);
    return *this;
}

}  // namespace cad::ge
