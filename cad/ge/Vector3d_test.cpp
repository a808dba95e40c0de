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

TEST(Vector3d, SignedAngleIsCounterClockwiseAboutTheReference) {
    const struct {
        const char* name;
        Vector3d from, to, reference;
        double angle;
    } rows[] = {
        {"same", {1, 0, 0}, {2, 0, 0}, {0, 0, 1}, 0.0},
        {"quarter ccw", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, kPi / 2},
        {"quarter cw", {1, 0, 0}, {0, -1, 0}, {0, 0, 1}, 3 * kPi / 2},
        {"opposite", {1, 0, 0}, {-1, 0, 0}, {0, 0, 1}, kPi},
        {"reference flipped", {1, 0, 0}, {0, 1, 0}, {0, 0, -1}, 3 * kPi / 2},
        {"tiny angle", {1, 0, 0}, {1, 1e-9, 0}, {0, 0, 1}, 1e-9},
    };
    for (const auto& row : rows) {
        EXPECT_NEAR(row.from.angleTo(row.to, row.reference), row.angle, 1e-12) << row.name;
    }
}

TEST(Vector3d, ParallelMeansEitherDirectionButNeverZero) {
    EXPECT_TRUE(Vector3d(1, 2, 3).isParallelTo({-2, -4, -6}));
    EXPECT_FALSE(Vector3d(1, 2, 3).isParallelTo({1, 2, 3.001}));
    EXPECT_FALSE(Vector3d().isParallelTo({1, 0, 0}));
}

}  // namespace
}  // namespace cad::ge
