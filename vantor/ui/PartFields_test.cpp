// The field table read through each of its numberings at their edges (where a shifted or
// swapped row would show), and the orders and lookups the record, the lists and the BOM mark use.
#include "vantor/ui/PartFields.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantor {
namespace {

using Id = PartFields::Id;
constexpr std::size_t kNone = PartFields::kNone;

TEST(PartFields, EachNumberingAtItsEdges) {
    const struct {
        const char* name;
        Id id;
        std::size_t position;
        int code;
        std::string_view labelKey;
        std::string_view bomTag;
        std::size_t bomRow;
        std::size_t csvColumn;
        std::size_t cascadeList;
    } rows[] = {
        {"first text after the group", PartFields::KName, 13, 1, "Label_KName", "NAME", 0, 7, 0},
        {"English name shares the name list", PartFields::EName, 14, 1, "Label_EName", "ENAME", 1,
         8, kNone},
        {"weight after the quantity row", PartFields::Weight, 17, 1, "Label_Weight", "WEIGHT", 5,
         11, 3},
        {"last field everywhere", PartFields::User6, 25, 1, "Label_User6", "USER6", 13, 19, 11},
        {"first view", PartFields::FrontView, 0, 2, "Label_Draw1", "", kNone, 0, kNone},
        {"last view", PartFields::Drawing3, 10, 2, "Label_Draw6", "", kNone, 5, kNone},
        {"group: stored first, untitled", PartFields::Group, 12, 1, "", "", kNone, 6, kNone},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PartFields::Field& field = PartFields::field(row.id);
        EXPECT_EQ(field.position, row.position);
        EXPECT_EQ(field.code, row.code);
        EXPECT_EQ(field.labelKey, row.labelKey);
        EXPECT_EQ(field.bomTag, row.bomTag);
        EXPECT_EQ(field.bomRow, row.bomRow);
        EXPECT_EQ(field.csvColumn, row.csvColumn);
        EXPECT_EQ(field.cascadeList, row.cascadeList);
    }
}

TEST(PartFields, OrdersAndLookups) {
    const auto stored = PartFields::inStoredOrder();
    EXPECT_EQ(std::vector<Id>(stored.begin(), stored.begin() + 8),
              (std::vector<Id>{PartFields::FrontView, PartFields::SideView, PartFields::PlanView,
                               PartFields::Drawing1, PartFields::Drawing2, PartFields::Drawing3,
                               PartFields::Group, PartFields::KName}));
    EXPECT_EQ(stored.back(), PartFields::User6);
    // A CSV line is the stored record with its points left out.
    const auto csv = PartFields::inCsvOrder();
    EXPECT_TRUE(std::equal(csv.begin(), csv.end(), stored.begin(), stored.end()));

    EXPECT_EQ(PartFields::cascadeField(0, false), PartFields::KName);
    EXPECT_EQ(PartFields::cascadeField(0, true), PartFields::EName);
    EXPECT_EQ(PartFields::cascadeField(1, true), PartFields::Spec);
    EXPECT_EQ(PartFields::cascadeField(PartFields::kCascadeCount - 1, false), PartFields::User6);

    ASSERT_NE(PartFields::byBomTag("MATERIAL"), nullptr);
    EXPECT_EQ(PartFields::byBomTag("MATERIAL")->id, PartFields::Material);
    EXPECT_EQ(PartFields::byBomTag("material"), nullptr);  // byte for byte
    EXPECT_EQ(PartFields::byBomTag("QTY"), nullptr);       // a row of the mark, not a field
    EXPECT_EQ(PartFields::byBomTag(""), nullptr);          // the views have no tag
}

}  // namespace
}  // namespace vantor
