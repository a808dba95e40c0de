// Curve flattening: arcs from bulges and splines of every kind, checked against the exact
// curve (ends, distance from it, chord error) rather than against stored point lists.
#include "cad/gs/geometry/CurveFlattening.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Spline.h"
#include "cad/db/TestDrawing.h"
#include "cad/gs/geometry/NurbsCurve.h"

namespace cad::gs {
namespace {

using db::testing_support::rowName;
constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double distanceToPolyline(const ge::Point3d& p, const std::vector<ge::Point3d>& line) {
    double best = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const ge::Vector3d ab = line[i + 1] - line[i];
        const double t = ab.lengthSqrd() > 0.0
                             ? std::clamp((p - line[i]).dotProduct(ab) / ab.lengthSqrd(), 0.0, 1.0)
                             : 0.0;
        best = std::min(best, p.distanceTo(line[i] + ab * t));
    }
    return line.size() == 1 ? p.distanceTo(line[0]) : best;
}

struct BulgeRow {
    const char* name;
    ge::Point2d from, to;
    double bulge, tolerance;
    ge::Point2d center;
    double radius;
};

class BulgeArc : public ::testing::TestWithParam<BulgeRow> {};

// Every point on the circle, the chords within the tolerance of it, and the arc turning by
// the included angle the bulge names, in its sense.
TEST_P(BulgeArc, LiesOnItsCircleWithinTheChordError) {
    const BulgeRow& row = GetParam();
    const auto points = flattenBulge(row.from, row.to, row.bulge, row.tolerance);
    ASSERT_GE(points.size(), 3u);
    EXPECT_EQ(points.front().x, row.from.x);
    EXPECT_EQ(points.front().y, row.from.y);
    EXPECT_EQ(points.back().x, row.to.x);
    EXPECT_EQ(points.back().y, row.to.y);
    double turned = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_NEAR(points[i].distanceTo(row.center), row.radius, row.radius * 1e-9) << i;
        if (i == 0) continue;
        const ge::Point2d& a = points[i - 1];
        const ge::Point2d& b = points[i];
        const ge::Point2d middle{(a.x + b.x) / 2, (a.y + b.y) / 2};
        EXPECT_LE(row.radius - middle.distanceTo(row.center), row.tolerance * (1 + 1e-9)) << i;
        const double ax = a.x - row.center.x, ay = a.y - row.center.y;
        const double bx = b.x - row.center.x, by = b.y - row.center.y;
        turned += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
    }
    EXPECT_NEAR(turned, 4 * std::atan(row.bulge), 1e-9);
    EXPECT_LE(points.size(), 8192u);
}

const double kQuarter = std::tan(kPi / 8);

INSTANTIATE_TEST_SUITE_P(
    Rows, BulgeArc,
    ::testing::Values(BulgeRow{"semicircle", {1, 0}, {-1, 0}, 1.0, 1e-3, {0, 0}, 1},
                      BulgeRow{"quarter", {1, 0}, {0, 1}, kQuarter, 1e-4, {0, 0}, 1},
                      BulgeRow{"negative_quarter", {0, 1}, {1, 0}, -kQuarter, 1e-4, {0, 0}, 1},
                      BulgeRow{"clockwise_semicircle", {10, 5}, {12, 5}, -1.0, 1e-3, {11, 5}, 1},
                      BulgeRow{"nearly_full_circle",
                               {1, 0},
                               {std::cos(-0.1), std::sin(-0.1)},
                               std::tan((2 * kPi - 0.1) / 4),
                               1e-3,
                               {0, 0},
                               1},
                      BulgeRow{"tiny", {0, 0}, {1e-3, 0}, 1.0, 1e-6, {5e-4, 0}, 5e-4}),
    rowName);

