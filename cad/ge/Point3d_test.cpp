// Points against vectors: a point follows the whole transform, a vector only its linear part.
#include "cad/ge/Point3d.h"

#include <gtest/gtest.h>

#include "cad/ge/Matrix3d.h"

namespace cad::ge {
namespace {

TEST(Point3d, FollowsTranslationWhereVectorsDoNot) {
    const Matrix3d m = Matrix3d::translation({5, 6, 7}) * Matrix3d::scaling(2.0);
    EXPECT_TRUE(Point3d(1, 0, 0).transformBy(m).isEqualTo({7, 6, 7}));
    // The displacement between two points transforms as a vector: the translation cancels.
    const Point3d a = m * Point3d(1, 1, 1);
    const Point3d b = m * Point3d(2, 1, 1);
    EXPECT_TRUE((b - a).isEqualTo({2, 0, 0}));
    EXPECT_DOUBLE_EQ(a.distanceTo(b), 2.0);
    EXPECT_TRUE((m * Vector3d(1, 0, 0)).isEqualTo({2, 0, 0}));
}

}  // namespace
}  // namespace cad::ge
