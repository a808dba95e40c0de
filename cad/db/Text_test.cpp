// Texts and attributes: the generation flags a mirror sets, alignment moving the position,
// and attributes made from their definitions through a block transform.
#include "cad/db/Text.h"

#include <gtest/gtest.h>

#include <numbers>
#include <string>

#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/ge/Scale3d.h"

namespace cad::db {
namespace {

constexpr double kPi = std::numbers::pi;

// Mirrored across the baseline's normal a text runs backward; across the baseline it stands
// upside down; two mirrors are a half turn and need no flag.
TEST(TextMirror, SetsTheFlagThatKeepsTheRotation) {
    const ge::Matrix3d mirrorX = ge::Matrix3d::scaling(ge::Scale3d(-1, 1, 1));
    const ge::Matrix3d mirrorY = ge::Matrix3d::scaling(ge::Scale3d(1, -1, 1));
    const ge::Matrix3d quarter = ge::Matrix3d::rotation(kPi / 2, ge::Vector3d::kZAxis);
    const std::int16_t back = Text::kBackward, upside = Text::kUpsideDown;
    const struct {
        const char* name;
        double rotation;
        std::int16_t flags;
        ge::Matrix3d xform;
        std::int16_t expectedFlags;
        double expectedRotation;
    } rows[] = {
        {"across vertical line", 0, 0, mirrorX, back, 0},
        {"across horizontal line", 0, 0, mirrorY, upside, 0},
        {"across both is a half turn", 0, 0, mirrorX * mirrorY, 0, kPi},
        {"backward text mirrored back", 0, back, mirrorX, 0, 0},
        {"vertical text across vertical line", kPi / 2, 0, mirrorX, upside, kPi / 2},
        {"upside down text turned", 0, upside, quarter, upside, kPi / 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Text text({1, 1, 0}, "BM", {}, 0.5, row.rotation);
        text.mirrorInX((row.flags & Text::kBackward) != 0);
        text.mirrorInY((row.flags & Text::kUpsideDown) != 0);
        ASSERT_EQ(text.transformBy(row.xform), ErrorStatus::eOk);
        EXPECT_EQ(text.generationFlags(), row.expectedFlags);
        EXPECT_NEAR(text.rotation(), row.expectedRotation, 1e-9);
        EXPECT_NEAR(text.height(), 0.5, 1e-12);
        EXPECT_TRUE(text.normal().isEqualTo(ge::Vector3d::kZAxis));
    }
}

// Seen from above nothing changes: the normal turns over and the text runs backward in the
// turned plane (whose x axis is the world's -x), which cancels out.
TEST(TextTransform, MirrorAcrossZTurnsTheNormalOver) {
    Text text({1, 1, 0}, "BM", {}, 0.5);
    ASSERT_EQ(text.transformBy(ge::Matrix3d::scaling(ge::Scale3d(1, 1, -1))), ErrorStatus::eOk);
    EXPECT_TRUE(text.normal().isEqualTo(-ge::Vector3d::kZAxis));
    EXPECT_EQ(text.generationFlags(), Text::kBackward);
    EXPECT_NEAR(text.rotation(), 0.0, 1e-12);
}

TEST(TextTransform, UnevenScaleGoesIntoHeightWidthAndSlant) {
    Text text({0, 0, 0}, "AB", {}, 1.0);
    ASSERT_EQ(text.transformBy(ge::Matrix3d::scaling(ge::Scale3d(3, 2, 1))), ErrorStatus::eOk);
    EXPECT_NEAR(text.height(), 2.0, 1e-12);
    EXPECT_NEAR(text.widthFactor(), 1.5, 1e-12);
    EXPECT_NEAR(text.oblique(), 0.0, 1e-12);
    // A shear leans the glyphs.
    Text leaning({0, 0, 0}, "AB", {}, 1.0);
    ge::Matrix3d shear;
    shear(0, 1) = 1.0;
    ASSERT_EQ(leaning.transformBy(shear), ErrorStatus::eOk);
    EXPECT_NEAR(leaning.oblique(), kPi / 4, 1e-12);
}

TEST(TextAlignment, PositionFollowsTheAlignmentPoint) {
    Text text({0, 0, 0}, "BM", {}, 0.5);
    EXPECT_TRUE(text.isDefaultAlignment());
    ASSERT_EQ(text.setHorizontalMode(TextHorzMode::kTextMid), ErrorStatus::eOk);
    ASSERT_EQ(text.setAlignmentPoint({10, 5, 0}), ErrorStatus::eOk);
    const double width = Text::estimatedWidth("BM", 0.5, 1.0);
    EXPECT_TRUE(text.position().isEqualTo({10 - width / 2, 4.75, 0}));
    ASSERT_EQ(text.setHorizontalMode(TextHorzMode::kTextRight), ErrorStatus::eOk);
    ASSERT_EQ(text.setVerticalMode(TextVertMode::kTextTop), ErrorStatus::eOk);
    EXPECT_TRUE(text.position().isEqualTo({10 - width, 4.5, 0}));
    EXPECT_EQ(text.setHorizontalMode(static_cast<TextHorzMode>(6)), ErrorStatus::eInvalidInput);
}

TEST(TextAlignment, WideCharactersTakeAFullCell) {
    EXPECT_DOUBLE_EQ(Text::estimatedWidth("AB", 2.0, 1.0), 2.4);
    EXPECT_DOUBLE_EQ(Text::estimatedWidth("\xEB\xB3\xBC\xED\x8A\xB8", 2.0, 0.5), 2.0);  // 볼트
}

TEST(AttributeFromDefinition, TakesEverythingAndIsPlacedByTheBlockTransform) {
    AttributeDefinition definition({0, -14, 0}, "", "USER6", "USER6");
    definition.setHeight(0.5);
    definition.setInvisible(true);
    definition.setFieldLength(25);
    definition.setColorIndex(3);
    Attribute attribute;
    const ge::Matrix3d placement =
        ge::Matrix3d::translation({10, 20, 0}) * ge::Matrix3d::scaling(ge::Scale3d(-1, 1, 1));
    ASSERT_EQ(attribute.setAttributeFromBlock(definition, placement), ErrorStatus::eOk);
    EXPECT_EQ(attribute.tag(), "USER6");
    EXPECT_TRUE(attribute.isInvisible());
    EXPECT_FALSE(attribute.isConstant());
    EXPECT_EQ(attribute.fieldLength(), 25);
    EXPECT_EQ(attribute.colorIndex(), 3);
    EXPECT_DOUBLE_EQ(attribute.height(), 0.5);
    EXPECT_TRUE(attribute.position().isEqualTo({10, 6, 0}));
    EXPECT_TRUE(attribute.isMirroredInX());
}

}  // namespace
}  // namespace cad::db
