// Entities in DXF files: what their layouts write (subclasses and order as R2000 has them),
// object coordinates read from files, and a drawing holding every entity type saved, read
// back field for field and checked by ezdxf.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "cad/db/Arc.h"
#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Hatch.h"
#include "cad/db/Line.h"
#include "cad/db/MText.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/Point.h"
#include "cad/db/Polyline.h"
#include "cad/db/Polyline2d.h"
#include "cad/db/Polyline3d.h"
#include "cad/db/RawEntity.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/Solid.h"
#include "cad/db/Spline.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/Vertex2d.h"
#include "cad/db/Vertex3d.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace cad::db {
namespace {

using namespace testing_support;

TEST(EntityLayout, TextKeepsItsVerticalModeInASecondTextSubclass) {
    Text text({1, 2, 0}, "BM", {}, 0.5);
    text.setHorizontalMode(TextHorzMode::kTextMid);
    text.setVerticalMode(TextVertMode::kTextVertMid);
    text.setAlignmentPoint({1, 2, 0});
    EXPECT_EQ(codesOf(recorded(text)),
              (std::vector<int>{100, 8, 100, 10, 20, 30, 40, 1, 72, 11, 21, 31, 100, 73}));
    // Left/baseline texts have no alignment point and no vertical mode.
    Text plain({1, 2, 0}, "BM", {}, 0.5);
    EXPECT_EQ(codesOf(recorded(plain)), (std::vector<int>{100, 8, 100, 10, 20, 30, 40, 1, 100}));
}

TEST(EntityLayout, AttributesPutTheirFieldsAfterTheText) {
    AttributeDefinition definition({0, -1, 0}, "", "NAME", "NAME");
    definition.setInvisible(true);
    definition.setFieldLength(25);
    std::vector<RawTag> tags = recorded(definition);
    const auto marker = std::find(tags.begin(), tags.end(), RawTag{100, "AcDbAttributeDefinition"});
    ASSERT_NE(marker, tags.end());
    EXPECT_EQ(codesOf({marker + 1, tags.end()}), (std::vector<int>{3, 2, 70, 73}));
    Attribute attribute({0, -1, 0}, "1", "QTY");
    tags = recorded(attribute);
    EXPECT_EQ(tags[tags.size() - 3], (RawTag{100, "AcDbAttribute"}));
    EXPECT_EQ(tags[tags.size() - 2], (RawTag{2, "QTY"}));
    EXPECT_EQ(tags.back(), (RawTag{70, "0"}));
}

TEST(EntityLayout, LongMTextGoesInChunksThatEndOnCharacters) {
    std::string text;
    for (int i = 0; i < 200; ++i) text += "\xEB\xB3\xBC";  // 볼, three bytes each
    text += "\\PEND";
    MText mtext({0, 0, 0}, text);
    const std::vector<RawTag> tags = recorded(mtext);
    std::string joined;
    int chunks = 0;
    for (const RawTag& tag : tags) {
        if (tag.code != 3 && tag.code != 1) continue;
        EXPECT_LE(tag.value.size(), 250u);
        EXPECT_EQ(tag.value.size() % 3, tag.code == 1 ? 5u % 3 : 0u);
        chunks += tag.code == 3;
        joined += tag.value;
    }
    EXPECT_EQ(chunks, 2);
    EXPECT_EQ(joined, text);
}

TEST(EntityLayout, UniformPolylineWidthIsWrittenOnce) {
    Polyline pline;
    pline.addVertexAt(0, {0, 0}, 0.0, 0.5, 0.5);
    pline.addVertexAt(1, {1, 0}, 1.0, 0.5, 0.5);
    std::vector<int> codes = codesOf(recorded(pline));
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 43), 1);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 40), 0);
    pline.setWidthsAt(1, 0.5, 1.0);
    codes = codesOf(recorded(pline));
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 43), 0);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 41), 2);
}

