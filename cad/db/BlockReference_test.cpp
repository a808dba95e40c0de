// Block references in a drawing: the block transform with mirrors and extrusion, how a
// transform is split into position, rotation and scale, owned attributes, and explode of a
// BOM-mark-like block (circle, "BM" text, invisible attribute definitions).
#include "cad/db/BlockReference.h"

#include <gtest/gtest.h>

#include <numbers>
#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/SequenceEnd.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"

namespace cad::db {
namespace {

constexpr double kPi = std::numbers::pi;
using namespace testing_support;

class BlockReferenceTest : public testing_support::DrawingTest {
protected:
    // A marker block as the BOM mark makes it: circle, "BM" centred on the base point, and
    // invisible attribute definitions 1.0 apart below it.
    ObjectId addMarkerBlock() {
        const ObjectId block = addBlock(db, "QRBBM2");
        append(block, std::make_unique<Circle>(ge::Point3d{}, ge::Vector3d::kZAxis, 0.5));
        auto text = std::make_unique<Text>(ge::Point3d{}, "BM", db.textStyleStandard(), 0.5);
        text->setHorizontalMode(TextHorzMode::kTextMid);
        text->setAlignmentPoint({});
        append(block, std::move(text));
        int k = 1;
        for (const char* tag : {"NAME", "QTY"}) {
            auto def = std::make_unique<AttributeDefinition>(ge::Point3d{0, -1.0 * k++, 0}, "", tag,
                                                             tag, db.textStyleStandard());
            def->setHeight(0.5);
            def->setInvisible(true);
            def->setFieldLength(25);
            append(block, std::move(def));
        }
        return block;
    }

