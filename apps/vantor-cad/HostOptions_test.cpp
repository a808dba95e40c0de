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

TEST(HostOptions, RefusalsSayWhatIsWrong) {
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{"--verbose"}, "unknown option \"--verbose\""},
        {{"--headless", "--load"}, "--load needs a value"},
        {{"--sdi", "2"}, "--sdi takes 0 or 1, not \"2\""},
    };
    for (const auto& [arguments, expected] : rows) {
        std::string error;
        EXPECT_FALSE(HostOptions::parse(arguments, error)) << expected;
        EXPECT_EQ(error, expected);
    }
}

}  // namespace
}  // namespace vantorcad
