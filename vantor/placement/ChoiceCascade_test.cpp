// The specification lists narrowing a group down to one record as a user picks name, size and
// material, and the order of their items.
#include "vantor/placement/ChoiceCascade.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

PartRecord part(const char* kname, const char* ename, const char* spec, const char* material) {
    PartRecord record;
    record.kname = kname;
    record.ename = ename;
    record.spec = spec;
    record.material = material;
    return record;
}

class ChoiceCascadeTest : public ::testing::Test {
protected:
    // Names repeat with different sizes and materials, in the order they were entered.
    std::vector<PartRecord> group = {
        part("육각볼트", "Hex bolt", "M10x40", "SS400"),     // 0
        part("육각볼트", "Hex bolt", "M8x30", "SS400"),      // 1
        part("육각볼트", "Hex bolt", "M8x30", "SUS304"),     // 2
        part("렌치볼트", "Socket bolt", "M8x25", "SCM435"),  // 3
        part("육각볼트", "Hex bolt", "M10x40", "SUS304"),    // 4
    };
    std::size_t chosenIndex(const ChoiceCascade& cascade) {
        return static_cast<std::size_t>(cascade.chosen() - cascade.records().data());
    }
};

TEST_F(ChoiceCascadeTest, NarrowsByEachChoiceAndKeepsChoicesThatStillFit) {
    ChoiceCascade cascade(group, 0);
    EXPECT_EQ(cascade.items(0), (std::vector<std::string>{"렌치볼트", "육각볼트"}));
    EXPECT_EQ(cascade.choice(0), "육각볼트");
    EXPECT_EQ(cascade.items(1), (std::vector<std::string>{"M8x30", "M10x40"}));
    EXPECT_EQ(cascade.choice(1), "M10x40");
    EXPECT_EQ(cascade.items(2), (std::vector<std::string>{"SS400", "SUS304"}));
    EXPECT_EQ(cascade.items(6), (std::vector<std::string>{""}));  // empty fields: one empty item
    EXPECT_EQ(chosenIndex(cascade), 0u);

    cascade.select(1, 0);  // M8x30: the material chosen before still fits
    EXPECT_EQ(cascade.choice(2), "SS400");
    EXPECT_EQ(chosenIndex(cascade), 1u);
    cascade.select(2, 1);  // SUS304
    EXPECT_EQ(chosenIndex(cascade), 2u);
    cascade.select(1, 1);  // back to M10x40, still in stainless
    EXPECT_EQ(cascade.choice(2), "SUS304");
    EXPECT_EQ(chosenIndex(cascade), 4u);

    cascade.select(0, 0);  // the socket bolt has none of the sizes chosen: its first
    EXPECT_EQ(cascade.items(1), (std::vector<std::string>{"M8x25"}));
    EXPECT_EQ(chosenIndex(cascade), 3u);

    cascade.setEnglishNames(true);
    EXPECT_EQ(cascade.items(0), (std::vector<std::string>{"Hex bolt", "Socket bolt"}));
    EXPECT_EQ(cascade.choice(0), "Socket bolt");
    EXPECT_EQ(chosenIndex(cascade), 3u);
}

TEST_F(ChoiceCascadeTest, WithoutEarlierChoiceTheFirstItemsLeadToARecord) {
    ChoiceCascade cascade(group);
    EXPECT_EQ(cascade.choice(0), "렌치볼트");
    EXPECT_EQ(chosenIndex(cascade), 3u);
    EXPECT_EQ(ChoiceCascade({}).chosen(), nullptr);
    EXPECT_EQ(ChoiceCascade({}).selection(0), -1);
}

TEST(ChoiceCascade, ItemsSortAsASizeTableReads) {
    const std::pair<const char*, const char*> rows[] = {
        {"M8x30", "M10x25"},  {"0.0078", "0.017"}, {"JIS 10K 25A", "JIS 10K 100A"},
        {"", "A"},            {"M06", "M6"},       {"렌치볼트", "육각볼트"},  // Korean by bytes
    };
    for (const auto& [before, after] : rows) {
        EXPECT_TRUE(ChoiceCascade::itemBefore(before, after)) << before << " < " << after;
        EXPECT_FALSE(ChoiceCascade::itemBefore(after, before)) << before << " < " << after;
    }
}

}  // namespace
}  // namespace vantor
