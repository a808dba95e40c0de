// Affine transforms: rotations about off-origin axes, the order of composition, inversion,
// mirrors, points against vectors, and the object coordinate systems of drawing files.
#include "cad/ge/Matrix3d.h"

#include <gtest/gtest.h>

#include <numbers>

#include "cad/ge/Scale3d.h"

namespace cad::ge {
namespace {

constexpr double kPi = std::numbers::pi;
const Tolerance kLoose{1e-9, 1e-9};

struct RotationRow {
    const char* name;
    double angle;
    Vector3d axis;
    Point3d center;
    Point3d point;
    Point3d expected;
};

class Rotation : public testing::TestWithParam<RotationRow> {};

TEST_P(Rotation, TurnsAboutTheAxisThroughTheCenter) {
    const RotationRow& row = GetParam();
    const Matrix3d m = Matrix3d::rotation(row.angle, row.axis, row.center);
    EXPECT_TRUE((m * row.point).isEqualTo(row.expected, kLoose));
    EXPECT_TRUE((m * row.center).isEqualTo(row.center, kLoose));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Matrix3d, Rotation, testing::Values(
    RotationRow{"quarter_about_z_through_1_0_0", kPi / 2, {0, 0, 1}, {1, 0, 0}, {2, 0, 0}, {1, 1, 0}},
    RotationRow{"half_about_x_through_0_1_1", kPi, {1, 0, 0}, {0, 1, 1}, {3, 1, 2}, {3, 1, 0}},
    RotationRow{"third_about_diagonal_cycles_axes", 2 * kPi / 3, {1, 1, 1}, {}, {1, 0, 0}, {0, 1, 0}},
    RotationRow{"axis_length_does_not_matter", kPi / 2, {0, 0, 7}, {}, {1, 0, 0}, {0, 1, 0}},
    RotationRow{"zero_axis_is_identity", 1.0, {0, 0, 0}, {}, {1, 2, 3}, {1, 2, 3}}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(Matrix3d, PointsFollowTheTranslationWhereVectorsDoNot) {
    const Matrix3d m = Matrix3d::translation({5, 6, 7}) * Matrix3d::scaling(2.0);
    EXPECT_TRUE(Point3d(1, 0, 0).transformBy(m).isEqualTo({7, 6, 7}));
    // The displacement between two points transforms as a vector: the translation cancels.
    const Point3d a = m * Point3d(1, 1, 1);
    const Point3d b = m * Point3d(2, 1, 1);
    EXPECT_TRUE((b - a).isEqualTo({2, 0, 0}));
    EXPECT_DOUBLE_EQ(a.distanceTo(b), 2.0);
    EXPECT_TRUE((m * Vector3d(1, 0, 0)).isEqualTo({2, 0, 0}));
}

TEST(Matrix3d, ProductAppliesTheRightOperandFirst) {
    const Matrix3d turn = Matrix3d::rotation(kPi / 2, Vector3d::kZAxis);
    const Matrix3d move = Matrix3d::translation({10, 0, 0});
    EXPECT_TRUE(((move * turn) * Point3d(1, 0, 0)).isEqualTo({10, 1, 0}, kLoose));
    EXPECT_TRUE(((turn * move) * Point3d(1, 0, 0)).isEqualTo({0, 11, 0}, kLoose));
}

TEST(Matrix3d, InverseUndoesTheMatrixFromEitherSideUnlessSingular) {
    const std::pair<const char*, Matrix3d> rows[] = {
        {"placement", Matrix3d::translation({100, -20, 3}) *
                          Matrix3d::rotation(0.7, {0, 0, 1}, {5, 5, 0}) *
                          Matrix3d::scaling(Scale3d(-2, 3, 0.5), {1, 2, 3})},
        {"tiny but regular scale", Matrix3d::scaling(1e-6, {4, 4, 4})},
        {"needs row swaps", Matrix3d().setCoordSystem({1, 2, 3}, {0, 0, 2}, {3, 0, 0}, {0, -1, 1})},
        {"tilted plane", Matrix3d::planeToWorld({0.3, -0.5, 0.8})},
    };
    for (const auto& [name, m] : rows) {
        EXPECT_FALSE(m.isSingular()) << name;
        EXPECT_TRUE((m.inverse() * m).isEqualTo(Matrix3d::kIdentity, kLoose)) << name;
        EXPECT_TRUE((m * m.inverse()).isEqualTo(Matrix3d::kIdentity, kLoose)) << name;
    }

    const Matrix3d flat = Matrix3d::scaling(Scale3d(1, 1, 0));
    EXPECT_TRUE(flat.isSingular());
    const Matrix3d untouched = Matrix3d::translation({1, 2, 3});
    Matrix3d result = untouched;
    EXPECT_FALSE(flat.inverse(result));
    EXPECT_TRUE(result.isEqualTo(untouched));
    // Two axes along one line are as singular as a zero axis.
    EXPECT_TRUE(Matrix3d().setCoordSystem({}, {1, 0, 0}, {2, 0, 0}, {0, 0, 1}).isSingular());
}

TEST(Matrix3d, MirrorReversesOrientation) {
    const Matrix3d mirror = Matrix3d::scaling(Scale3d(-2, 2, 2), {3, 0, 0});
    EXPECT_DOUBLE_EQ(mirror.det(), -8.0);
    EXPECT_TRUE((mirror * Point3d(4, 1, 0)).isEqualTo({1, 2, 0}));
    EXPECT_TRUE(mirror.isUniScaledOrtho());
    EXPECT_DOUBLE_EQ(mirror.scale(), 2.0);
    // Rotating does not change the orientation; a second mirror restores it.
    EXPECT_LT((Matrix3d::rotation(1.0, {1, 2, 3}) * mirror).det(), 0.0);
    EXPECT_GT((Matrix3d::scaling(Scale3d(1, -1, 1)) * mirror).det(), 0.0);
}

TEST(Matrix3d, UniScaledOrthoRejectsStretchAndShear) {
    EXPECT_TRUE((Matrix3d::rotation(0.4, {1, 1, 0}) * Matrix3d::scaling(3.0)).isUniScaledOrtho());
    EXPECT_FALSE(Matrix3d::scaling(Scale3d(1, 1, 1.001)).isUniScaledOrtho());
    EXPECT_FALSE(
        Matrix3d().setCoordSystem({}, {1, 0, 0}, {0.01, 1, 0}, {0, 0, 1}).isUniScaledOrtho());
}

TEST(Matrix3d, AlignCoordSysMapsOriginAndAxes) {
    const Point3d fromOrigin(1, 1, 0);
    const Vector3d fromX(0, 2, 0), fromY(-1, 0, 0), fromZ(0, 0, 1);
    const Point3d toOrigin(10, 0, 5);
    const Vector3d toX(1, 0, 0), toY(0, 0, 1), toZ(0, -1, 0);
    const Matrix3d m =
        Matrix3d::alignCoordSys(fromOrigin, fromX, fromY, fromZ, toOrigin, toX, toY, toZ);
    EXPECT_TRUE((m * fromOrigin).isEqualTo(toOrigin));
    EXPECT_TRUE((m * (fromOrigin + fromX)).isEqualTo(toOrigin + toX));
    EXPECT_TRUE((m * (fromOrigin + fromY)).isEqualTo(toOrigin + toY));
    EXPECT_TRUE((m * (fromOrigin + fromZ)).isEqualTo(toOrigin + toZ));
}

TEST(Matrix3d, PlaneToWorldFollowsTheArbitraryAxisRule) {
    // The rule switches at 1/64 = 0.015625 on both x and y of the unit normal: below it on
    // both, X = Wy x N; otherwise X = Wz x N.
    const struct {
        const char* name;
        Vector3d normal;
        Vector3d xAxis;
    } rows[] = {
        {"world z", {0, 0, 1}, {1, 0, 0}},
        {"minus z mirrors x", {0, 0, -1}, {-1, 0, 0}},
        {"unnormalised z", {0, 0, 4}, {1, 0, 0}},
        {"x just below threshold", {0.0156, 0, 1}, {1, 0, -0.0156}},
        {"x just above threshold", {0.0157, 0, 1}, {0, 1, 0}},
        {"y just above threshold", {0, 0.0157, 1}, {-1, 0, 0}},
        {"both below threshold", {-0.015, 0.015, 1}, {1, 0, 0.015}},
        {"world x", {1, 0, 0}, {0, 1, 0}},
        {"world y", {0, 1, 0}, {-1, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Matrix3d m = Matrix3d::planeToWorld(row.normal);
        Point3d origin;
        Vector3d x, y, z;
        m.getCoordSystem(origin, x, y, z);
        EXPECT_TRUE(origin.isEqualTo(Point3d::kOrigin));
        EXPECT_TRUE(x.isEqualTo(row.xAxis.normal(), kLoose));
        EXPECT_TRUE(z.isEqualTo(row.normal.normal(), kLoose));
        EXPECT_TRUE(y.isEqualTo(z.crossProduct(x), kLoose));
        EXPECT_NEAR(m.det(), 1.0, 1e-12);
        EXPECT_TRUE(
            (Matrix3d::worldToPlane(row.normal) * m).isEqualTo(Matrix3d::kIdentity, kLoose));
    }
}

}  // namespace
}  // namespace cad::ge