    // A reference with one attribute per definition, made as a new reference's are.
    ObjectId insertWithAttributes(ObjectId block, const ge::Point3d& at, const ge::Scale3d& scale) {
        auto reference = std::make_unique<BlockReference>(at, block);
        reference->setScaleFactors(scale);
        const ObjectId id = append(db.modelSpaceId(), std::move(reference));
        auto ref = open<BlockReference>(id, OpenMode::ForWrite);
        const ge::Matrix3d placement = ref->blockTransform();
        for (ObjectId entityId : open<BlockTableRecord>(block, OpenMode::ForRead)->entityIds()) {
            auto def = open<AttributeDefinition>(entityId, OpenMode::ForRead);
            if (!def) continue;
            auto attribute = std::make_unique<Attribute>();
            EXPECT_EQ(attribute->setAttributeFromBlock(*def, placement), ErrorStatus::eOk);
            attribute->setTextString(def->tag() == "QTY" ? "1" : "bolt");
            ObjectId attributeId;
            EXPECT_EQ(ref->appendAttribute(std::move(attribute), attributeId), ErrorStatus::eOk);
        }
        return id;
    }

};

// Block origin (1, 1, 0), position (10, 5, 0): `blockPoint` lands on `expected`.
TEST_F(BlockReferenceTest, BlockTransformMapsBlockPointsToTheWorld) {
    const struct {
        const char* name;
        ge::Scale3d scale;
        double rotation;
        ge::Vector3d normal;
        ge::Point3d blockPoint, expected;
    } rows[] = {
        {"plain", {1, 1, 1}, 0, {0, 0, 1}, {3, 2, 0}, {12, 6, 0}},
        {"mirror in x", {-1, 1, 1}, 0, {0, 0, 1}, {3, 2, 0}, {8, 6, 0}},
        {"mirror in y turned a quarter", {1, -1, 1}, kPi / 2, {0, 0, 1}, {3, 2, 0}, {11, 7, 0}},
        {"scaled 2 and -3", {2, -3, 1}, 0, {0, 0, 1}, {3, 2, 0}, {14, 2, 0}},
        // The object coordinate system of -z has its x axis along -x.
        {"extrusion -z", {1, 1, 1}, 0, {0, 0, -1}, {3, 2, 1}, {8, 6, -1}},
    };
    const ObjectId block = addBlock(db, "PART", {1, 1, 0});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BlockReference reference({10, 5, 0}, block);
        ASSERT_EQ(reference.setScaleFactors(row.scale), ErrorStatus::eOk);
        reference.setRotation(row.rotation);
        reference.setNormal(row.normal);
        expectPoint(reference.blockTransform() * row.blockPoint, row.expected);
        expectPoint(reference.blockTransform() * ge::Point3d(1, 1, 0), {10, 5, 0});
    }
}

// The host puts a mirror on X; a factor pattern the transform does not mirror is kept.
TEST_F(BlockReferenceTest, TransformIsSplitWithTheMirrorOnTheExpectedAxis) {
    using ge::Matrix3d, ge::Scale3d;
    const struct {
        const char* name;
        Scale3d scale;
        double rotation;
        Matrix3d xform;
        Scale3d expectedScale;
        double expectedRotation;
    } rows[] = {
        // clang-format off
        {"mirror across y axis", {1, 1, 1}, 0, Matrix3d::scaling(Scale3d(-1, 1, 1)), {-1, 1, 1}, 0},
        {"mirror across x axis", {1, 1, 1}, 0, Matrix3d::scaling(Scale3d(1, -1, 1)), {-1, 1, 1}, kPi},
        {"mirrored in y then moved", {1, -1, 1}, 0, Matrix3d::translation({4, 4, 0}), {1, -1, 1}, 0},
        {"mirrored in x mirrored back", {-1, 1, 1}, 0, Matrix3d::scaling(Scale3d(-1, 1, 1)), {1, 1, 1}, 0},
        {"mirrored in x then turned", {-2, 2, 2}, 0, Matrix3d::rotation(kPi / 2, ge::Vector3d::kZAxis), {-2, 2, 2}, kPi / 2},
        // clang-format on
        {"scaled uniformly", {1, -1, 1}, 0.5, Matrix3d::scaling(3.0), {3, -3, 3}, 0.5},
    };
    const ObjectId block = addBlock(db, "PART");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BlockReference reference({0, 0, 0}, block);
        reference.setScaleFactors(row.scale);
        reference.setRotation(row.rotation);
        ASSERT_EQ(reference.transformBy(row.xform), ErrorStatus::eOk);
        EXPECT_TRUE(
            reference.scaleFactors().isEqualTo(row.expectedScale, ge::Tolerance{1e-9, 1e-9}))
            << reference.scaleFactors().sx << " " << reference.scaleFactors().sy;
        EXPECT_NEAR(reference.rotation(), row.expectedRotation, 1e-9);
    }
}

TEST_F(BlockReferenceTest, ShearingTransformIsRefusedAndLeavesTheReference) {
    BlockReference reference({0, 0, 0}, addBlock(db, "PART"));
    reference.setScaleFactors({2, 1, 1});
    reference.setRotation(kPi / 4);
    EXPECT_EQ(reference.transformBy(ge::Matrix3d::scaling(ge::Scale3d(1, 2, 1))),
              ErrorStatus::eNotApplicable);
    EXPECT_TRUE(reference.scaleFactors().isEqualTo({2, 1, 1}));
    EXPECT_NEAR(reference.rotation(), kPi / 4, 1e-12);
}