// A hatch's source boundaries and a raw entity's links are kept as text, yet cloning must
// see them as references.
TEST(EntityLayout, KeptTagsShowTheirReferencesToWalkers) {
    Database db;
    auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite);
    ObjectId boundary, hatchId, leaderId;
    model->appendEntity(std::make_unique<Line>(ge::Point3d{0, 0, 0}, ge::Point3d{1, 0, 0}),
                        boundary);
    auto hatch = std::make_unique<Hatch>();
    hatch->setDefinitionTags(tagsOf("91 1 92 1 93 1 72 1 10 0 20 0 11 1 21 0 97 1 330 " +
                                    boundary.handle().toHex() + " 75 0 76 1 98 0"));
    model->appendEntity(std::move(hatch), hatchId);
    auto leader = std::make_unique<RawEntity>("LEADER", "AcDbLeader");
    leader->tags() = {{100, "AcDbLeader"}, {340, boundary.handle().toHex()}, {71, "1"}};
    model->appendEntity(std::move(leader), leaderId);
    model.close();

    for (ObjectId id : {hatchId, leaderId}) {
        std::vector<ObjectId> seen;
        ReferenceWalker walker([&](const ReferenceWalker::Field& field, ObjectId& target) {
            if (field.kind != ReferenceWalker::Kind::Owner &&
                field.kind != ReferenceWalker::Kind::Symbol)
                seen.push_back(target);
        });
        auto entity = open<Entity>(id, OpenMode::ForWrite);
        walker.walk(*entity);
        EXPECT_EQ(seen, std::vector<ObjectId>{boundary}) << entity->dxfName();
    }
    // Moving the hatch rewrites its geometry, never its links.
    auto moved = open<Hatch>(hatchId, OpenMode::ForWrite);
    ASSERT_EQ(moved->transformBy(ge::Matrix3d::translation({5, 0, 0})), ErrorStatus::eOk);
    EXPECT_EQ(moved->definitionTags()[9], (RawTag{330, boundary.handle().toHex()}));
    EXPECT_EQ(moved->definitionTags()[6], (RawTag{11, "6"}));
}

// Entities whose points are in the object coordinate system of an extrusion (0, 0, -1): that
// system's x axis is the world's -x, so the world geometry lies mirrored in x and at -z.
TEST(OcsFromFile, GivesTheWorldGeometry) {
    const struct {
        const char* name;
        const char* entity;  // the tags after "0"
        ge::Point3d min, max;
    } rows[] = {
        // clang-format off
        {"circle", "CIRCLE\n8\n0\n10\n1\n20\n2\n30\n3\n40\n1\n", {-2, 1, -3}, {0, 3, -3}},
        {"arc in the first quadrant", "ARC\n8\n0\n10\n0\n20\n0\n30\n0\n40\n1\n50\n0\n51\n90\n",
         {-1, 0, 0}, {0, 1, 0}},
        {"lwpolyline at elevation", "LWPOLYLINE\n8\n0\n90\n2\n38\n3\n10\n1\n20\n0\n10\n2\n20\n1\n",
         {-2, 0, -3}, {-1, 1, -3}},
        {"solid", "SOLID\n8\n0\n10\n0\n20\n0\n30\n2\n11\n1\n21\n0\n31\n2\n12\n0\n22\n1\n32\n2\n"
                  "13\n1\n23\n1\n33\n2\n", {-1, 0, -2}, {0, 1, -2}},
        {"text", "TEXT\n8\n0\n10\n1\n20\n2\n30\n0\n40\n1\n1\nAB\n", {-2.2, 2, 0}, {-1, 3, 0}},
        {"insert", "INSERT\n8\n0\n2\nB\n10\n1\n20\n2\n30\n3\n", {-2, 2, -3}, {-1, 2, -3}},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string dxf =
            "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nB\n70\n0\n10\n0\n20\n0\n30\n0\n"
            "0\nLINE\n8\n0\n10\n0\n20\n0\n30\n0\n11\n1\n21\n0\n31\n0\n0\nENDBLK\n8\n0\n0\nENDSEC\n"
            "0\nSECTION\n2\nENTITIES\n0\n" +
            std::string(row.entity) + "210\n0\n220\n0\n230\n-1\n0\nENDSEC\n0\nEOF\n";
        Database db(false);
        ASSERT_EQ(db.readDxfBytes(dxf, "ocs.dxf"), ErrorStatus::eOk) << db.lastErrorMessage();
        const std::vector<ObjectId> ids = entitiesOf(db.modelSpaceId());
        ASSERT_EQ(ids.size(), 1u);
        Extents3d extents;
        ASSERT_EQ(open<Entity>(ids[0], OpenMode::ForRead)->getGeomExtents(extents),
                  ErrorStatus::eOk);
        expectExtents(extents, row.min, row.max);
        EXPECT_EQ(db.openObjectCount(), 0);
    }
}

