// The host program's options: what each sets and what is refused.
#include "HostOptions.h"

#include <gtest/gtest.h>

namespace vantorcad {
namespace {

TEST(HostOptions, RepeatableOptionsKeepTheirOrderAndScriptImpliesHeadless) {
    std::string error;
    auto options = HostOptions::parse({"--load", "a.so", "--open", "x.dxf", "--load", "b.so",
                                       "--sdi", "1", "--script", "run.script", "--open", "y.dxf"},
                                      error);
    ASSERT_TRUE(options) << error;
    EXPECT_EQ(options->modules, (std::vector<std::string>{"a.so", "b.so"}));
    EXPECT_EQ(options->drawings, (std::vector<std::string>{"x.dxf", "y.dxf"}));
    EXPECT_EQ(options->sdi, 1);
    EXPECT_EQ(options->script, "run.script");
    EXPECT_TRUE(options->headless);
    EXPECT_FALSE(options->help);

    auto gui = HostOptions::parse({}, error);
    ASSERT_TRUE(gui);
    EXPECT_FALSE(gui->headless);
    EXPECT_FALSE(gui->sdi);
}

struct RefusedCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* error;
};

class RefusedOptions : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedOptions, SayWhatIsWrong) {
    std::string error;
    EXPECT_FALSE(HostOptions::parse(GetParam().arguments, error));
    EXPECT_EQ(error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Options, RefusedOptions,
    testing::Values(RefusedCase{"unknown", {"--verbose"}, "unknown option \"--verbose\""},
                    RefusedCase{"missingValue", {"--headless", "--load"}, "--load needs a value"},
                    RefusedCase{"sdiNotABoolean", {"--sdi", "2"}, "--sdi takes 0 or 1, not \"2\""}),
    [](const testing::TestParamInfo<RefusedCase>& row) { return row.param.name; });

}  // namespace
}  // namespace vantorcad
