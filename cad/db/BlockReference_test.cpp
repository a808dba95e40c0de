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
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/Ellipse.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SequenceEnd.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Text.h"

namespace cad::db {
namespace {

constexpr double kPi = std::numbers::pi;

template <class Row>
std::string rowName(const ::testing::TestParamInfo<Row>& row) {
    return row.param.name;
}

void expectPoint(const ge::Point3d& actual, const ge::Point3d& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

class BlockReferenceTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(db.openObjectCount(), 0); }

    ObjectId addBlock(std::string_view name, const ge::Point3d& origin = {}) {
        auto record = std::make_unique<BlockTableRecord>();
        record->setName(name);
        record->setOrigin(origin);
        ObjectId id;
        EXPECT_EQ(
            open<SymbolTable>(db.blockTableId(), OpenMode::ForWrite)->add(std::move(record), id),
            ErrorStatus::eOk);
        return id;
    }
    ObjectId append(ObjectId block, std::unique_ptr<Entity> entity) {
        ObjectId id;
        EXPECT_EQ(
            open<BlockTableRecord>(block, OpenMode::ForWrite)->appendEntity(std::move(entity), id),
            ErrorStatus::eOk);
        return id;
    }

    // A marker block as the BOM mark makes it: circle, "BM" centred on the base point, and
    // invisible attribute definitions 1.0 apart below it.
    ObjectId addMarkerBlock() {
        const ObjectId block = addBlock("QRBBM2");
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

    Database db;
};

struct TransformCase {
    const char* name;
    ge::Scale3d scale;
    double rotation;
    ge::Vector3d normal;
    ge::Point3d blockPoint;  // block origin is (1, 1, 0), position (10, 5, 0)
    ge::Point3d expected;
};

void PrintTo(const TransformCase& row, std::ostream* os) {
    *os << row.name;
}

class BlockTransformRows : public BlockReferenceTest,
                           public ::testing::WithParamInterface<TransformCase> {};

TEST_P(BlockTransformRows, MapsBlockPointsToTheWorld) {
    const TransformCase& row = GetParam();
    const ObjectId block = addBlock("PART", {1, 1, 0});
    BlockReference reference({10, 5, 0}, block);
    ASSERT_EQ(reference.setScaleFactors(row.scale), ErrorStatus::eOk);
    reference.setRotation(row.rotation);
    reference.setNormal(row.normal);
    expectPoint(reference.blockTransform() * row.blockPoint, row.expected);
    expectPoint(reference.blockTransform() * ge::Point3d(1, 1, 0), {10, 5, 0});
}

INSTANTIATE_TEST_SUITE_P(
    BlockReference, BlockTransformRows,
    ::testing::Values(
        TransformCase{"plain", {1, 1, 1}, 0, {0, 0, 1}, {3, 2, 0}, {12, 6, 0}},
        TransformCase{"mirror_in_x", {-1, 1, 1}, 0, {0, 0, 1}, {3, 2, 0}, {8, 6, 0}},
        TransformCase{
            "mirror_in_y_turned_quarter", {1, -1, 1}, kPi / 2, {0, 0, 1}, {3, 2, 0}, {11, 7, 0}},
        TransformCase{"scaled_2_and_minus_3", {2, -3, 1}, 0, {0, 0, 1}, {3, 2, 0}, {14, 2, 0}},
        // The object coordinate system of -z has its x axis along -x.
        TransformCase{"extrusion_minus_z", {1, 1, 1}, 0, {0, 0, -1}, {3, 2, 1}, {8, 6, -1}}),
    rowName<TransformCase>);

struct DecompositionCase {
    const char* name;
    ge::Scale3d scale;
    double rotation;
    ge::Matrix3d xform;
    ge::Scale3d expectedScale;
    double expectedRotation;
};

void PrintTo(const DecompositionCase& row, std::ostream* os) {
    *os << row.name;
}

class TransformDecomposition : public BlockReferenceTest,
                               public ::testing::WithParamInterface<DecompositionCase> {};

// The host puts a mirror on X; a factor pattern the transform does not mirror is kept.
TEST_P(TransformDecomposition, KeepsTheMirrorOnTheExpectedAxis) {
    const DecompositionCase& row = GetParam();
    BlockReference reference({0, 0, 0}, addBlock("PART"));
    reference.setScaleFactors(row.scale);
    reference.setRotation(row.rotation);
    ASSERT_EQ(reference.transformBy(row.xform), ErrorStatus::eOk);
    EXPECT_TRUE(reference.scaleFactors().isEqualTo(row.expectedScale, ge::Tolerance{1e-9, 1e-9}))
        << reference.scaleFactors().sx << " " << reference.scaleFactors().sy;
    EXPECT_NEAR(reference.rotation(), row.expectedRotation, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    BlockReference, TransformDecomposition,
    ::testing::Values(DecompositionCase{"mirror_across_y_axis",
                                        {1, 1, 1},
                                        0,
                                        ge::Matrix3d::scaling(ge::Scale3d(-1, 1, 1)),
                                        {-1, 1, 1},
                                        0},
                      DecompositionCase{"mirror_across_x_axis",
                                        {1, 1, 1},
                                        0,
                                        ge::Matrix3d::scaling(ge::Scale3d(1, -1, 1)),
                                        {-1, 1, 1},
                                        kPi},
                      DecompositionCase{"mirrored_in_y_then_moved",
                                        {1, -1, 1},
                                        0,
                                        ge::Matrix3d::translation({4, 4, 0}),
                                        {1, -1, 1},
                                        0},
                      DecompositionCase{"mirrored_in_x_mirrored_back",
                                        {-1, 1, 1},
                                        0,
                                        ge::Matrix3d::scaling(ge::Scale3d(-1, 1, 1)),
                                        {1, 1, 1},
                                        0},
                      DecompositionCase{"mirrored_in_x_then_turned",
                                        {-2, 2, 2},
                                        0,
                                        ge::Matrix3d::rotation(kPi / 2, ge::Vector3d::kZAxis),
                                        {-2, 2, 2},
                                        kPi / 2},
                      DecompositionCase{"scaled_uniformly",
                                        {1, -1, 1},
                                        0.5,
                                        ge::Matrix3d::scaling(3.0),
                                        {3, -3, 3},
                                        0.5}),
    rowName<DecompositionCase>);

TEST_F(BlockReferenceTest, ShearingTransformIsRefusedAndLeavesTheReference) {
    BlockReference reference({0, 0, 0}, addBlock("PART"));
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
    const ObjectId block = addBlock("RING");
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
    const ObjectId block = addBlock("DOT");
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
    EXPECT_NEAR(extents.minPoint.x, 9.0, 1e-9);
    EXPECT_NEAR(extents.maxPoint.x, 11.0, 1e-9);
    EXPECT_NEAR(extents.minPoint.y, 4.0, 1e-9);
    EXPECT_NEAR(extents.maxPoint.y, 6.0, 1e-9);
}

TEST_F(BlockReferenceTest, BlockHoldingAReferenceToItselfEndsWithAnError) {
    const ObjectId block = addBlock("LOOP");
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
