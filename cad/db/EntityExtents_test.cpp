// Extents of each entity type (arcs by their extreme points inside the sweep, texts by their
// estimated box and generation flags) and the explode of polylines into lines and arcs.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <string>

#include "cad/db/Arc.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Hatch.h"
#include "cad/db/Line.h"
#include "cad/db/MText.h"
#include "cad/db/Polyline.h"
#include "cad/db/Polyline3d.h"
#include "cad/db/Spline.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/Vertex3d.h"

namespace cad::db {
namespace {

constexpr double kPi = std::numbers::pi;
const double kSin10 = std::sin(kPi / 18), kCos10 = std::cos(kPi / 18);
using namespace testing_support;

std::unique_ptr<Entity> text(std::int16_t flags) {
    auto t = std::make_unique<Text>(ge::Point3d{5, 5, 0}, "AB", ObjectId{}, 1.0);
    t->mirrorInX((flags & Text::kBackward) != 0);
    t->mirrorInY((flags & Text::kUpsideDown) != 0);
    return t;
}

TEST(EntityExtents, BoundTheGeometryExactly) {
    using P = ge::Point3d;
    using V = ge::Vector3d;
    const struct {
        const char* name;
        P min, max;
        std::function<std::unique_ptr<Entity>()> make;
    } rows[] = {
        // clang-format off
        {"line with thickness", {0, 0, 0}, {1, 0, 2}, [] {
             auto line = std::make_unique<Line>(P{0, 0, 0}, P{1, 0, 0});
             line->setThickness(2);
             return line;
         }},
        {"circle on a wall", {0, -1, -1}, {0, 1, 1},
         [] { return std::make_unique<Circle>(P{}, V::kXAxis, 1.0); }},
        {"arc across angle zero", {2 * kCos10, -2 * kSin10, 0}, {2, 2 * kSin10, 0},
         [] { return std::make_unique<Arc>(P{}, V::kZAxis, 2.0, -kPi / 18, kPi / 18); }},
        {"ellipse turned a quarter", {-0.5, -2, 0}, {2.5, 4, 0},
         [] { return std::make_unique<Ellipse>(P{1, 1, 0}, V::kZAxis, V{0, 3, 0}, 0.5); }},
        {"quarter ellipse", {0, 0, 0}, {2, 1, 0},
         [] { return std::make_unique<Ellipse>(P{}, V::kZAxis, V{2, 0, 0}, 0.5, 0, kPi / 2); }},
        {"polyline half circle bulge", {0, -1, 0}, {2, 0, 0}, [] {
             auto pline = std::make_unique<Polyline>();
             pline->addVertexAt(0, {0, 0}, 1.0);
             pline->addVertexAt(1, {2, 0});
             return pline;
         }},
        {"text", {5, 5, 0}, {6.2, 6, 0}, [] { return text(0); }},
        {"backward text", {3.8, 5, 0}, {5, 6, 0}, [] { return text(Text::kBackward); }},
        {"upside down text", {5, 4, 0}, {6.2, 5, 0}, [] { return text(Text::kUpsideDown); }},
        {"mtext on its middle", {-0.6, -0.5, 0}, {0.6, 0.5, 0}, [] {
             auto mtext = std::make_unique<MText>(P{}, "{\\fArial;AB}");
             mtext->setAttachment(MText::AttachmentPoint::kMiddleCenter);
             return mtext;
         }},
        {"spline by its control points", {0, 0, 0}, {3, 2, 0}, [] {
             auto spline = std::make_unique<Spline>();
             spline->setNurbsData(2, 0, {{0, 0, 0}, {1, 2, 0}, {3, 0, 0}}, {0, 0, 0, 1, 1, 1});
             return spline;
         }},
        // A quarter circle run clockwise from 90 to 0 degrees (stored as 270 and 360), closed
        // by a line.
        {"hatch with clockwise arc", {0, 0, 2}, {1, 1, 2}, [] {
             auto hatch = std::make_unique<Hatch>();
             hatch->setElevation(2);
             hatch->setDefinitionTags(tagsOf("91 1 92 1 93 2 72 2 10 0 20 0 40 1 50 270 51 360 "
                                             "73 0 72 1 10 1 20 0 11 0 21 1 97 0 75 0 76 1 98 0"));
             return hatch;
         }},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Extents3d extents;
        ASSERT_EQ(row.make()->getGeomExtents(extents), ErrorStatus::eOk);
        expectExtents(extents, row.min, row.max);
    }
}

TEST(MTextPlainText, DropsFormattingCodes) {
    EXPECT_EQ(MText::plainText("{\\fArial|b1;\\H2.5x;Bolt}\\PM\\S1^2;0\\~x \\\\"),
              "Bolt\nM120 x \\");
}

TEST(PolylineExplode, GivesLinesAndArcsAlongTheOutline) {
    Polyline pline;
    pline.addVertexAt(0, {0, 0}, 1.0);
    pline.addVertexAt(1, {2, 0});
    pline.addVertexAt(2, {2, 2});
    pline.setClosed(true);
    pline.setColorIndex(5);
    std::vector<std::unique_ptr<Entity>> pieces;
    ASSERT_EQ(pline.explode(pieces), ErrorStatus::eOk);
    ASSERT_EQ(pieces.size(), 3u);
    const auto& arc = dynamic_cast<const Arc&>(*pieces[0]);
    EXPECT_TRUE(arc.center().isEqualTo({1, 0, 0}));
    // A positive bulge bows to the right of the chord: counter-clockwise from (0, 0) below
    // the chord to (2, 0).
    EXPECT_TRUE(arc.startPoint().isEqualTo({0, 0, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({2, 0, 0}));
    EXPECT_NEAR(arc.endAngle() - arc.startAngle(), kPi, 1e-12);
    const auto& closing = dynamic_cast<const Line&>(*pieces[2]);
    EXPECT_TRUE(closing.startPoint().isEqualTo({2, 2, 0}));
    EXPECT_TRUE(closing.endPoint().isEqualTo({0, 0, 0}));
    EXPECT_EQ(closing.colorIndex(), 5);
}

TEST(PolylineExplode, ThreeDPolylineGivesLinesAndMeshesRefuse) {
    Database db;
    const ObjectId polylineId = append(
        db.modelSpaceId(), std::make_unique<Polyline3d>(
                               std::vector<ge::Point3d>{{0, 0, 0}, {1, 0, 1}, {1, 1, 2}}, false));
    const ObjectId meshId =
        append(db.modelSpaceId(), std::make_unique<Polyline3d>(Polyline3d::kPolygonMesh));
    std::vector<std::unique_ptr<Entity>> pieces;
    ASSERT_EQ(open<Polyline3d>(polylineId, OpenMode::ForRead)->explode(pieces), ErrorStatus::eOk);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_TRUE(dynamic_cast<const Line&>(*pieces[1]).endPoint().isEqualTo({1, 1, 2}));
    EXPECT_EQ(open<Polyline3d>(meshId, OpenMode::ForRead)->explode(pieces),
              ErrorStatus::eNotApplicable);
    Extents3d extents;
    ASSERT_EQ(open<Polyline3d>(polylineId, OpenMode::ForRead)->getGeomExtents(extents),
              ErrorStatus::eOk);
    EXPECT_TRUE(extents.maxPoint.isEqualTo({1, 1, 2}));
    EXPECT_EQ(db.openObjectCount(), 0);
}

}  // namespace
}  // namespace cad::db
