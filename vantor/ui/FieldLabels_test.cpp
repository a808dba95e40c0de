// The title dialog's rules: the OK warning that still stores everything, and reset writing the
// live settings before the dialog closes.
#include "vantor/ui/FieldLabels.h"

#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;

struct OkRow {
    const char* name;
    std::vector<std::pair<std::size_t, std::string>> edits;
    int firstBlank;
};

class LabelsOk : public testing::TestWithParam<OkRow> {};

TEST_P(LabelsOk, ReportsTheFirstBlankOnceAndStoresAll) {
    ModuleSettings settings;
    FieldLabels::Texts texts = FieldLabels::defaults();
    for (const auto& [index, text] : GetParam().edits) texts[index] = text;
    ScriptedDialogs dialogs;

    EXPECT_EQ(FieldLabels::applyLabels(settings, texts, dialogs), GetParam().firstBlank);
    EXPECT_EQ(settings.labels, texts);
    const auto boxes = dialogs.messageBoxes();
    if (GetParam().firstBlank < 0) {
        EXPECT_TRUE(boxes.empty());
        return;
    }
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "빈 문자열은 입력할 수 없습니다.");
    EXPECT_EQ(boxes[0].title, "빈문자열 에러");
    EXPECT_EQ(boxes[0].icon(), cad::app::MB_ICONERROR);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LabelsOk,
    testing::Values(OkRow{"all_filled", {{FieldLabels::Price, "단가"}}, -1},
                    OkRow{"weight_cleared", {{FieldLabels::Weight, ""}}, FieldLabels::Weight},
                    OkRow{"two_blanks_first_reported",
                          {{FieldLabels::Draw3, ""}, {FieldLabels::EName, "   "}},
                          FieldLabels::EName},
                    OkRow{"last_title_spaces", {{FieldLabels::Draw6, " "}}, FieldLabels::Draw6}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(FieldLabels, ResetThenCancelKeepsTheDefaults) {
    ModuleSettings settings;
    settings.labels[FieldLabels::Spec] = "규격";
    settings.labels[FieldLabels::User2] = "제조사";
    FieldLabels::resetLabels(settings);
    // Cancel copies nothing back, so what reset wrote stays.
    EXPECT_EQ(settings.labels, FieldLabels::defaults());
}

}  // namespace
}  // namespace vantor
