// User coordinate systems: round trips, axis clean-up, and angles picked in the user's plane.
#include "cad/ge/CoordinateSystem.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace cad::ge {
namespace {

constexpr double kPi = std::numbers::pi;
const Tolerance kLoose{1e-9, 1e-9};

struct UcsRow {
    const char* name;
    CoordinateSystem ucs;
};

class Ucs : public testing::TestWithParam<UcsRow> {};

TEST_P(Ucs, PointsRoundTripAndMatricesAgree) {
    const CoordinateSystem& ucs = GetParam().ucs;
    for (const Point3d& p : {Point3d(0, 0, 0), Point3d(1, 2, 3), Point3d(-40, 0.5, 1e3)}) {
        const Point3d world = ucs.ucsToWorld(p);
        EXPECT_TRUE(ucs.worldToUcs(world).isEqualTo(p, kLoose));
        EXPECT_TRUE((ucs.ucsToWorldMatrix() * p).isEqualTo(world, kLoose));
        EXPECT_TRUE((ucs.worldToUcsMatrix() * world).isEqualTo(p, kLoose));
    }
}

TEST_P(Ucs, AngleToWorldPointsTheSameWayInTheObjectSystem) {
    const CoordinateSystem& ucs = GetParam().ucs;
    const Matrix3d objectToWorld = Matrix3d::planeToWorld(ucs.zAxis());
    for (const double angle : {0.0, 0.5, kPi, -2.0}) {
        const Vector3d picked = ucs.ucsToWorld(Vector3d(std::cos(angle), std::sin(angle), 0));
        const double world = ucs.angleToWorld(angle);
        const Vector3d placed = objectToWorld * Vector3d(std::cos(world), std::sin(world), 0);
        EXPECT_TRUE(placed.isEqualTo(picked, kLoose)) << angle;
        EXPECT_NEAR(ucs.angleToUcs(world), angle, 1e-12);
    }
}

INSTANTIATE_TEST_SUITE_P(
    CoordinateSystem, Ucs,
    testing::Values(UcsRow{"world", CoordinateSystem()},
                    UcsRow{"turned_about_z", CoordinateSystem({3, 3, 0}, {1, 1, 0}, {-1, 1, 0})},
                    UcsRow{"upside_down", CoordinateSystem({0, 0, 7}, {1, 0, 0}, {0, -1, 0})},
                    UcsRow{"front_view", CoordinateSystem({1, 2, 3}, {1, 0, 0}, {0, 0, 1})},
                    UcsRow{"tilted", CoordinateSystem({4, 5, 6}, {1, 2, 3}, {-3, 0, 1})}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CoordinateSystem, AxesAreMadeOrthonormal) {
    const CoordinateSystem ucs({10, 0, 0}, {0, 3, 0}, {-1, 1, 0});
    EXPECT_TRUE(ucs.xAxis().isEqualTo({0, 1, 0}));
    EXPECT_TRUE(ucs.yAxis().isEqualTo({-1, 0, 0}));
    EXPECT_TRUE(ucs.ucsToWorld(Point3d(1, 2, 3)).isEqualTo({8, 1, 3}));
    EXPECT_NEAR(ucs.angleToWorld(0.0), kPi / 2, 1e-15);

    const CoordinateSystem degenerate({1, 1, 1}, {1, 0, 0}, {-2, 0, 0});
    EXPECT_TRUE(degenerate.xAxis().isEqualTo(Vector3d::kXAxis));
    EXPECT_TRUE(degenerate.yAxis().isEqualTo(Vector3d::kYAxis));
}

TEST(CoordinateSystem, FullTurnIsNotWrapped) {
    // The jig takes Enter at the angle prompt as a full turn; it must reach the entity as such.
    EXPECT_EQ(CoordinateSystem().angleToWorld(2 * kPi), 2 * kPi);
}

}  // namespace
}  // namespace cad::ge
