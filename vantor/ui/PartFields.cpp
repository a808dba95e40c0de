// The table of the part record's fields, and the orders taken from it.
#include "vantor/ui/PartFields.h"

#include <array>

namespace vantor {

namespace {

using Id = PartFields::Id;
using Kind = PartFields::Kind;
constexpr std::size_t kNone = PartFields::kNone;

// Group codes of the chain: texts are 1, view block names 2 (their points 10, at the next
// position). Readers have always taken the fields by position; the codes are what is written.
constexpr int kText = 1;
constexpr int kBlock = 2;

// One row per field in id order. The BOM rows leave out 4, the quantity, which is no field.
// clang-format off
constexpr std::array<PartFields::Field, PartFields::kCount> kFields = {{
//   id                    kind          name        pos code    label key         default title  BOM tag     row  csv  list
    {PartFields::KName,     Kind::General, "kname",    13, kText,  "Label_KName",    "품   명(K)", "NAME",      0,   7,    0},
    {PartFields::EName,     Kind::General, "ename",    14, kText,  "Label_EName",    "품   명(E)", "ENAME",     1,   8, kNone},
    {PartFields::Spec,      Kind::General, "spec",     15, kText,  "Label_Spec",     "사   양",    "SPEC",      2,   9,    1},
    {PartFields::Material,  Kind::General, "material", 16, kText,  "Label_Material", "재   질",    "MATERIAL",  3,  10,    2},
    {PartFields::Weight,    Kind::General, "weight",   17, kText,  "Label_Weight",   "중   량",    "WEIGHT",    5,  11,    3},
    {PartFields::Price,     Kind::General, "price",    18, kText,  "Label_Price",    "가   격",    "PRICE",     6,  12,    4},
    {PartFields::Remark,    Kind::General, "remark",   19, kText,  "Label_Remark",   "비   고",    "REMARK",    7,  13,    5},
    {PartFields::User1,     Kind::User,    "user1",    20, kText,  "Label_User1",    "USER1",      "USER1",     8,  14,    6},
    {PartFields::User2,     Kind::User,    "user2",    21, kText,  "Label_User2",    "USER2",      "USER2",     9,  15,    7},
    {PartFields::User3,     Kind::User,    "user3",    22, kText,  "Label_User3",    "USER3",      "USER3",    10,  16,    8},
    {PartFields::User4,     Kind::User,    "user4",    23, kText,  "Label_User4",    "USER4",      "USER4",    11,  17,    9},
    {PartFields::User5,     Kind::User,    "user5",    24, kText,  "Label_User5",    "USER5",      "USER5",    12,  18,   10},
    {PartFields::User6,     Kind::User,    "user6",    25, kText,  "Label_User6",    "USER6",      "USER6",    13,  19,   11},
    {PartFields::FrontView, Kind::View,    "front",     0, kBlock, "Label_Draw1",    "정 면 도",   "",      kNone,   0, kNone},
    {PartFields::SideView,  Kind::View,    "side",      2, kBlock, "Label_Draw2",    "측 면 도",   "",      kNone,   1, kNone},
    {PartFields::PlanView,  Kind::View,    "plan",      4, kBlock, "Label_Draw3",    "평 면 도",   "",      kNone,   2, kNone},
    {PartFields::Drawing1,  Kind::View,    "drawing1",  6, kBlock, "Label_Draw4",    "도   면1",   "",      kNone,   3, kNone},
    {PartFields::Drawing2,  Kind::View,    "drawing2",  8, kBlock, "Label_Draw5",    "도   면2",   "",      kNone,   4, kNone},
    {PartFields::Drawing3,  Kind::View,    "drawing3", 10, kBlock, "Label_Draw6",    "도   면3",   "",      kNone,   5, kNone},
    {PartFields::Group,     Kind::General, "group",    12, kText,  "",               "",           "",      kNone,   6, kNone},
}};
// clang-format on

// The checks below run while compiling: a table that breaks one of them does not build.
// (A throw in a constant expression is a compile error.)

constexpr bool rowsFollowIds() {
    for (std::size_t i = 0; i < kFields.size(); ++i)
        if (kFields[i].id != i) return false;
    for (const PartFields::Field& field : kFields) {
        const bool view = field.id >= PartFields::FrontView && field.id <= PartFields::Drawing3;
        if (view != (field.kind == Kind::View)) return false;
        if ((field.id < PartFields::kLabelCount) == field.labelKey.empty()) return false;
    }
    return true;
}
static_assert(rowsFollowIds(),
              "rows in id order, views together, every field but the group titled");

// Each of the 26 positions taken once: a view's name and point, a text's value.
constexpr bool chainIsWhole() {
    std::array<bool, PartFields::kChainLength> taken{};
    for (const PartFields::Field& field : kFields) {
        const bool view = field.kind == Kind::View;
        const std::size_t size = view ? 2 : 1;
        if (field.code != (view ? kBlock : kText)) return false;
        for (std::size_t at = field.position; at < field.position + size; ++at) {
            if (at >= taken.size() || taken[at]) return false;
            taken[at] = true;
        }
    }
    for (bool at : taken)
        if (!at) return false;
    return true;
}
static_assert(chainIsWhole(), "the fields fill the 26 positions of the chain, each once");

// The ids ordered by a column whose values number `N` places, each taken once; fields without
// a place (kNone) are left out.
template <std::size_t N>
constexpr std::array<Id, N> orderBy(std::size_t PartFields::Field::*column) {
    std::array<Id, N> order{};
    std::array<bool, N> taken{};
    for (const PartFields::Field& field : kFields) {
        const std::size_t at = field.*column;
        if (at == kNone) continue;
        if (at >= N || taken[at]) throw "two fields at one place, or a place out of range";
        taken[at] = true;
        order[at] = field.id;
    }
    for (bool at : taken)
        if (!at) throw "a place no field takes";
    return order;
}

// The chain's positions counted per field: a view takes two.
constexpr std::array<Id, PartFields::kCount> storedOrder() {
    std::array<Id, PartFields::kCount> order{};
    std::size_t next = 0;
    for (std::size_t position = 0; position < PartFields::kChainLength; ++position)
        for (const PartFields::Field& field : kFields)
            if (field.position == position) order[next++] = field.id;
    return order;
}

constexpr std::array<Id, PartFields::kCount> kStoredOrder = storedOrder();
constexpr std::array<Id, PartFields::kCount> kCsvOrder =
    orderBy<PartFields::kCount>(&PartFields::Field::csvColumn);
constexpr std::array<Id, PartFields::kCascadeCount> kCascadeOrder =
    orderBy<PartFields::kCascadeCount>(&PartFields::Field::cascadeList);

}  // namespace

std::span<const PartFields::Field, PartFields::kCount> PartFields::all() {
    return kFields;
}

std::span<const PartFields::Id, PartFields::kCount> PartFields::inStoredOrder() {
    return kStoredOrder;
}

std::span<const PartFields::Id, PartFields::kCount> PartFields::inCsvOrder() {
    return kCsvOrder;
}

PartFields::Id PartFields::cascadeField(std::size_t list, bool englishName) {
    const Id id = kCascadeOrder.at(list);
    return englishName && id == KName ? EName : id;
}

const PartFields::Field* PartFields::byBomTag(std::string_view tag) {
    for (const Field& field : kFields)
        if (!field.bomTag.empty() && field.bomTag == tag) return &field;
    return nullptr;
}

}  // namespace vantor
