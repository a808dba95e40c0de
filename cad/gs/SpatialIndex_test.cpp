// The index must find exactly what a walk over every box finds, wherever the boxes lie.
#include "cad/gs/SpatialIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace cad::gs {
namespace {

std::vector<std::uint32_t> bruteForce(const std::vector<SpatialIndex::Entry>& entries, const Box2d& box) {
    std::vector<std::uint32_t> ids;
    for (const auto& e : entries)
        if (e.box.intersects(box)) ids.push_back(e.id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

TEST(SpatialIndex, FindsWhatAWalkFindsForRandomBoxesAndQueries) {
    std::mt19937 random(7);
    for (double origin : {0.0, -5e7, 1e12}) {
        std::uniform_real_distribution<double> place(origin, origin + 1000.0), size(0.0, 20.0);
        std::vector<SpatialIndex::Entry> entries;
        for (std::uint32_t i = 0; i < 5000; ++i) {
            const double x = place(random), y = place(random);
            entries.push_back({{x, y, x + size(random), y + size(random)}, i});
        }
        const SpatialIndex index(entries);
        for (int q = 0; q < 200; ++q) {
            const double x = place(random), y = place(random), w = size(random) * 10;
            const Box2d query{x, y, x + w, y + w};
            std::vector<std::uint32_t> found;
            index.query(query, found);
            std::sort(found.begin(), found.end());
            // Float boxes rounded outward may find a neighbour a rounding step away, never miss.
            const auto expected = bruteForce(entries, query);
            EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end()))
                << "origin " << origin;
            EXPECT_LE(found.size(), expected.size() + 4) << "origin " << origin;
        }
    }
}

TEST(SpatialIndex, EmptyBoxesAndEmptyQueriesFindNothing) {
    const SpatialIndex index({{Box2d{}, 1}, {{0, 0, 1, 1}, 2}});
    std::vector<std::uint32_t> found;
    index.query(Box2d{}, found);
    EXPECT_TRUE(found.empty());
    index.query({-1e300, -1e300, 1e300, 1e300}, found);
    EXPECT_EQ(found, std::vector<std::uint32_t>{2});
    EXPECT_EQ(index.size(), 1u);
}

}  // namespace
}  // namespace cad::gs
