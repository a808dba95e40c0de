// Structures read ahead on a second thread come out in order and exactly as read one at a
// time; a reader dropped half-way stops its thread; a run that no longer reads ends the items.
#include "cad/db/dxf/ItemReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/db/dxf/StructureLoader.h"

namespace cad::db::dxf {
namespace {

// ENTITIES with `count` points, enough to be read ahead, each with its own handle and x.
std::string manyPoints(int count) {
    std::string text = "  0\nSECTION\n  2\nENTITIES\n";
    for (int i = 0; i < count; ++i) {
        text += "  0\nPOINT\n  5\n" + std::to_string(100 + i) + "\n  8\n0\n 10\n" +
                std::to_string(i) + ".5\n";
    }
    return text + "  0\nENDSEC\n  0\nEOF\n";
}

std::string describe(TagSpan tags) {
    std::string text;
    for (const Tag& tag : tags)
        text += std::to_string(tag.code) + "=" + std::string(tag.value) + ";";
    return text;
}

TEST(ItemReader, ReadsAheadInOrderAsOneAtATime) {
    DxfFile file = DxfFile::fromBytes(manyPoints(5000));
    DxfStructure structure;
    ASSERT_FALSE(StructureLoader::load(file, structure));
    const std::vector<TagRun>& runs = structure.sections.at(0).items;
    ASSERT_EQ(runs.size(), 5000u);
    std::vector<std::string> ahead;
    {
        ItemReader items(file, runs);
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const auto item = items.next();
            ASSERT_TRUE(item) << i;
            ahead.push_back(describe(*item));
        }
        EXPECT_FALSE(items.next()) << "past the last run";
    }
    for (std::size_t i = 0; i < runs.size(); i += 997)
        EXPECT_EQ(ahead[i], describe(*file.tagsOf(runs[i]))) << i;
    EXPECT_EQ(ahead[4999], "0=POINT;5=5099;8=0;10=4999.5;");

    // Dropped after a few: the reading thread is stopped, not waited for to the end.
    ItemReader dropped(file, runs);
    for (int i = 0; i < 3000; ++i) ASSERT_TRUE(dropped.next());
}

TEST(ItemReader, ARunThatNoLongerReadsEndsTheItems) {
    DxfFile file = DxfFile::fromBytes(manyPoints(5000));
    DxfStructure structure;
    ASSERT_FALSE(StructureLoader::load(file, structure));
    std::vector<TagRun> runs = structure.sections.at(0).items;
    runs[2500].start += 3;  // into the middle of a line: as if the file had changed
    ItemReader items(file, runs);
    for (int i = 0; i < 2500; ++i) ASSERT_TRUE(items.next()) << i;
    EXPECT_FALSE(items.next());
}

}  // namespace
}  // namespace cad::db::dxf
