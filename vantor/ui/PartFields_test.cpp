// The orders and lookups the record, the lists and the BOM mark take from the field table. Each
// numbering's values show in what uses them: the record's chain, the CSV line, the settings
// keys, the BOM mark's rows and the choice lists, each pinned by its own tests.
#include "vantor/ui/PartFields.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantor {
namespace {

using Id = PartFields::Id;

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
