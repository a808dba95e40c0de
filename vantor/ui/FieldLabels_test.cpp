// The title dialog's rule for OK: the first blank title is reported once and everything is
// stored all the same (reset is pinned with the dialog).
#include "vantor/ui/FieldLabels.h"

#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;

TEST(FieldLabels, OkReportsTheFirstBlankOnceAndStoresAll) {
    const std::vector<std::string> blank = {"빈문자열 에러: 빈 문자열은 입력할 수 없습니다. [error]"};
    const struct {
        const char* name;
        std::vector<std::pair<std::size_t, std::string>> edits;
        int firstBlank;
    } rows[] = {
        {"all filled", {{FieldLabels::Price, "단가"}}, -1},
        {"weight cleared", {{FieldLabels::Weight, ""}}, FieldLabels::Weight},
        {"two blanks, first reported", {{FieldLabels::PlanView, ""}, {FieldLabels::EName, "   "}},
         FieldLabels::EName},
        {"last title spaces", {{FieldLabels::Drawing3, " "}}, FieldLabels::Drawing3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ModuleSettings settings;
        FieldLabels::Texts texts = FieldLabels::defaults();
        for (const auto& [index, text] : row.edits) texts[index] = text;
        ScriptedDialogs dialogs;
        EXPECT_EQ(FieldLabels::applyLabels(settings, texts, dialogs), row.firstBlank);
        EXPECT_EQ(settings.labels, texts);
        EXPECT_EQ(testing_support::boxesShown(dialogs),
                  row.firstBlank < 0 ? std::vector<std::string>{} : blank);
    }
}

}  // namespace
}  // namespace vantor
