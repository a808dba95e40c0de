// The tool-bar label rule on the shapes the string table holds.
#include "vantor/host/ToolbarLabel.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(ToolbarLabel, IsTheLastNonEmptyPiece) {
    const std::pair<const char*, const char*> rows[] = {
        {"창이 항상 보이도록 설정/해제 합니다-항상 위", "항상 위"},
        {"도움말", "도움말"},
        {"폴더를 검색하여 도면을 자동으로 등록합니다--자동등록", "자동등록"},
        {"R14-용 도면을 만듭니다-변환", "변환"},  // a dash in the prompt
        {"도면을 엽니다-도면열기-", "도면열기"},
        {"", ""},
        {"--", ""},
    };
    for (const auto& [entry, label] : rows) EXPECT_EQ(toolbarLabel(entry), label) << entry;
}

}  // namespace
}  // namespace vantor
