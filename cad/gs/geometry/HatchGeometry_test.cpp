// Hatch geometry from definition tags: which loops take part under each island style, the
// pattern cut to them (measured by the area its lines cover), boundary edges of every kind,
// the refusal of patterns too dense to draw, and damaged definitions.
#include "cad/gs/geometry/HatchGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "cad/db/Database.h"
#include "cad/db/Hatch.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/TestDrawing.h"

namespace cad::gs {
namespace {

using db::testing_support::rowName;
using db::testing_support::tagsOf;
constexpr double kPi = std::numbers::pi;

std::string square(double x0, double y0, double x1, double y1, int flags = 2) {
    auto n = [](double v) { return std::to_string(v); };
    return "92 " + std::to_string(flags | 2) + " 72 0 73 1 93 4 10 " + n(x0) + " 20 " + n(y0) +
           " 10 " + n(x1) + " 20 " + n(y0) + " 10 " + n(x1) + " 20 " + n(y1) + " 10 " + n(x0) +
           " 20 " + n(y1) + " 97 0 ";
}

// Horizontal lines 0.1 apart, none through a corner of the squares above.
const char* const kHorizontal = "78 1 53 0 43 0 44 0.05 45 0 46 0.1 79 0";
const char* const kAnsi31 =
    "78 1 53 45 43 0 44 0 45 -0.0883883476483184 46 0.0883883476483184 79 0";

db::Hatch hatchOf(const std::string& tags, bool solid = false) {
    db::Hatch hatch;
    EXPECT_EQ(hatch.setSolidFill(solid), ErrorStatus::eOk);
    EXPECT_EQ(hatch.setDefinitionTags(tagsOf(tags)), ErrorStatus::eOk);
    return hatch;
}

double area(const Polyline2d& loop) {
    double twice = 0.0;
    for (std::size_t i = 0, j = loop.size() - 1; i < loop.size(); j = i++)
        twice += loop[j].x * loop[i].y - loop[i].x * loop[j].y;
    return std::abs(twice) / 2.0;
}

double length(const Segment2d& s) {
    return s.start.distanceTo(s.end);
}

bool inRect(const ge::Point2d& p, double x0, double y0, double x1, double y1) {
    return p.x > x0 && p.x < x1 && p.y > y0 && p.y < y1;
}

struct IslandRow {
    const char* name;
    int style;
    int outerFlags, islandFlags, innerFlags;
    std::size_t loops;
    double area;  // what the pattern covers
};

class Islands : public ::testing::TestWithParam<IslandRow> {};

// A square with an island holding a smaller island: the pattern's lines, times their
// spacing, cover exactly the area the style leaves filled, and no dash lies where it must not.
TEST_P(Islands, StyleChoosesTheLoopsAndThePatternFillsTheirParity) {
    const IslandRow& row = GetParam();
    const std::string paths = "91 3 " + square(0, 0, 10, 10, row.outerFlags) +
                              square(2, 2, 8, 8, row.islandFlags) +
                              square(4, 4, 6, 6, row.innerFlags);
    const std::string style = "75 " + std::to_string(row.style) + " 76 1 52 0 41 1 77 0 ";
    const HatchGeometry solid = hatchGeometry(hatchOf(paths + style, true), 1e-3, 1000);
    EXPECT_TRUE(solid.solid);
    EXPECT_EQ(solid.loops.size(), row.loops);
    EXPECT_TRUE(solid.segments.empty());

    const HatchGeometry pattern = hatchGeometry(hatchOf(paths + style + kHorizontal), 1e-3, 1000);
    EXPECT_FALSE(pattern.solid);
    EXPECT_EQ(pattern.loops.size(), row.loops);
    double covered = 0.0;
    for (const Segment2d& s : pattern.segments) {
        covered += length(s) * 0.1;
        const ge::Point2d middle{(s.start.x + s.end.x) / 2, (s.start.y + s.end.y) / 2};
        const bool inIsland = inRect(middle, 2, 2, 8, 8) && !inRect(middle, 4, 4, 6, 6);
        const bool inInner = inRect(middle, 4, 4, 6, 6);
        EXPECT_TRUE(inRect(middle, 0, 0, 10, 10));
        if (row.loops >= 2) {
            EXPECT_FALSE(inIsland) << middle.x << "," << middle.y;
        }
        if (row.loops == 2) {
            EXPECT_FALSE(inInner) << middle.x << "," << middle.y;
        }
    }
    EXPECT_NEAR(covered, row.area, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Islands,
    ::testing::Values(IslandRow{"normal", 0, 0, 0, 0, 3, 100 - 36 + 4},
                      IslandRow{"outermost_by_nesting", 1, 0, 0, 0, 2, 100 - 36},
                      IslandRow{"ignore_by_nesting", 2, 0, 0, 0, 1, 100},
                      IslandRow{"outermost_by_flags", 1, 1, 16, 0, 2, 100 - 36},
                      IslandRow{"ignore_by_flags", 2, 1, 16, 0, 1, 100},
                      IslandRow{"unknown_style_is_normal", 7, 0, 0, 0, 3, 100 - 36 + 4}),
    rowName);

TEST(HatchPattern, Ansi31IsCutToTheSquare) {
    const HatchGeometry g = hatchGeometry(
        hatchOf("91 1 " + square(0, 0, 1, 1) + "75 0 76 1 52 0 41 1 77 0 " + kAnsi31), 1e-4, 1000);
    // Across the square the 45 degree lines span 1.414, 0.125 apart: lines -5..5.
    ASSERT_EQ(g.segments.size(), 11u);
    double covered = 0.0;
    for (const Segment2d& s : g.segments) {
        covered += length(s) * 0.125;
        for (const ge::Point2d& p : {s.start, s.end}) {
            const double toEdge =
                std::min({std::abs(p.x), std::abs(p.y), std::abs(1 - p.x), std::abs(1 - p.y)});
            EXPECT_LT(toEdge, 1e-12) << p.x << "," << p.y;
            EXPECT_TRUE(p.x > -1e-12 && p.x < 1 + 1e-12 && p.y > -1e-12 && p.y < 1 + 1e-12);
        }
    }
    EXPECT_NEAR(covered, 1.0, 0.02);
}

TEST(HatchPattern, DashesStartAtEachLinesOrigin) {
    const struct {
        const char* name;
        const char* line;
        std::size_t count;
        double total;  // length of all dashes
    } rows[] = {
        // Lines at y = 0.5 .. 9.5; dash 1, gap 1 from x = 0: dashes [0,1], [2,3] .. [8,9].
        {"dash from the base", "78 1 53 0 43 0 44 0.5 45 0 46 1 79 2 49 1 49 -1", 50, 50},
        // From x = 0.5 the first dash is [0.5, 1.5] and the last [8.5, 9.5].
        {"base shifted along", "78 1 53 0 43 0.5 44 0.5 45 0 46 1 79 2 49 1 49 -1", 50, 50},
        // Each next line starts half a dash later: lines 3 and 7 begin and end with half dashes.
        {"offset along the line", "78 1 53 0 43 0 44 0.5 45 0.5 46 1 79 2 49 1 49 -1", 52, 50},
        // Dots at x = 0, 1 .. 9 (the far edge ends the line), each a dash of the tolerance.
        {"dots", "78 1 53 0 43 0 44 0.5 45 0 46 1 79 2 49 0 49 -1", 100, 100 * 1e-3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const HatchGeometry g = hatchGeometry(
            hatchOf("91 1 " + square(0, 0, 10, 10) + "75 0 76 1 52 0 41 1 77 0 " + row.line), 1e-3,
            1000);
        EXPECT_EQ(g.segments.size(), row.count);
        double total = 0.0;
        for (const Segment2d& s : g.segments) total += length(s);
        EXPECT_NEAR(total, row.total, 1e-9);
    }
}

TEST(HatchPattern, TooDenseIsRefusedBeforeItIsMade) {
    const std::string big = "91 1 " + square(0, 0, 1000, 1000) + "75 0 76 1 52 0 41 1 77 0 ";
    // 11 314 lines of ANSI31 across the square.
    EXPECT_TRUE(hatchGeometry(hatchOf(big + kAnsi31), 1e-2, 1000).segments.empty());
    EXPECT_EQ(hatchGeometry(hatchOf(big + kAnsi31), 1e-2, 1000).loops.size(), 1u);
    EXPECT_GT(hatchGeometry(hatchOf(big + kAnsi31), 1e-2, 20000).segments.size(), 11000u);
    // Few lines, but fifty thousand dashes on each.
    const std::string dashed = big + "78 1 53 0 43 0 44 0.5 45 0 46 100 79 2 49 0.01 49 -0.01";
    EXPECT_TRUE(hatchGeometry(hatchOf(dashed), 1e-2, 200000).segments.empty());
}

struct EdgeRow {
    const char* name;
    const char* paths;
    double area, areaError;
    double minY, maxY;
    ge::Point2d onLoop;  // a point the boundary must pass through
};

class BoundaryEdges : public ::testing::TestWithParam<EdgeRow> {};

TEST_P(BoundaryEdges, FlattenToTheirArea) {
    const EdgeRow& row = GetParam();
    const HatchGeometry g =
        hatchGeometry(hatchOf(std::string(row.paths) + " 75 0 76 1", true), 1e-5, 1000);
    ASSERT_EQ(g.loops.size(), 1u);
    EXPECT_NEAR(area(g.loops[0]), row.area, row.areaError);
    double minY = 1e300, maxY = -1e300, nearest = 1e300;
    for (const ge::Point2d& p : g.loops[0]) {
        minY = std::min(minY, p.y);
        maxY = std::max(maxY, p.y);
        nearest = std::min(nearest, p.distanceTo(row.onLoop));
    }
    EXPECT_NEAR(minY, row.minY, 1e-5);
    EXPECT_NEAR(maxY, row.maxY, 1e-5);
    EXPECT_LT(nearest, 1e-2);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, BoundaryEdges, ::testing::Values(
    EdgeRow{"ccw_arc", "91 1 92 1 93 2 72 1 10 -1 20 0 11 1 21 0 "
            "72 2 10 0 20 0 40 1 50 0 51 180 73 1 97 0", kPi / 2, 1e-4, 0, 1, {0, 1}},
    // Clockwise from 180 to 0 degrees over the top: stored as 360 - angle.
    EdgeRow{"clockwise_arc", "91 1 92 1 93 2 72 2 10 0 20 0 40 1 50 180 51 360 73 0 "
            "72 1 10 1 20 0 11 -1 21 0 97 0", kPi / 2, 1e-4, 0, 1, {0, 1}},
    EdgeRow{"edges_out_of_turn", "91 1 92 1 93 2 72 1 10 1 20 0 11 -1 21 0 "
            "72 2 10 0 20 0 40 1 50 0 51 180 73 1 97 0", kPi / 2, 1e-4, 0, 1, {0, 1}},
    EdgeRow{"full_circle", "91 1 92 1 93 1 72 2 10 0 20 0 40 1 50 0 51 360 73 1 97 0",
            kPi, 1e-4, -1, 1, {-1, 0}},
    EdgeRow{"ellipse", "91 1 92 1 93 1 72 3 10 0 20 0 11 2 21 0 40 0.5 50 0 51 360 73 1 97 0",
            2 * kPi, 1e-4, -1, 1, {-2, 0}},
    // The stored ends are angles seen from the centre: 45 degrees meets the ellipse at
    // (0.894, 0.894), not at the point of parameter 45 degrees.
    EdgeRow{"ellipse_sector", "91 1 92 1 93 3 72 3 10 0 20 0 11 2 21 0 40 0.5 50 0 51 45 73 1 "
            "72 1 10 0.894427191 20 0.894427191 11 0 21 0 72 1 10 0 20 0 11 2 21 0 97 0",
            std::atan(2.0), 1e-4, 0, 0.894427191, {0.894427191, 0.894427191}},
    EdgeRow{"polyline_with_bulges", "91 1 92 2 72 1 73 1 93 2 10 -1 20 0 42 1 10 1 20 0 42 1 97 0",
            kPi, 1e-4, -1, 1, {0, 1}},
    EdgeRow{"rational_spline_edge",
            "91 1 92 1 93 3 72 4 94 2 73 1 74 0 95 6 96 3 40 0 40 0 40 0 40 1 40 1 40 1 "
            "10 1 20 0 42 1 10 1 20 1 42 0.7071067811865476 10 0 20 1 42 1 "
            "72 1 10 0 20 1 11 0 21 0 72 1 10 0 20 0 11 1 21 0 97 0",
            kPi / 4, 1e-4, 0, 1, {std::sqrt(0.5), std::sqrt(0.5)}},
    // Symmetric about its middle fit point, and close to the parabola through the three.
    EdgeRow{"fit_point_spline_edge",
            "91 1 92 1 93 2 72 4 94 3 73 0 74 0 95 0 96 0 97 3 11 0 21 0 11 1 21 1 11 2 21 0 "
            "72 1 10 2 20 0 11 0 21 0 97 0", 4.0 / 3.0, 0.03, 0, 1, {1, 1}}),
    rowName);
// clang-format on

TEST(HatchPlacement, ObjectCoordinatesAreTurnedIntoTheWorld) {
    db::Hatch hatch = hatchOf("91 1 " + square(0, 0, 1, 2) + "75 0 76 1 52 0 41 1 77 0 " + kAnsi31);
    ASSERT_EQ(hatch.setNormal({0, 0, -1}), ErrorStatus::eOk);
    ASSERT_EQ(hatch.setElevation(5), ErrorStatus::eOk);
    const HatchGeometry g = hatchGeometry(hatch, 1e-4, 1000);
    ASSERT_EQ(g.loops.size(), 1u);
    ASSERT_FALSE(g.segments.empty());
    // The system of the normal (0, 0, -1) has the world's -x as its x axis.
    for (const ge::Point2d& p : g.loops[0])
        EXPECT_TRUE(p.x <= 0 && p.x >= -1 && p.y >= 0 && p.y <= 2);
    for (const Segment2d& s : g.segments)
        for (const ge::Point2d& p : {s.start, s.end})
            EXPECT_TRUE(p.x <= 1e-12 && p.x >= -1 - 1e-12) << p.x;
    // Mirrored, the 45 degree lines run at 135 degrees.
    const Segment2d& s = g.segments.front();
    EXPECT_NEAR((s.end.y - s.start.y) / (s.end.x - s.start.x), -1.0, 1e-9);
}

struct DamagedRow {
    const char* name;
    std::string tags;
    std::size_t loops;
    bool segments;
};

class DamagedHatch : public ::testing::TestWithParam<DamagedRow> {};

TEST_P(DamagedHatch, KeepsWhatItCanRead) {
    const DamagedRow& row = GetParam();
    const HatchGeometry g = hatchGeometry(hatchOf(row.tags), 1e-3, 100000);
    EXPECT_EQ(g.loops.size(), row.loops);
    EXPECT_EQ(!g.segments.empty(), row.segments);
    for (const Polyline2d& loop : g.loops)
        for (const ge::Point2d& p : loop) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
}

const std::string kSquare = square(0, 0, 1, 1);
const std::string kHead = "75 0 76 1 52 0 41 1 77 0 ";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, DamagedHatch, ::testing::Values(
    DamagedRow{"intact", "91 1 " + kSquare + kHead + kAnsi31, 1, true},
    DamagedRow{"no_tags", "", 0, false},
    DamagedRow{"truncated_path", "91 1 92 2 72 0 73 1 93 4 10 0 20 0 10 1", 0, false},
    DamagedRow{"second_path_unknown_edge",
               "91 2 " + kSquare + "92 1 93 1 72 9 10 0 20 0 " + kHead + kAnsi31, 1, true},
    DamagedRow{"path_count_huge", "91 2000000000 " + kSquare + kHead + kAnsi31, 1, true},
    DamagedRow{"path_count_text", "91 many " + kSquare + kHead + kAnsi31, 0, false},
    DamagedRow{"source_count_beyond_tags",
               "91 1 92 2 72 0 73 1 93 3 10 0 20 0 10 1 20 0 10 1 20 1 97 5 330 1F", 0, false},
    DamagedRow{"arc_radius_negative", "91 1 92 1 93 2 72 2 10 0 20 0 40 -1 50 0 51 90 73 1 "
               "72 1 10 0 20 0 11 1 21 1 97 0 " + kHead + kAnsi31, 1, false},
    DamagedRow{"spline_edge_degree_99", "91 1 92 1 93 1 72 4 94 99 73 0 74 0 95 2 96 3 40 0 40 1 "
               "10 0 20 0 10 1 20 0 10 1 20 1 97 0 " + kHead + kAnsi31, 1, true},
    DamagedRow{"offset_zero", "91 1 " + kSquare + kHead + "78 1 53 45 43 0 44 0 45 0 46 0 79 0",
               1, false},
    DamagedRow{"offset_along_the_line",
               "91 1 " + kSquare + kHead + "78 1 53 0 43 0 44 0 45 0.5 46 0 79 0", 1, false},
    DamagedRow{"scale_zero", "91 1 " + kSquare + "75 0 76 1 52 0 41 0 77 0 " + kAnsi31, 1, false},
    DamagedRow{"pattern_lines_missing",
               "91 1 " + kSquare + kHead + "78 2 53 0 43 0 44 0 45 0 46 1 79 0", 1, false},
    DamagedRow{"dash_count_huge",
               "91 1 " + kSquare + kHead + "78 1 53 0 43 0 44 0 45 0 46 1 79 99999999 49 1", 1,
               false}),
    rowName);
// clang-format on

// Hatches another program wrote: every one gives finite loops that enclose an area.
TEST(HatchFromFile, EveryHatchOfTheSampleHasItsLoops) {
    db::Database db(false);
    ASSERT_EQ(
        db.readDwgFile(std::string(VANTOR_SOURCE_DIR) + "/testdata/corpus/ezdxf__hatches_1.dxf"),
        ErrorStatus::eOk)
        << db.lastErrorMessage();
    int hatches = 0;
    for (db::ObjectId id : db::testing_support::entitiesOf(db.modelSpaceId())) {
        const auto hatch = db::open<db::Hatch>(id, db::OpenMode::ForRead);
        if (!hatch) continue;
        ++hatches;
        const HatchGeometry g = hatchGeometry(*hatch, 1e-3, 200000);
        ASSERT_FALSE(g.loops.empty());
        double total = 0.0;
        for (const Polyline2d& loop : g.loops) {
            EXPECT_GE(loop.size(), 3u);
            total += area(loop);
        }
        EXPECT_GT(total, 0.0);
    }
    EXPECT_EQ(hatches, 10);
}

}  // namespace
}  // namespace cad::gs
