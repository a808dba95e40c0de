// Vector operations whose corner cases matter to callers: zero vectors, signed angles and
// parallelism.
#include "cad/ge/Vector3d.h"

#include <gtest/gtest.h>

#include <numbers>

namespace cad::ge {
namespace {

constexpr double kPi = std::numbers::pi;

TEST(Vector3d, NormalIsUnitAndZeroStaysZero) {
    EXPECT_TRUE(Vector3d(3, 4, 0).normal().isEqualTo({0.6, 0.8, 0}));
    EXPECT_TRUE(Vector3d(0, 0, 1e-13).normal().isZeroLength());
    EXPECT_TRUE(Vector3d().normal().isZeroLength());
}

struct AngleRow {
    const char* name;
    Vector3d from;
    Vector3d to;
    Vector3d reference;
    double angle;
};

class SignedAngle : public testing::TestWithParam<AngleRow> {};

TEST_P(SignedAngle, IsCounterClockwiseAboutTheReference) {
    const AngleRow& row = GetParam();
    EXPECT_NEAR(row.from.angleTo(row.to, row.reference), row.angle, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Vector3d, SignedAngle,
    testing::Values(AngleRow{"same", {1, 0, 0}, {2, 0, 0}, {0, 0, 1}, 0.0},
                    AngleRow{"quarter_ccw", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, kPi / 2},
                    AngleRow{"quarter_cw", {1, 0, 0}, {0, -1, 0}, {0, 0, 1}, 3 * kPi / 2},
                    AngleRow{"opposite", {1, 0, 0}, {-1, 0, 0}, {0, 0, 1}, kPi},
                    AngleRow{"reference_flipped", {1, 0, 0}, {0, 1, 0}, {0, 0, -1}, 3 * kPi / 2},
                    AngleRow{"tiny_angle", {1, 0, 0}, {1, 1e-9, 0}, {0, 0, 1}, 1e-9}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Vector3d, ParallelMeansEitherDirectionButNeverZero) {
    EXPECT_TRUE(Vector3d(1, 2, 3).isParallelTo({-2, -4, -6}));
    EXPECT_FALSE(Vector3d(1, 2, 3).isParallelTo({1, 2, 3.001}));
    EXPECT_FALSE(Vector3d().isParallelTo({1, 0, 0}));
}

}  // namespace
}  // namespace cad::ge