TEST(BulgeArc, DegenerateInputGivesTheChordOrLittleElse) {
    // Bulges too flat to leave the chord, and input that is not numbers, draw straight.
    EXPECT_EQ(flattenBulge({0, 0}, {1, 0}, 1e-9, 1e-6).size(), 2u);
    EXPECT_EQ(flattenBulge({0, 0}, {1, 0}, 0.0, 1e-6).size(), 2u);
    EXPECT_EQ(flattenBulge({0, 0}, {1, 0}, kNaN, 1e-6).size(), 2u);
    EXPECT_EQ(flattenBulge({0, 0}, {1, 0}, std::numeric_limits<double>::infinity(), 1e-6).size(),
              2u);
    EXPECT_EQ(flattenBulge({kNaN, 0}, {1, 0}, 0.5, 1e-6).size(), 2u);
    EXPECT_EQ(flattenBulge({2, 2}, {2, 2}, 1.0, 1e-6).size(), 2u);
    EXPECT_LE(flattenBulge({0, 0}, {1, 0}, 0.5, kNaN).size(), 8192u);
    EXPECT_EQ(flattenBulge({1, 0}, {-1, 0}, 1.0, 1e-300).size(), 8192u);
    EXPECT_LE(flattenBulge({0, 0}, {1, 0}, 0.5, -1.0).size(), 8192u);
}

// ---- Splines ----

std::unique_ptr<db::Spline> nurbs(int degree, std::vector<ge::Point3d> points,
                                  std::vector<double> knots, std::vector<double> weights = {},
                                  std::int16_t flags = 0) {
    auto spline = std::make_unique<db::Spline>();
    EXPECT_EQ(spline->setNurbsData(static_cast<std::int16_t>(degree), flags, std::move(points),
                                   std::move(knots), std::move(weights)),
              ErrorStatus::eOk);
    return spline;
}

TEST(SplineFlattening, DegreeOneIsItsControlPolygon) {
    const std::vector<ge::Point3d> polygon{{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {3, 1, 1}};
    const auto points = flattenSpline(*nurbs(1, polygon, {0, 0, 1, 2, 5, 5}), 1e-6);
    for (const ge::Point3d& p : points) EXPECT_LT(distanceToPolyline(p, polygon), 1e-12);
    for (const ge::Point3d& corner : polygon) EXPECT_LT(distanceToPolyline(corner, points), 1e-12);
    EXPECT_LE(points.size(), 4u * 4u + 1u);  // straight pieces need no refinement
}

TEST(SplineFlattening, ClampedCubicStartsAndEndsAtItsEndPointsWithinTolerance) {
    const std::vector<ge::Point3d> controls{{0, 0, 0},  {1, 3, 0}, {4, 3, 0},
                                            {5, -2, 0}, {8, 0, 0}, {9, 4, 2}};
    const std::vector<double> knots{0, 0, 0, 0, 0.3, 0.5, 1, 1, 1, 1};
    for (double tolerance : {1e-2, 1e-4, 1e-7}) {
        SCOPED_TRACE(tolerance);
        const auto points = flattenSpline(*nurbs(3, controls, knots), tolerance);
        db::testing_support::expectPoint(points.front(), controls.front());
        db::testing_support::expectPoint(points.back(), controls.back());
        const auto curve = NurbsCurve::fromControlPoints(3, controls, knots, {}, false);
        ASSERT_TRUE(curve);
        for (int i = 0; i <= 2000; ++i)
            EXPECT_LE(distanceToPolyline(curve->pointAt(i / 2000.0), points), tolerance * 1.001);
    }
}

TEST(SplineFlattening, RationalQuadraticsStayOnTheirCircle) {
    const double w = std::sqrt(0.5);
    // A quarter, and a whole circle of four quarters with double interior knots.
    const auto quarter = flattenSpline(
        *nurbs(2, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 0, 0, 1, 1, 1}, {1, w, 1}), 1e-4);
    const std::vector<ge::Point3d> corners{{1, 0, 0},  {1, 1, 0},  {0, 1, 0},
                                           {-1, 1, 0}, {-1, 0, 0}, {-1, -1, 0},
                                           {0, -1, 0}, {1, -1, 0}, {1, 0, 0}};
    const auto circle = flattenSpline(
        *nurbs(2, corners, {0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 4}, {1, w, 1, w, 1, w, 1, w, 1}),
        1e-4);
    for (const auto* points : {&quarter, &circle}) {
        ASSERT_GE(points->size(), 3u);
        for (std::size_t i = 0; i < points->size(); ++i) {
            EXPECT_NEAR(ge::Vector3d((*points)[i].asVector()).length(), 1.0, 1e-12);
            if (i > 0) {
                const ge::Point3d middle =
                    (*points)[i - 1] + ((*points)[i] - (*points)[i - 1]) * 0.5;
                EXPECT_GE(middle.asVector().length(), 1.0 - 1e-4 * 1.001);
            }
        }
    }
    EXPECT_NEAR(circle.back().x, 1.0, 1e-12);
    EXPECT_NEAR(circle.back().y, 0.0, 1e-12);
    // The chord error of 1e-4 on a unit circle asks for about 2 pi / 0.028 = 222 chords.
    EXPECT_LT(circle.size(), 600u);
}