TEST_F(BlockReferenceTest, ExplodeYieldsBlockEntitiesAndDefinitionsButNotAttributes) {
    const ObjectId reference = insertWithAttributes(addMarkerBlock(), {10, 5, 0}, {-1, 1, 1});
    std::vector<std::unique_ptr<Entity>> pieces;
    ASSERT_EQ(open<BlockReference>(reference, OpenMode::ForRead)->explode(pieces),
              ErrorStatus::eOk);
    EXPECT_EQ(db.openObjectCount(), 0);

    ASSERT_EQ(pieces.size(), 4u);
    for (const auto& piece : pieces) {
        EXPECT_EQ(piece->database(), nullptr);
        EXPECT_EQ(dynamic_cast<const Attribute*>(piece.get()), nullptr);
    }
    const auto& circle = dynamic_cast<const Circle&>(*pieces[0]);
    expectPoint(circle.center(), {10, 5, 0});
    EXPECT_DOUBLE_EQ(circle.radius(), 0.5);
    const auto& text = dynamic_cast<const Text&>(*pieces[1]);
    expectPoint(text.alignmentPoint(), {10, 5, 0});
    EXPECT_TRUE(text.isMirroredInX());
    const auto& name = dynamic_cast<const AttributeDefinition&>(*pieces[2]);
    EXPECT_EQ(name.tag(), "NAME");
    EXPECT_TRUE(name.isInvisible());
    expectPoint(name.position(), {10, 4, 0});
    expectPoint(dynamic_cast<const AttributeDefinition&>(*pieces[3]).position(), {10, 3, 0});
}

TEST_F(BlockReferenceTest, ExplodeUnderUnevenScaleTurnsCirclesIntoEllipses) {
    const ObjectId block = addBlock(db, "RING");
    append(block, std::make_unique<Circle>(ge::Point3d{1, 0, 0}, ge::Vector3d::kZAxis, 1.0));
    auto reference = std::make_unique<BlockReference>(ge::Point3d{0, 0, 0}, block);
    reference->setScaleFactors({2, 1, 1});
    std::vector<std::unique_ptr<Entity>> pieces;
    ASSERT_EQ(reference->explode(pieces), ErrorStatus::eOk);
    ASSERT_EQ(pieces.size(), 1u);
    const auto* ellipse = dynamic_cast<const Ellipse*>(pieces[0].get());
    ASSERT_NE(ellipse, nullptr);
    expectPoint(ellipse->center(), {2, 0, 0});
    EXPECT_NEAR(ellipse->radiusRatio(), 0.5, 1e-12);
}

TEST_F(BlockReferenceTest, ArrayExplodesEveryCellAlongTheRotatedAxes) {
    const ObjectId block = addBlock(db, "DOT");
    append(block, std::make_unique<Circle>(ge::Point3d{}, ge::Vector3d::kZAxis, 0.1));
    BlockReference reference({1, 1, 0}, block);
    reference.setRotation(kPi / 2);
    ASSERT_EQ(reference.setArray(3, 2, 4.0, 10.0), ErrorStatus::eOk);
    EXPECT_EQ(reference.className(), "AcDbMInsertBlock");
    std::vector<std::unique_ptr<Entity>> pieces;
    ASSERT_EQ(reference.explode(pieces), ErrorStatus::eOk);
    ASSERT_EQ(pieces.size(), 6u);
    // Row 1, column 2: (8, 10) turned a quarter is (-10, 8).
    expectPoint(dynamic_cast<const Circle&>(*pieces[5]).center(), {-9, 9, 0});
}

TEST_F(BlockReferenceTest, AttributesMoveWithTheReferenceAndGoWithItsErase) {
    const ObjectId reference = insertWithAttributes(addMarkerBlock(), {10, 5, 0}, {1, 1, 1});
    ObjectId first, end;
    {
        auto ref = open<BlockReference>(reference, OpenMode::ForWrite);
        ASSERT_EQ(ref->attributeIds().size(), 2u);
        first = ref->attributeIds()[0];
        end = ref->sequenceEndId();
        ASSERT_EQ(ref->transformBy(ge::Matrix3d::translation({1, 2, 0})), ErrorStatus::eOk);
    }
    auto attribute = open<Attribute>(first, OpenMode::ForRead);
    EXPECT_EQ(attribute->ownerId(), reference);
    EXPECT_EQ(attribute->tag(), "NAME");
    EXPECT_EQ(attribute->fieldLength(), 25);
    EXPECT_TRUE(attribute->isInvisible());
    expectPoint(attribute->position(), {11, 6, 0});
    attribute.close();
    EXPECT_EQ(open<SequenceEnd>(end, OpenMode::ForRead)->ownerId(), reference);

    ASSERT_EQ(open<BlockReference>(reference, OpenMode::ForWrite)->erase(), ErrorStatus::eOk);
    EXPECT_TRUE(first.isErased());
    EXPECT_TRUE(end.isErased());
}

