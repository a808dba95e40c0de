// Transforms of every entity type against the transformed geometry: whatever the type keeps
// (centres, angles, bulges, generation flags, scale factors), the points it describes must be
// the transformed points, mirrors and tilted planes included.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "cad/db/Arc.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Hatch.h"
#include "cad/db/Line.h"
#include "cad/db/MText.h"
#include "cad/db/Point.h"
#include "cad/db/Polyline.h"
#include "cad/db/Polyline2d.h"
#include "cad/db/Solid.h"
#include "cad/db/Spline.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/Vertex2d.h"
#include "cad/ge/Scale3d.h"

namespace cad::db {
namespace {

constexpr double kPi = std::numbers::pi;

using namespace testing_support;

struct TransformRow {
    const char* name;
    ge::Matrix3d xform;
};

const ge::Matrix3d kMirrorAboutY2 = ge::Matrix3d::translation({0, 2, 0}) *
                                    ge::Matrix3d::scaling(ge::Scale3d(1, -1, 1)) *
                                    ge::Matrix3d::translation({0, -2, 0});

const TransformRow kTransforms[] = {
    {"translation", ge::Matrix3d::translation({3, -2, 5})},
    {"rotation_about_2_1", ge::Matrix3d::rotation(kPi / 3, ge::Vector3d::kZAxis, {2, 1, 0})},
    {"uniform_scale_about_1_1", ge::Matrix3d::scaling(2.5, {1, 1, 0})},
    {"mirror_x", ge::Matrix3d::scaling(ge::Scale3d(-1, 1, 1))},
    {"mirror_about_y_2", kMirrorAboutY2},
    {"rotate_then_mirror",
     ge::Matrix3d::scaling(ge::Scale3d(-2, 2, 2)) * ge::Matrix3d::rotation(0.7, {0, 0, 1})},
    {"tilt_about_x", ge::Matrix3d::rotation(0.5, ge::Vector3d::kXAxis, {0, 1, 0})},
    {"mirror_z", ge::Matrix3d::scaling(ge::Scale3d(1, 1, -1))},
};

class EntityTransform : public testing::TestWithParam<TransformRow> {
protected:
    const ge::Matrix3d& m() const { return GetParam().xform; }
    // A planar entity is mirrored within its plane exactly when the transform reverses space.
    bool mirrors() const { return m().det() < 0.0; }
};

TEST_P(EntityTransform, LineEndsAndThicknessFollow) {
    Line line({1, 2, 0}, {4, 6, 0});
    line.setThickness(2.0);
    const ge::Point3d top = ge::Point3d(1, 2, 0) + ge::Vector3d(0, 0, 2);
    ASSERT_EQ(line.transformBy(m()), ErrorStatus::eOk);
    expectPoint(line.startPoint(), m() * ge::Point3d(1, 2, 0), "start");
    expectPoint(line.endPoint(), m() * ge::Point3d(4, 6, 0), "end");
    expectPoint(line.startPoint() + line.normal() * line.thickness(), m() * top, "extruded");
}

TEST_P(EntityTransform, ArcKeepsItsEndPointsAndNormalSide) {
    Arc arc({1, 1, 0}, ge::Vector3d::kZAxis, 2.0, 0.25, 2.0);
    const ge::Point3d start = arc.startPoint(), end = arc.endPoint();
    ASSERT_EQ(arc.transformBy(m()), ErrorStatus::eOk);
    expectPoint(arc.center(), m() * ge::Point3d(1, 1, 0), "centre");
    // The arc runs counter-clockwise about its normal, so a mirror swaps its ends.
    expectPoint(arc.startPoint(), m() * (mirrors() ? end : start), "start");
    expectPoint(arc.endPoint(), m() * (mirrors() ? start : end), "end");
    EXPECT_GT(arc.normal().dotProduct(m() * ge::Vector3d::kZAxis), 0.0);
}

TEST_P(EntityTransform, EllipsePointsAtItsParametersFollow) {
    Ellipse ellipse({1, 2, 0}, ge::Vector3d::kZAxis, {3, 1, 0}, 0.4, 0.3, 2.5);
    auto pointAt = [](const Ellipse& e, double t) {
        return e.center() + e.majorAxis() * std::cos(t) + e.minorAxis() * std::sin(t);
    };
    const ge::Point3d start = pointAt(ellipse, 0.3), end = pointAt(ellipse, 2.5);
    ASSERT_EQ(ellipse.transformBy(m()), ErrorStatus::eOk);
    expectPoint(pointAt(ellipse, ellipse.startParam()), m() * (mirrors() ? end : start), "start");
    expectPoint(pointAt(ellipse, ellipse.endParam()), m() * (mirrors() ? start : end), "end");
    EXPECT_NEAR(ellipse.majorAxis().dotProduct(ellipse.minorAxis()), 0.0, 1e-9);
}

TEST_P(EntityTransform, PointSolidAndSplineMoveTheirPoints) {
    Point point({1, 2, 3});
    Solid solid({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0});
    Spline spline;
    ASSERT_EQ(spline.setNurbsData(2, 0, {{0, 0, 0}, {1, 2, 0}, {3, 0, 1}}, {0, 0, 0, 1, 1, 1}),
              ErrorStatus::eOk);
    ASSERT_EQ(point.transformBy(m()), ErrorStatus::eOk);
    ASSERT_EQ(solid.transformBy(m()), ErrorStatus::eOk);
    ASSERT_EQ(spline.transformBy(m()), ErrorStatus::eOk);
    expectPoint(point.position(), m() * ge::Point3d(1, 2, 3), "point");
    ge::Point3d corner;
    solid.getPointAt(3, corner);
    expectPoint(corner, m() * ge::Point3d(2, 1, 0), "solid corner");
    expectPoint(spline.controlPoints()[2], m() * ge::Point3d(3, 0, 1), "control point");
}

TEST_P(EntityTransform, LightweightPolylineVerticesAndArcMidpointsFollow) {
    Polyline pline;
    pline.addVertexAt(0, {0, 0}, 0.5, 0.1, 0.2);
    pline.addVertexAt(1, {4, 0}, 0.0);
    pline.addVertexAt(2, {4, 3}, -1.0);
    pline.setElevation(1.5);
    std::vector<std::unique_ptr<Entity>> before;
    ASSERT_EQ(pline.explode(before), ErrorStatus::eOk);
    ASSERT_EQ(pline.transformBy(m()), ErrorStatus::eOk);

    const ge::Point3d original[] = {{0, 0, 1.5}, {4, 0, 1.5}, {4, 3, 1.5}};
    for (unsigned i = 0; i < 3; ++i) {
        ge::Point3d world;
        pline.getPointAt(i, world);
        expectPoint(world, m() * original[i], "vertex");
    }
    double bulge = 0.0;
    pline.getBulgeAt(0, bulge);
    EXPECT_DOUBLE_EQ(bulge, mirrors() ? -0.5 : 0.5);
    // The first segment's arc: its midpoint must be the transformed midpoint.
    std::vector<std::unique_ptr<Entity>> after;
    ASSERT_EQ(pline.explode(after), ErrorStatus::eOk);
    ASSERT_EQ(after.size(), 2u);
    auto midpoint = [](const Entity& e) {
        const auto& arc = dynamic_cast<const Arc&>(e);
        const double mid = (arc.startAngle() + arc.endAngle()) / 2.0;
        return arc.center() + ge::Matrix3d::planeToWorld(arc.normal()) *
                                  ge::Vector3d(std::cos(mid), std::sin(mid), 0) * arc.radius();
    };
    expectPoint(midpoint(*after[0]), m() * midpoint(*before[0]), "arc midpoint");
}

TEST_P(EntityTransform, TextAndMTextPlacementFollows) {
    Text text({1, 1, 0}, "BM", {}, 0.5, 0.3);
    text.setHorizontalMode(TextHorzMode::kTextMid);
    text.setAlignmentPoint({2, 3, 0});
    const ge::Point3d position = text.position();
    MText mtext({1, 2, 0}, "part\\Pname", {}, 2.0);
    mtext.setRotation(0.4);
    const ge::Vector3d direction = mtext.direction();
    ASSERT_EQ(text.transformBy(m()), ErrorStatus::eOk);
    ASSERT_EQ(mtext.transformBy(m()), ErrorStatus::eOk);
    expectPoint(text.alignmentPoint(), m() * ge::Point3d(2, 3, 0), "alignment");
    expectPoint(text.position(), m() * position, "position");
    const double factor = std::cbrt(std::abs(m().det()));
    EXPECT_NEAR(text.height(), 0.5 * factor, 1e-9);
    EXPECT_NEAR(text.widthFactor(), 1.0, 1e-9);
    expectPoint(mtext.location(), m() * ge::Point3d(1, 2, 0), "mtext location");
    expectPoint(ge::Point3d::kOrigin + mtext.direction(),
                ge::Point3d::kOrigin + (m() * direction).normal(), "mtext direction");
    EXPECT_NEAR(mtext.textHeight(), 2.0 * factor, 1e-9);
}

TEST_P(EntityTransform, HatchBoundaryEdgesKeepTheirTraversal) {
    // One edge path: a clockwise arc (stored with complementary angles) and a line closing
    // it, so the edges' start and end points must stay joined after any transform.
    Hatch hatch;
    hatch.setDefinitionTags(
        tagsOf("91 1 92 1 93 2 72 2 10 0 20 0 40 1 50 270 51 360 73 0 72 1 "
               "10 1 20 0 11 0 21 1 97 0 75 0 76 1 98 1 10 0.5 20 0.5"));
    ASSERT_EQ(hatch.transformBy(m()), ErrorStatus::eOk);
    const auto& tags = hatch.definitionTags();
    auto value = [&](std::size_t i) { return std::stod(tags[i].value); };
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(hatch.normal());
    auto world = [&](double x, double y) { return toWorld * ge::Point3d(x, y, hatch.elevation()); };
    const bool ccw = value(9) != 0.0;
    const double radius = value(6);
    // Traversal: a clockwise arc runs from -start to -end.
    const double from = (ccw ? value(7) : -value(7)) * kPi / 180.0;
    const double to = (ccw ? value(8) : -value(8)) * kPi / 180.0;
    const ge::Point3d centre = world(value(4), value(5));
    const ge::Matrix3d toWorldAxes = toWorld;
    auto onArc = [&](double a) {
        return centre + toWorldAxes * ge::Vector3d(std::cos(a), std::sin(a), 0) * radius;
    };
    expectPoint(onArc(from), m() * ge::Point3d(0, 1, 0), "arc traversal start");
    expectPoint(onArc(to), m() * ge::Point3d(1, 0, 0), "arc traversal end");
    expectPoint(world(value(11), value(12)), m() * ge::Point3d(1, 0, 0), "line start");
    expectPoint(world(value(19), value(20)), m() * ge::Point3d(0.5, 0.5, 0), "seed");
}

INSTANTIATE_TEST_SUITE_P(Rows, EntityTransform, testing::ValuesIn(kTransforms), rowName);

// Entities that live in a database: the block transform of a reference composes with the
// transform, and a 2D polyline moves its vertices with its plane.
class ResidentEntityTransform : public EntityTransform {
protected:
    void TearDown() override { EXPECT_EQ(db.openObjectCount(), 0); }
    ObjectId append(std::unique_ptr<Entity> entity) {
        return testing_support::append(db.modelSpaceId(), std::move(entity));
    }
    Database db;
};

TEST_P(ResidentEntityTransform, BlockTransformComposesWithTheTransform) {
    const ObjectId block = addBlock(db, "PART", {1, 1, 0});
    // Placed mirrored in Y, rotated and scaled, as a part placed with the mirror option.
    auto reference = std::make_unique<BlockReference>(ge::Point3d{5, 2, 0}, block);
    reference->setScaleFactors(ge::Scale3d(2, -2, 2));
    reference->setRotation(0.6);
    const ObjectId id = append(std::move(reference));

    auto ref = open<BlockReference>(id, OpenMode::ForWrite);
    const ge::Matrix3d expected = m() * ref->blockTransform();
    ASSERT_EQ(ref->transformBy(m()), ErrorStatus::eOk);
    EXPECT_TRUE(ref->blockTransform().isEqualTo(expected, ge::Tolerance{1e-9, 1e-9}));
}

TEST_P(ResidentEntityTransform, Polyline2dVerticesFollowTheirPlane) {
    auto pline = std::make_unique<Polyline2d>(
        std::vector<ge::Point3d>{{0, 0, 0}, {3, 0, 0}, {3, 2, 0}}, 1.0, true);
    const ObjectId id = append(std::move(pline));
    {
        auto p = open<Polyline2d>(id, OpenMode::ForWrite);
        ASSERT_EQ(p->vertexIds().size(), 3u);
        open<Vertex2d>(p->vertexIds()[0], OpenMode::ForWrite)->setBulge(0.3);
        ASSERT_EQ(p->transformBy(m()), ErrorStatus::eOk);
    }
    auto p = open<Polyline2d>(id, OpenMode::ForRead);
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(p->normal());
    auto v0 = open<Vertex2d>(p->vertexIds()[0], OpenMode::ForRead);
    auto v2 = open<Vertex2d>(p->vertexIds()[2], OpenMode::ForRead);
    expectPoint(toWorld * ge::Point3d(v2->position().x, v2->position().y, p->elevation()),
                m() * ge::Point3d(3, 2, 1), "vertex");
    EXPECT_DOUBLE_EQ(v0->bulge(), mirrors() ? -0.3 : 0.3);
}

INSTANTIATE_TEST_SUITE_P(Rows, ResidentEntityTransform, testing::ValuesIn(kTransforms), rowName);

TEST(EntityTransformUneven, CircleBecomesAnEllipseOnlyInTheCopy) {
    Circle circle({1, 0, 0}, ge::Vector3d::kZAxis, 1.0);
    const ge::Matrix3d stretch = ge::Matrix3d::scaling(ge::Scale3d(3, 1, 1));
    EXPECT_EQ(circle.transformBy(stretch), ErrorStatus::eNotApplicable);
    std::unique_ptr<Entity> copy;
    ASSERT_EQ(circle.getTransformedCopy(stretch, copy), ErrorStatus::eOk);
    const auto* ellipse = dynamic_cast<const Ellipse*>(copy.get());
    ASSERT_NE(ellipse, nullptr);
    expectPoint(ellipse->center(), {3, 0, 0}, "centre");
    EXPECT_NEAR(ellipse->majorAxis().length(), 3.0, 1e-12);
    EXPECT_NEAR(ellipse->radiusRatio(), 1.0 / 3.0, 1e-12);
    EXPECT_NEAR(ellipse->endParam() - ellipse->startParam(), 2 * kPi, 1e-12);
    // Uniform transforms keep the type.
    ASSERT_EQ(circle.getTransformedCopy(ge::Matrix3d::scaling(2.0), copy), ErrorStatus::eOk);
    EXPECT_NE(dynamic_cast<const Circle*>(copy.get()), nullptr);
}

TEST(EntityTransformUneven, ArcBecomesAnEllipticalArcThroughTheStretchedEnds) {
    Arc arc({0, 0, 0}, ge::Vector3d::kZAxis, 2.0, 0.0, kPi / 2);
    const ge::Matrix3d stretch = ge::Matrix3d::scaling(ge::Scale3d(1, 0.5, 1));
    std::unique_ptr<Entity> copy;
    ASSERT_EQ(arc.getTransformedCopy(stretch, copy), ErrorStatus::eOk);
    const auto& ellipse = dynamic_cast<const Ellipse&>(*copy);
    auto pointAt = [&](double t) {
        return ellipse.center() + ellipse.majorAxis() * std::cos(t) +
               ellipse.minorAxis() * std::sin(t);
    };
    expectPoint(pointAt(ellipse.startParam()), {2, 0, 0}, "start");
    expectPoint(pointAt(ellipse.endParam()), {0, 1, 0}, "end");
}

TEST(EntityTransformUneven, UnevenScalesThatWouldBendArcsAreRefused) {
    const ge::Matrix3d stretch = ge::Matrix3d::scaling(ge::Scale3d(2, 1, 1));
    Polyline pline;
    pline.addVertexAt(0, {0, 0}, 1.0);
    pline.addVertexAt(1, {1, 0});
    EXPECT_EQ(pline.transformBy(stretch), ErrorStatus::eNotApplicable);
    pline.setBulgeAt(0, 0.0);
    EXPECT_EQ(pline.transformBy(stretch), ErrorStatus::eOk);
    Hatch hatch;
    EXPECT_EQ(hatch.transformBy(stretch), ErrorStatus::eNotApplicable);
    // A flattening transform has no plane to map to.
    Line line({0, 0, 0}, {1, 1, 0});
    EXPECT_EQ(line.transformBy(ge::Matrix3d::scaling(ge::Scale3d(1, 1, 0))),
              ErrorStatus::eInvalidInput);
}

}  // namespace
}  // namespace cad::db
