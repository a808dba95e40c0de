// Per-axis factors: proportion, and what can be read back out of a transform.
#include "cad/ge/Scale3d.h"

#include <gtest/gtest.h>

#include "cad/ge/Matrix3d.h"

namespace cad::ge {
namespace {

const Matrix3d kTurn = Matrix3d::rotation(0.3, Vector3d::kZAxis, {7, 8, 9});

struct ExtractRow {
    const char* name;
    Matrix3d m;
    Scale3d expected;
};

class ExtractScale : public testing::TestWithParam<ExtractRow> {};

TEST_P(ExtractScale, ReadsFactorsAndMirrorSigns) {
    const ExtractRow& row = GetParam();
    Scale3d scale;
    scale.extractScale(row.m);
    EXPECT_TRUE(scale.isEqualTo(row.expected)) << scale.sx << " " << scale.sy << " " << scale.sz;
    // Removing the factors leaves a pure rotation that rebuilds the matrix with them.
    Matrix3d rest = row.m;
    Scale3d().removeScale(rest);
    EXPECT_TRUE(rest.isUniScaledOrtho());
    EXPECT_NEAR(rest.det(), 1.0, 1e-12);
    EXPECT_TRUE((rest * Matrix3d::scaling(scale)).isEqualTo(row.m));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Scale3d, ExtractScale, testing::Values(
    ExtractRow{"uniform", Matrix3d::scaling(2.5, {1, 1, 1}), Scale3d(2.5)},
    ExtractRow{"per_axis_with_move",
               Matrix3d::translation({3, 4, 5}) * Matrix3d::scaling(Scale3d(2, 3, 4)), Scale3d(2, 3, 4)},
    ExtractRow{"mirror_y_axis_aligned", Matrix3d::scaling(Scale3d(1, -3, 1)), Scale3d(1, -3, 1)},
    ExtractRow{"mirror_under_rotation_goes_on_x", kTurn * Matrix3d::scaling(Scale3d(2, -2, 2)),
               Scale3d(-2, 2, 2)},
    ExtractRow{"two_mirrors_are_a_half_turn", Matrix3d::scaling(Scale3d(-1, -1, 1)), Scale3d(1, 1, 1)},
    ExtractRow{"rotated_stretch", kTurn * Matrix3d::scaling(Scale3d(1, 2, 3)), Scale3d(1, 2, 3)}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(Scale3d, ProportionIgnoresMirrorAndScalesItsTolerance) {
    EXPECT_TRUE(Scale3d(2).set(-2, 2, 2).isProportional());
    EXPECT_FALSE(Scale3d(2, 2, 2.001).isProportional());
    // The same relative rounding must pass at 1000 as at 1.
    EXPECT_TRUE(Scale3d(1000, 1000 + 1e-10, 1000).isProportional());
    EXPECT_FALSE(Scale3d(1, 1 + 1e-10, 1).isProportional());
}

}  // namespace
}  // namespace cad::ge