TEST_F(BlockReferenceTest, AttributesOfAReferenceBuiltOutsideJoinItWhenAppended) {
    const ObjectId block = addMarkerBlock();
    auto reference = std::make_unique<BlockReference>(ge::Point3d{2, 2, 0}, block);
    ObjectId held;
    ASSERT_EQ(reference->appendAttribute(
                  std::make_unique<Attribute>(ge::Point3d{2, 1, 0}, "1", "QTY"), held),
              ErrorStatus::eOk);
    EXPECT_TRUE(held.isNull());
    const ObjectId id = append(db.modelSpaceId(), std::move(reference));
    auto ref = open<BlockReference>(id, OpenMode::ForRead);
    ASSERT_EQ(ref->attributeIds().size(), 1u);
    EXPECT_EQ(open<Attribute>(ref->attributeIds()[0], OpenMode::ForRead)->ownerId(), id);
    EXPECT_FALSE(ref->sequenceEndId().isNull());
}

TEST_F(BlockReferenceTest, TransformedCopyCarriesMovedCopiesOfTheAttributes) {
    const ObjectId reference = insertWithAttributes(addMarkerBlock(), {10, 5, 0}, {1, 1, 1});
    std::unique_ptr<Entity> copy;
    ASSERT_EQ(open<BlockReference>(reference, OpenMode::ForRead)
                  ->getTransformedCopy(ge::Matrix3d::translation({0, 10, 0}), copy),
              ErrorStatus::eOk);
    const ObjectId copyId = append(db.modelSpaceId(), std::move(copy));

    auto original = open<BlockReference>(reference, OpenMode::ForRead);
    auto moved = open<BlockReference>(copyId, OpenMode::ForRead);
    ASSERT_EQ(moved->attributeIds().size(), 2u);
    EXPECT_NE(moved->attributeIds()[0], original->attributeIds()[0]);
    expectPoint(open<Attribute>(original->attributeIds()[0], OpenMode::ForRead)->position(),
                {10, 4, 0});
    auto movedAttribute = open<Attribute>(moved->attributeIds()[0], OpenMode::ForRead);
    expectPoint(movedAttribute->position(), {10, 14, 0});
    EXPECT_EQ(movedAttribute->ownerId(), copyId);
}

TEST_F(BlockReferenceTest, ExtentsCoverWhatIsShownOnly) {
    const ObjectId reference = insertWithAttributes(addMarkerBlock(), {10, 5, 0}, {2, 2, 2});
    Extents3d extents;
    ASSERT_EQ(open<BlockReference>(reference, OpenMode::ForRead)->getGeomExtents(extents),
              ErrorStatus::eOk);
    // The circle (radius 1 after scaling); the invisible attributes below it do not count.
    expectExtents(extents, {9, 4, 0}, {11, 6, 0});
}

TEST_F(BlockReferenceTest, BlockHoldingAReferenceToItselfEndsWithAnError) {
    const ObjectId block = addBlock(db, "LOOP");
    append(block, std::make_unique<Circle>(ge::Point3d{}, ge::Vector3d::kZAxis, 1.0));
    append(block, std::make_unique<BlockReference>(ge::Point3d{1, 0, 0}, block));
    const ObjectId reference =
        append(db.modelSpaceId(), std::make_unique<BlockReference>(ge::Point3d{}, block));
    Extents3d extents;
    EXPECT_NE(open<BlockReference>(reference, OpenMode::ForRead)->getGeomExtents(extents),
              ErrorStatus::eOk);
}

}  // namespace
}  // namespace cad::db
