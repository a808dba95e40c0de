// The required fields of a part record: which one is reported first and with which words.
#include "vantor/store/RequiredFields.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

struct Row {
    const char* name;
    const char* group;
    const char* kname;
    std::optional<MissingField::Field> field;
    const char* message;
};

class RequiredFields : public testing::TestWithParam<Row> {};

TEST_P(RequiredFields, ReportsTheFirstBlankField) {
    FieldLabels::Texts labels = FieldLabels::defaults();
    labels[FieldLabels::KName] = "부품명";
    std::optional<MissingField> missing =
        findMissingField(GetParam().group, GetParam().kname, labels);
    ASSERT_EQ(missing.has_value(), GetParam().field.has_value());
    if (!missing) return;
    EXPECT_EQ(missing->field, *GetParam().field);
    EXPECT_EQ(missing->message, GetParam().message);
}

using Field = MissingField::Field;

INSTANTIATE_TEST_SUITE_P(Rows, RequiredFields,
                         testing::Values(Row{"both_empty_names_the_group", "", "", Field::Group,
                                             "\"그 룹\"을(를) 반드시 입력하십시오."},
                                         Row{"group_of_spaces", "   ", "볼트", Field::Group,
                                             "\"그 룹\"을(를) 반드시 입력하십시오."},
                                         Row{"kname_missing_uses_its_label", "육각볼트", " ",
                                             Field::KName, "\"부품명\"을(를) 반드시 입력하십시오."},
                                         Row{"tab_is_content", "\t", "볼트", std::nullopt, ""},
                                         Row{"both_filled", "육각볼트", "볼트", std::nullopt, ""}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vantor