// A drawing with every entity type, non-default values everywhere.
class EveryEntityFile : public DrawingTest, public ::testing::WithParamInterface<DxfVersion> {
protected:
    void build() {
        const ObjectId ms = db.modelSpaceId();
        auto line = std::make_unique<Line>(ge::Point3d{1, 2, 3}, ge::Point3d{4, 5, 6});
        line->setThickness(2);
        line->setColorIndex(1);
        append(ms, std::move(line));
        append(ms, std::make_unique<Circle>(ge::Point3d{1, 2, 3}, -ge::Vector3d::kZAxis, 2.5));
        append(ms, std::make_unique<Arc>(ge::Point3d{1, 1, 0}, ge::Vector3d::kZAxis, 2, 5.9, 0.4));
        append(ms, std::make_unique<Ellipse>(ge::Point3d{0, 0, 0}, ge::Vector3d::kZAxis,
                                             ge::Vector3d{3, 1, 0}, 0.5, 0.5, 4.0));
        append(ms, std::make_unique<Point>(ge::Point3d{7, 8, 9}));
        append(ms, std::make_unique<Solid>(ge::Point3d{0, 0, 0}, ge::Point3d{1, 0, 0},
                                           ge::Point3d{0, 1, 0}, ge::Point3d{1, 1, 0}));
        auto text = std::make_unique<Text>(ge::Point3d{}, "BM", db.textStyleStandard(), 0.5, 0.3);
        text->setHorizontalMode(TextHorzMode::kTextMid);
        text->setAlignmentPoint({5, 5, 0});
        text->mirrorInX(true);
        text->setOblique(0.2);
        text->setWidthFactor(0.8);
        append(ms, std::move(text));
        std::string korean;
        for (int i = 0; i < 120; ++i) korean += "\xEB\xB3\xBC\xED\x8A\xB8";  // 볼트
        auto mtext = std::make_unique<MText>(ge::Point3d{1, 1, 0}, korean + "\\Pline 2");
        mtext->setAttachment(MText::AttachmentPoint::kMiddleCenter);
        mtext->setWidth(30);
        mtext->setRotation(0.5);
        append(ms, std::move(mtext));
        auto pline = std::make_unique<Polyline>();
        pline->addVertexAt(0, {0, 0}, 0.5, 0.1, 0.2);
        pline->addVertexAt(1, {4, 0});
        pline->addVertexAt(2, {4, 3}, -0.25);
        pline->setClosed(true);
        pline->setElevation(2);
        append(ms, std::move(pline));
        auto pline2d = std::make_unique<Polyline2d>(
            std::vector<ge::Point3d>{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}, 1.5, true);
        append(ms, std::move(pline2d));
        append(ms, polyface());
        auto spline = std::make_unique<Spline>();
        spline->setNurbsData(2, Spline::kPlanar, {{0, 0, 0}, {1, 2, 0}, {3, 0, 0}},
                             {0, 0, 0, 1, 1, 1}, {1, 0.7, 1});
        spline->setFitData({{0, 0, 0}, {3, 0, 0}}, 2, 0.01, {1, 0, 0}, {0, -1, 0});
        append(ms, std::move(spline));
        auto hatch = std::make_unique<Hatch>();
        hatch->setDefinitionTags(
            tagsOf("91 1 92 7 72 1 73 1 93 3 10 0 20 0 42 0.5 10 4 20 0 "
                   "42 0 10 4 20 3 42 0 97 0 75 1 76 1 98 1 10 1 20 1"));
        append(ms, std::move(hatch));
        auto face = std::make_unique<RawEntity>("3DFACE", "AcDbFace");
        face->tags() = tagsOf(
            "100 AcDbFace 10 0.0 20 0.0 30 0.0 11 1.0 21 0.0 31 0.0 12 1.0 "
            "22 1.0 32 0.0 13 0.0 23 1.0 33 0.0");
        append(ms, std::move(face));

        const ObjectId block = addBlock(db, "QRBBM2");
        auto definition = std::make_unique<AttributeDefinition>(ge::Point3d{0, -1, 0}, "", "NAME",
                                                                "NAME", db.textStyleStandard());
        definition->setInvisible(true);
        definition->setFieldLength(25);
        append(block, std::move(definition));
        auto reference = std::make_unique<BlockReference>(ge::Point3d{10, 5, 0}, block);
        reference->setScaleFactors({-1, 1, 1});
        reference->setNormal(-ge::Vector3d::kZAxis);
        ObjectId attribute;
        reference->appendAttribute(std::make_unique<Attribute>(ge::Point3d{10, 4, 0}, "bolt",
                                                               "NAME", db.textStyleStandard()),
                                   attribute);
        append(ms, std::move(reference));
        auto array = std::make_unique<BlockReference>(ge::Point3d{0, 20, 0}, block);
        array->setArray(2, 3, 5.0, 6.0);
        append(ms, std::move(array));
    }