TEST(SplineFlattening, FitPointSplinesPassThroughTheirFitPoints) {
    const std::vector<ge::Point3d> fits{{0, 0, 0}, {1, 2, 0}, {3, 3, 0}, {4, 0, 0}, {6, 1, 0}};
    const struct {
        const char* name;
        std::vector<ge::Point3d> fits;
        ge::Vector3d start, end;
    } rows[] = {
        {"estimated tangents", fits, {}, {}},
        {"given tangents", fits, {0, 1, 0}, {1, 0, 0}},
        {"two points", {{0, 0, 0}, {2, 2, 0}}, {}, {}},
        {"three points", {{0, 0, 0}, {2, 2, 0}, {4, 0, 0}}, {}, {}},
        {"repeated point", {{0, 0, 0}, {1, 1, 0}, {1, 1, 0}, {3, 0, 0}}, {}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        db::Spline spline;
        ASSERT_EQ(spline.setFitData(row.fits, 3, 0.0, row.start, row.end), ErrorStatus::eOk);
        const auto points = flattenSpline(spline, 1e-4);
        ASSERT_GE(points.size(), 2u);
        db::testing_support::expectPoint(points.front(), row.fits.front());
        db::testing_support::expectPoint(points.back(), row.fits.back());
        for (const ge::Point3d& fit : row.fits) EXPECT_LT(distanceToPolyline(fit, points), 1e-4);
        if (!row.start.isZeroLength()) {
            const ge::Vector3d first = (points[1] - points[0]).normal();
            const ge::Vector3d last = (points.back() - points[points.size() - 2]).normal();
            EXPECT_GT(first.dotProduct(row.start.normal()), 0.999);
            EXPECT_GT(last.dotProduct(row.end.normal()), 0.999);
        }
    }
}

// A closed curve given by one period of knots: four points of a square, turned into the
// smooth loop that runs round the square's centre.
TEST(SplineFlattening, PeriodicKnotsMakeAClosedCurve) {
    const std::vector<ge::Point3d> square{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
    const auto curve = NurbsCurve::fromControlPoints(3, square, {0, 1, 2, 3, 4}, {}, true);
    ASSERT_TRUE(curve);
    const auto points = curve->flatten(1e-5, 16384);
    ASSERT_GE(points.size(), 8u);
    db::testing_support::expectPoint(points.front(), points.back());
    for (const ge::Point3d& p : points) {
        const double r = p.distanceTo({1, 1, 0});
        EXPECT_GT(r, 0.6);
        EXPECT_LT(r, 1.0);
    }
}

// Splines as damaged files bring them (the engine reads without judging the data).
db::ObjectId readSpline(db::Database& db, const std::string& body) {
    const std::string dxf =
        "0\nSECTION\n2\nENTITIES\n0\nSPLINE\n8\n0\n100\nAcDbEntity\n"
        "100\nAcDbSpline\n" +
        body + "0\nENDSEC\n0\nEOF\n";
    EXPECT_EQ(db.readDxfBytes(dxf, "spline.dxf"), ErrorStatus::eOk) << db.lastErrorMessage();
    const auto ids = db::testing_support::entitiesOf(db.modelSpaceId());
    return ids.empty() ? db::ObjectId{} : ids.front();
}

// A closed fit-point spline comes back to its first point without a corner there.
TEST(SplineFlattening, ClosedFitPointSplineJoinsSmoothly) {
    db::Database db(false);
    const db::ObjectId id = readSpline(db,
                                       "70\n9\n71\n3\n11\n0\n21\n0\n31\n0\n11\n4\n21\n0\n31\n0\n"
                                       "11\n4\n21\n4\n31\n0\n11\n0\n21\n4\n31\n0\n");
    const auto spline = db::open<db::Spline>(id, db::OpenMode::ForRead);
    ASSERT_TRUE(spline);
    const auto points = flattenSpline(*spline, 1e-4);
    ASSERT_GE(points.size(), 8u);
    db::testing_support::expectPoint(points.front(), {0, 0, 0});
    db::testing_support::expectPoint(points.back(), {0, 0, 0});
    const ge::Vector3d leaving = (points[1] - points[0]).normal();
    const ge::Vector3d arriving = (points.back() - points[points.size() - 2]).normal();
    EXPECT_GT(leaving.dotProduct(arriving), 0.99);
    for (const ge::Point3d& corner :
         {ge::Point3d{4, 0, 0}, ge::Point3d{4, 4, 0}, ge::Point3d{0, 4, 0}})
        EXPECT_LT(distanceToPolyline(corner, points), 1e-4);
}

struct DamagedRow {
    const char* name;
    const char* body;
    std::vector<ge::Point3d> expected;  // the polyline drawn, or points it must pass through
    bool exact;                         // the drawing is exactly `expected`
};

class DamagedSpline : public ::testing::TestWithParam<DamagedRow> {};

TEST_P(DamagedSpline, FallsBackToAPolylineOrItsFitPoints) {
    const DamagedRow& row = GetParam();
    db::Database db(false);
    const db::ObjectId id = readSpline(db, row.body);
    ASSERT_FALSE(id.isNull());
    const auto spline = db::open<db::Spline>(id, db::OpenMode::ForRead);
    ASSERT_TRUE(spline);
    const auto points = flattenSpline(*spline, 1e-4);
    if (row.exact) {
        ASSERT_EQ(points.size(), row.expected.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            db::testing_support::expectPoint(points[i], row.expected[i]);
    } else {
        for (const ge::Point3d& p : row.expected) EXPECT_LT(distanceToPolyline(p, points), 1e-4);
    }
}

#define CONTROLS \
    "10\n0\n20\n0\n30\n0\n10\n1\n20\n1\n30\n0\n10\n2\n20\n0\n30\n0\n10\n3\n20\n1\n30\n0\n"
#define FITS "11\n0\n21\n0\n31\n0\n11\n1\n21\n2\n31\n0\n11\n3\n21\n1\n31\n0\n"
const std::vector<ge::Point3d> kPolygon{{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}};
const std::vector<ge::Point3d> kFits{{0, 0, 0}, {1, 2, 0}, {3, 1, 0}};

INSTANTIATE_TEST_SUITE_P(
    Rows, DamagedSpline,
    ::testing::Values(
        DamagedRow{"knot_count_short", "70\n8\n71\n3\n40\n0\n40\n0\n40\n1\n40\n1\n" CONTROLS,
                   kPolygon, true},
        DamagedRow{
            "knots_decreasing",
            "70\n8\n71\n3\n40\n0\n40\n0\n40\n0\n40\n0\n40\n1\n40\n0.5\n40\n1\n40\n1\n" CONTROLS,
            kPolygon, true},
        DamagedRow{"degree_0", "70\n8\n71\n0\n40\n0\n40\n1\n40\n2\n40\n3\n40\n4\n" CONTROLS,
                   kPolygon, true},
        DamagedRow{"degree_25", "70\n8\n71\n25\n" CONTROLS, kPolygon, true},
        DamagedRow{
            "no_domain",
            "70\n8\n71\n3\n40\n1\n40\n1\n40\n1\n40\n1\n40\n1\n40\n1\n40\n1\n40\n1\n" CONTROLS,
            kPolygon, true},
        DamagedRow{"bad_controls_good_fits", "70\n8\n71\n3\n40\n0\n" CONTROLS FITS, kFits, false},
        DamagedRow{"fits_only", "70\n8\n71\n3\n" FITS, kFits, false},
        DamagedRow{"one_fit_point", "70\n8\n71\n3\n11\n5\n21\n5\n31\n0\n", {{5, 5, 0}}, true}),
    rowName);

}  // namespace
}  // namespace cad::gs
