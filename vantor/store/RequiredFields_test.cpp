// The required fields of a part record: which one is reported first and with which words.
#include "vantor/store/RequiredFields.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(RequiredFields, ReportsTheFirstBlankField) {
    using Field = MissingField::Field;
    const std::string group = "\"그 룹\"을(를) 반드시 입력하십시오.";
    const struct {
        const char* name;
        const char* group;
        const char* kname;
        std::optional<Field> field;
        std::string message;
    } rows[] = {
        {"both empty names the group", "", "", Field::Group, group},
        {"group of spaces", "   ", "볼트", Field::Group, group},
        {"kname missing uses its label", "육각볼트", " ", Field::KName,
         "\"부품명\"을(를) 반드시 입력하십시오."},
        {"tab is content", "\t", "볼트", std::nullopt, ""},
        {"both filled", "육각볼트", "볼트", std::nullopt, ""},
    };
    FieldLabels::Texts labels = FieldLabels::defaults();
    labels[FieldLabels::KName] = "부품명";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::optional<MissingField> missing = findMissingField(row.group, row.kname, labels);
        ASSERT_EQ(missing.has_value(), row.field.has_value());
        if (!missing) continue;
        EXPECT_EQ(missing->field, *row.field);
        EXPECT_EQ(missing->message, row.message);
    }
}

}  // namespace
}  // namespace vantor
