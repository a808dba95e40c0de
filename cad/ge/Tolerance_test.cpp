// The "differs by more than" rule at its boundary, and the global tolerance as the default.
#include "cad/ge/Tolerance.h"

#include <gtest/gtest.h>

#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::ge {
namespace {

TEST(Tolerance, OnlyMoreThanTheToleranceCounts) {
    const struct {
        const char* name;
        double a, b, tol;
        bool differs;
    } rows[] = {{"equal", 1.0, 1.0, 0.0, false},
                {"exactly the tolerance", 1.0, 1.5, 0.5, false},
                {"just over", 1.0, 1.5000001, 0.5, true},
                {"zero tolerance", 1.0, 1.0 + 1e-15, 0.0, true}};
    for (const auto& row : rows) {
        EXPECT_EQ(differs(row.a, row.b, row.tol), row.differs) << row.name;
        EXPECT_EQ(differs(row.b, row.a, row.tol), row.differs) << row.name;
    }
}

TEST(Tolerance, PointsCompareByDistanceVectorsByDifference) {
    const Tolerance tol{5.0, 0.5};
    // A 3-4-5 triangle: distance 5 is within equalPoint, any farther is not.
    EXPECT_FALSE(differs(Point3d(0, 0, 0), Point3d(3, 4, 0), tol));
    EXPECT_TRUE(differs(Point3d(0, 0, 0), Point3d(3, 4, 0.001), tol));
    EXPECT_FALSE(differs(Vector3d(1, 0, 0), Vector3d(1, 0.5, 0), tol));
    EXPECT_TRUE(differs(Vector3d(1, 0, 0), Vector3d(1, 0.5001, 0), tol));
}

TEST(Tolerance, GlobalIsTheDefaultOfEveryComparison) {
    const Tolerance saved = Tolerance::global();
    EXPECT_TRUE(differs(Point3d(0, 0, 0), Point3d(1e-6, 0, 0)));
    Tolerance::setGlobal({1e-5, 1e-5});
    EXPECT_FALSE(differs(Point3d(0, 0, 0), Point3d(1e-6, 0, 0)));
    EXPECT_TRUE(Vector3d(1, 0, 0).isEqualTo(Vector3d(1, 1e-6, 0)));
    Tolerance::setGlobal(saved);
    EXPECT_FALSE(Vector3d(1, 0, 0).isEqualTo(Vector3d(1, 1e-6, 0)));
}

}  // namespace
}  // namespace cad::ge
