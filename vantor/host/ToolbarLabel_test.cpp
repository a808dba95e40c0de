// The tool-bar label rule on the shapes the string table holds.
#include "vantor/host/ToolbarLabel.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

struct LabelCase {
    const char* name;
    const char* entry;
    const char* label;
};

class ToolbarLabel : public testing::TestWithParam<LabelCase> {};

TEST_P(ToolbarLabel, IsTheLastNonEmptyPiece) {
    EXPECT_EQ(toolbarLabel(GetParam().entry), GetParam().label);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, ToolbarLabel,
    testing::Values(LabelCase{"promptThenLabel", "창이 항상 보이도록 설정/해제 합니다-항상 위",
                              "항상 위"},
                    LabelCase{"noDash", "도움말", "도움말"},
                    LabelCase{"twoDashesBeforeTheLabel",
                              "폴더를 검색하여 도면을 자동으로 등록합니다--자동등록", "자동등록"},
                    LabelCase{"dashInThePrompt", "R14-용 도면을 만듭니다-변환", "변환"},
                    LabelCase{"trailingDash", "도면을 엽니다-도면열기-", "도면열기"},
                    LabelCase{"empty", "", ""}, LabelCase{"onlyDashes", "--", ""}),
    [](const testing::TestParamInfo<LabelCase>& row) { return row.param.name; });

}  // namespace
}  // namespace vantor