    std::unique_ptr<Entity> polyface() {
        auto mesh = std::make_unique<Polyline3d>(Polyline3d::kPolyfaceMesh);
        mesh->setMeshSize(3, 1);
        ObjectId ignored;
        for (const ge::Point3d& p : {ge::Point3d{0, 0, 0}, {1, 0, 0}, {0, 1, 1}})
            mesh->appendVertex(
                std::make_unique<Vertex3d>(p, Vertex::kPolygonMesh | Vertex::kPolyfaceMesh),
                ignored);
        auto face = std::make_unique<Vertex3d>(Vertex::kPolyfaceMesh);
        for (int corner = 0; corner < 3; ++corner) face->setFaceIndex(corner, corner + 1);
        mesh->appendVertex(std::move(face), ignored);
        return mesh;
    }

    // Every entity with its sub-entities, by handle.
    static std::map<std::uint64_t, ObjectId> entitiesOf(const Database& source) {
        std::map<std::uint64_t, ObjectId> entities;
        for (ObjectId id : source.objectIds()) {
            if (dynamic_cast<const Entity*>(id.slot()->object.get()) != nullptr && !id.isErased())
                entities[id.handle().value] = id;
        }
        return entities;
    }

    sys::TestTempFolder folder;
};

TEST_P(EveryEntityFile, ReadsBackFieldForFieldWithNothingLeftOver) {
    build();
    const std::string path = folder.file("every.dxf");
    ASSERT_EQ(db.saveAs(path, GetParam()), ErrorStatus::eOk) << db.lastErrorMessage();
    Database back(false);
    ASSERT_EQ(back.readDwgFile(path), ErrorStatus::eOk) << back.lastErrorMessage();
    EXPECT_TRUE(back.loadIssues().empty()) << back.loadIssues().front().message;

    const auto written = entitiesOf(db);
    const auto read = entitiesOf(back);
    ASSERT_EQ(read.size(), written.size());
    for (const auto& [handle, id] : written) {
        ASSERT_EQ(read.count(handle), 1u) << std::hex << handle;
        auto before = open<Entity>(id, OpenMode::ForRead);
        auto after = open<Entity>(read.at(handle), OpenMode::ForRead);
        const std::string type(before->dxfName());
        EXPECT_EQ(textOf(recorded(*after)), textOf(recorded(*before))) << type;
        // A field a declaration failed to read would have been kept instead.
        for (const DbObject::KeptTags& kept : after->keptTags())
            ADD_FAILURE() << type << " kept in " << kept.subclass << ":\n" << textOf(kept.tags);
    }
    EXPECT_EQ(back.openObjectCount(), 0);
}

TEST_P(EveryEntityFile, LoadsInEzdxfWithoutAuditErrors) {
    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    build();
    const std::string path = folder.file("every.dxf");
    ASSERT_EQ(db.saveAs(path, GetParam()), ErrorStatus::eOk) << db.lastErrorMessage();
    const vantor::test::ExternalRun run = vantor::test::ezdxfAudit(path);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_NE(run.output.find("errors 0 "), std::string::npos) << run.output;
}

INSTANTIATE_TEST_SUITE_P(Entity, EveryEntityFile,
                         ::testing::Values(DxfVersion::R2000, DxfVersion::R14),
                         [](const ::testing::TestParamInfo<DxfVersion>& row) {
                             return row.param == DxfVersion::R14 ? "R14" : "R2000";
                         });

}  // namespace
}  // namespace cad::db
