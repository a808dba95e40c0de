// The group code table at the edges of every range, where an off-by-one would misread a file.
#include "cad/db/dxf/GroupCode.h"

#include <gtest/gtest.h>

#include <string>

namespace cad::db::dxf {
namespace {

struct CodeRow {
    int code;
    ValueType type;
};

class ValueTypeOfCode : public testing::TestWithParam<CodeRow> {};

TEST_P(ValueTypeOfCode, MatchesTheReferenceRanges) {
    EXPECT_EQ(valueTypeOf(GetParam().code), GetParam().type) << "code " << GetParam().code;
}

using enum ValueType;

std::string rowName(const testing::TestParamInfo<CodeRow>& row) {
    const int code = row.param.code;
    return (code < 0 ? "minus" : "code") + std::to_string(code < 0 ? -code : code);
}

INSTANTIATE_TEST_SUITE_P(
    RangeEdges, ValueTypeOfCode,
    testing::Values(
        CodeRow{0, String}, CodeRow{9, String}, CodeRow{10, Double}, CodeRow{59, Double},
        CodeRow{60, Int16}, CodeRow{79, Int16}, CodeRow{90, Int32}, CodeRow{99, Int32},
        CodeRow{100, String}, CodeRow{102, String}, CodeRow{105, Handle}, CodeRow{110, Double},
        CodeRow{149, Double}, CodeRow{160, Int64}, CodeRow{169, Int64}, CodeRow{170, Int16},
        CodeRow{179, Int16}, CodeRow{210, Double}, CodeRow{239, Double}, CodeRow{270, Int16},
        CodeRow{289, Int16}, CodeRow{290, Bool}, CodeRow{299, Bool}, CodeRow{300, String},
        CodeRow{309, String}, CodeRow{310, Binary}, CodeRow{319, Binary}, CodeRow{320, Handle},
        CodeRow{369, Handle}, CodeRow{370, Int16}, CodeRow{389, Int16}, CodeRow{390, Handle},
        CodeRow{399, Handle}, CodeRow{400, Int16}, CodeRow{409, Int16}, CodeRow{410, String},
        CodeRow{419, String}, CodeRow{420, Int32}, CodeRow{429, Int32}, CodeRow{430, String},
        CodeRow{439, String}, CodeRow{440, Int32}, CodeRow{459, Int32}, CodeRow{460, Double},
        CodeRow{469, Double}, CodeRow{470, String}, CodeRow{479, String}, CodeRow{480, Handle},
        CodeRow{481, Handle}, CodeRow{999, Comment}, CodeRow{1000, String}, CodeRow{1003, String},
        CodeRow{1004, Binary}, CodeRow{1005, Handle}, CodeRow{1010, Double}, CodeRow{1059, Double},
        CodeRow{1060, Int16}, CodeRow{1070, Int16}, CodeRow{1071, Int32}),
    rowName);

// Unassigned codes keep their text, so an unknown code from a newer writer is not lost.
INSTANTIATE_TEST_SUITE_P(Unassigned, ValueTypeOfCode,
                         testing::Values(CodeRow{-1, String}, CodeRow{80, String},
                                         CodeRow{103, String}, CodeRow{482, String},
                                         CodeRow{1072, String}, CodeRow{32767, String}),
                         rowName);

TEST(GroupCode, PointCodesAreTheXOfAnXyzTriple) {
    for (const int code : {10, 11, 18, 110, 111, 112, 210, 1010, 1011, 1012, 1013}) {
        EXPECT_TRUE(isPointCode(code)) << code;
    }
    for (const int code : {9, 19, 20, 30, 38, 39, 40, 109, 113, 211, 220, 1009, 1014, 1020}) {
        EXPECT_FALSE(isPointCode(code)) << code;
    }
}

TEST(GroupCode, HandleReferencesAreTheCodesCloningRemaps) {
    for (const int code : {330, 339, 340, 350, 360, 369, 390, 399, 480, 481, 1005}) {
        EXPECT_TRUE(isHandleReference(code)) << code;
    }
    // Arbitrary handles and an object's own handle are not references to other objects.
    for (const int code : {5, 105, 320, 329, 370, 389, 400, 479, 482, 1004, 1006}) {
        EXPECT_FALSE(isHandleReference(code)) << code;
    }
}

}  // namespace
}  // namespace cad::db::dxf
