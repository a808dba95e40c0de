// Tests of deep and wblock cloning on drawings built in memory: what comes along, what the
// destination keeps, how references are translated, and that nothing is left open.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/IdMapping.h"
#include "cad/db/Line.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/RawObject.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::db {
namespace {

using namespace testing_support;

ObjectId cloneOf(const IdMapping& map, ObjectId source) {
    IdPair pair(source, ObjectId::kNull, false);
    EXPECT_TRUE(map.compute(pair));
    return pair.value();
}

// Every reference of every live object names a live object of the same database, or nothing.
void expectReferencesResolved(Database& db) {
    for (ObjectId id : db.objectIds()) {
        if (id.isErased()) continue;
        auto object = open<DbObject>(id, OpenMode::ForRead);
        ReferenceWalker walker([&](const ReferenceWalker::Field& field, ObjectId& target) {
            if (target.isNull() || field.kind == ReferenceWalker::Kind::Arbitrary) return;
            EXPECT_TRUE(target.database() == &db && target.isValid())
                << object->dxfName() << " " << id.handle().toHex() << " code " << field.code;
        });
        walker.walk(*object);
    }
    EXPECT_EQ(db.openObjectCount(), 0);
}

// A deep clone when `dest` is the source's database, a wblock clone otherwise.
ErrorStatus cloneInto(Database& source, Database& dest, const std::vector<ObjectId>& ids,
                      ObjectId owner, IdMapping& map) {
    return &source == &dest
               ? source.deepCloneObjects(ids, owner, map)
               : dest.wblockCloneObjects(ids, owner, map, DuplicateRecordCloning::Ignore);
}

// Saves `db` and reads it back. The reader reports duplicate handles and references to
// nothing as load issues, so none may come.
std::unique_ptr<Database> readBack(Database& db) {
    sys::TestTempFolder folder;
    EXPECT_EQ(db.saveAs(folder.file("copy.dxf")), ErrorStatus::eOk) << db.lastErrorMessage();
    auto back = std::make_unique<Database>(false);
    EXPECT_EQ(back->readDwgFile(folder.file("copy.dxf")), ErrorStatus::eOk)
        << back->lastErrorMessage();
    for (const AuditIssue& issue : back->loadIssues()) ADD_FAILURE() << issue.message;
    return back;
}

// A library drawing: block PART holds a line on layer PART (linetype DASHED), a text in
// style KS and a reference to block BOLT, whose line lies on layer HIDDEN.
struct Library {
    Database db;
    ObjectId dashed =
        addRecord(db.linetypeTableId(), std::make_unique<LinetypeTableRecord>(), "DASHED");
    ObjectId textStyle =
        addRecord(db.textStyleTableId(), std::make_unique<TextStyleTableRecord>(), "KS");
    ObjectId partLayer = addLayer(db, "PART", 1, dashed);
    ObjectId hiddenLayer = addLayer(db, "HIDDEN", 2);
    ObjectId bolt = addBlock(db, "BOLT");
    ObjectId boltLine = append(
        bolt, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(1, 0, 0)), hiddenLayer);
    ObjectId part = addBlock(db, "PART");
    ObjectId partLine =
        append(part, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(5, 5, 0)), partLayer);
    ObjectId partText =
        append(part, std::make_unique<Text>(ge::Point3d(1, 1, 0), "M10", textStyle));
    ObjectId boltReference =
        append(part, std::make_unique<BlockReference>(ge::Point3d(2, 0, 0), bolt), partLayer);
};

// The block comes over as its record (with its entities), or as entities cloned into a
// record made in the target beforehand, which is how the module copies a part.
enum class BlockCopy { RecordIntoTable, EntitiesIntoRecord };

class WblockBlock : public ::testing::TestWithParam<BlockCopy> {
protected:
    // Copies PART into `target`; answers the target's PART record.
    ObjectId copyPart(Database& target, IdMapping& map,
                      DuplicateRecordCloning drc = DuplicateRecordCloning::Ignore) {
        ObjectId record = lookUp(target.blockTableId(), "PART");
        if (GetParam() == BlockCopy::RecordIntoTable) {
            EXPECT_EQ(target.wblockCloneObjects({library.part}, target.blockTableId(), map, drc),
                      ErrorStatus::eOk);
            record = lookUp(target.blockTableId(), "PART");
        } else {
            if (record.isNull()) record = addBlock(target, "PART");
            EXPECT_EQ(target.wblockCloneObjects(entitiesOf(library.part), record, map, drc),
                      ErrorStatus::eOk);
        }
        EXPECT_EQ(library.db.openObjectCount(), 0);
        expectReferencesResolved(target);
        return record;
    }

    Library library;
};

TEST_P(WblockBlock, BringsLayersLinetypesTextStylesAndNestedBlocks) {
    // The line's group stays behind, so the line's soft pointer to it is cut.
    ObjectId group;
    ASSERT_EQ(addGroup(library.db, std::make_unique<Group>(), "*", group), ErrorStatus::eOk);
    open<Group>(group, OpenMode::ForWrite)->append(library.partLine);
    const std::size_t sourceObjects = library.db.objectIds().size();
    Database target;
    IdMapping map;
    const std::vector<ObjectId> entities = entitiesOf(copyPart(target, map));
    ASSERT_EQ(entities.size(), 3u);
    EXPECT_EQ(map.deepCloneContext(), DeepCloneContext::WblockObjects);

    auto line = open<Line>(entities[0], OpenMode::ForRead);
    EXPECT_EQ(line->endPoint(), ge::Point3d(5, 5, 0));
    EXPECT_TRUE(line->persistentReactors().empty());
    EXPECT_EQ(line->layerId(), lookUp(target.layerTableId(), "PART"));
    auto layer = open<LayerTableRecord>(line->layerId(), OpenMode::ForRead);
    EXPECT_EQ(layer->colorIndex(), 1);
    EXPECT_EQ(layer->linetypeObjectId(), lookUp(target.linetypeTableId(), "DASHED"));
    // The plot style dictionary is kept raw; its "Normal" entry in the target stands in.
    EXPECT_EQ(layer->plotStyleNameId(),
              open<LayerTableRecord>(target.layerZero(), OpenMode::ForRead)->plotStyleNameId());
    auto text = open<Text>(entities[1], OpenMode::ForRead);
    EXPECT_EQ(text->textStyle(), lookUp(target.textStyleTableId(), "KS"));
    EXPECT_EQ(text->layerId(), target.layerZero());
    const ObjectId bolt = lookUp(target.blockTableId(), "BOLT");
    EXPECT_EQ(open<BlockReference>(entities[2], OpenMode::ForRead)->blockTableRecord(), bolt);
    const std::vector<ObjectId> boltEntities = entitiesOf(bolt);
    ASSERT_EQ(boltEntities.size(), 1u);
    EXPECT_EQ(open<Line>(boltEntities[0], OpenMode::ForRead)->layerId(),
              lookUp(target.layerTableId(), "HIDDEN"));
    // The source was only read.
    EXPECT_EQ(library.db.objectIds().size(), sourceObjects);
    EXPECT_EQ(open<Line>(library.partLine, OpenMode::ForRead)->persistentReactors(),
              std::vector<ObjectId>{group});
}

TEST_P(WblockBlock, RecordsTheTargetHasFollowTheDuplicateRecordRule) {
    // PART also refers to an anonymous block, and the target has an unrelated one of the same
    // name: anonymous names are numbered per drawing, whatever the rule.
    const ObjectId anonymous = addBlock(library.db, "*U1", {}, BlockTableRecord::kAnonymous);
    append(anonymous, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(0, 1, 0)));
    append(library.part, std::make_unique<BlockReference>(ge::Point3d(0, 0, 0), anonymous));
    for (DuplicateRecordCloning drc :
         {DuplicateRecordCloning::Ignore, DuplicateRecordCloning::Replace}) {
        const bool replace = drc == DuplicateRecordCloning::Replace;
        SCOPED_TRACE(replace ? "Replace" : "Ignore");
        Database target;
        const ObjectId layer = addLayer(target, "part", 5);  // names compare without case
        const ObjectId bolt = addBlock(target, "BOLT");
        const ObjectId circle =
            append(bolt, std::make_unique<Circle>(ge::Point3d(0, 0, 0), ge::Vector3d::kZAxis, 1.0));
        const ObjectId otherAnonymous = addBlock(target, "*U1", {}, BlockTableRecord::kAnonymous);
        IdMapping map;
        const std::vector<ObjectId> entities = entitiesOf(copyPart(target, map, drc));
        ASSERT_EQ(entities.size(), 4u);

        // The target's records stay (what else uses them keeps working); their data is the
        // target's with Ignore and the source's with Replace.
        EXPECT_EQ(open<Line>(entities[0], OpenMode::ForRead)->layerId(), layer);
        EXPECT_EQ(cloneOf(map, library.partLayer), layer);
        EXPECT_EQ(open<LayerTableRecord>(layer, OpenMode::ForRead)->colorIndex(), replace ? 1 : 5);
        EXPECT_EQ(open<BlockReference>(entities[2], OpenMode::ForRead)->blockTableRecord(), bolt);
        const std::vector<ObjectId> boltEntities = entitiesOf(bolt);
        ASSERT_EQ(boltEntities.size(), 1u);
        EXPECT_EQ(boltEntities[0] == circle, !replace);
        EXPECT_EQ(circle.isErased(), replace);

        const ObjectId copy =
            open<BlockReference>(entities[3], OpenMode::ForRead)->blockTableRecord();
        EXPECT_EQ(open<BlockTableRecord>(copy, OpenMode::ForRead)->name(), "*U2");
        EXPECT_EQ(entitiesOf(copy).size(), 1u);
        EXPECT_TRUE(entitiesOf(otherAnonymous).empty());
    }
}

TEST_P(WblockBlock, SecondCopyReusesTheRecordsOfTheFirst) {
    Database target;
    IdMapping first, second;
    copyPart(target, first);
    const std::size_t objects = target.objectIds().size();
    // With a record already there, Ignore keeps it whole; entities cloned into it again
    // find every record they use already there.
    copyPart(target, second);
    const std::size_t added = GetParam() == BlockCopy::RecordIntoTable ? 0 : 3;
    EXPECT_EQ(target.objectIds().size(), objects + added);
    // The same map once more: what it holds is not copied twice.
    copyPart(target, second);
    EXPECT_EQ(target.objectIds().size(), objects + added);
}

INSTANTIATE_TEST_SUITE_P(Clone, WblockBlock,
                         ::testing::Values(BlockCopy::RecordIntoTable,
                                           BlockCopy::EntitiesIntoRecord),
                         [](const ::testing::TestParamInfo<BlockCopy>& row) {
                             return row.param == BlockCopy::RecordIntoTable ? "RecordIntoTable"
                                                                            : "EntitiesIntoRecord";
                         });

TEST(CloneObjects, RawTagReferencesAreTranslatedArbitraryHandlesAreNot) {
    for (const bool across : {false, true}) {
        SCOPED_TRACE(across ? "wblock clone" : "deep clone");
        // An application dictionary holding an extended record and an object the engine does
        // not model, which names the record by a 340 and a 320, layer HIDDEN by a 330, and
        // by a 341 a handle that nothing carries.
        Library library;
        ObjectId app, record, raw;
        open<Dictionary>(library.db.namedObjectsDictionaryId(), OpenMode::ForWrite)
            ->setAt("APP", std::make_unique<Dictionary>(), app);
        const std::string layer = library.hiddenLayer.handle().toHex();
        {
            auto dictionary = open<Dictionary>(app, OpenMode::ForWrite);
            dictionary->setAt("DATA", std::make_unique<Xrecord>(), record);
            const std::string handle = record.handle().toHex();
            dictionary->setAt(
                "OBJECT",
                std::make_unique<RawObject>(
                    "APPOBJECT", "AppObject",
                    tagsOf("340 " + handle + " 320 " + handle + " 330 " + layer + " 341 FFFF")),
                raw);
        }
        Database target;
        Database& dest = across ? target : library.db;
        IdMapping map;
        ASSERT_EQ(cloneInto(library.db, dest, {record, raw},
                            across ? target.namedObjectsDictionaryId() : app, map),
                  ErrorStatus::eOk);
        EXPECT_EQ(library.db.openObjectCount(), 0);

        // The layer was not cloned: the same layer within a drawing, nothing across; and text
        // naming nothing there would name some unrelated object here.
        const std::vector<RawTag> expected = {{340, cloneOf(map, record).handle().toHex()},
                                              {320, record.handle().toHex()},
                                              {330, across ? "0" : layer},
                                              {341, across ? "0" : "FFFF"}};
        EXPECT_EQ(open<RawObject>(cloneOf(map, raw), OpenMode::ForRead)->tags(), expected);
        EXPECT_EQ(open<RawObject>(raw, OpenMode::ForRead)->tags()[0].value,
                  record.handle().toHex());
        expectReferencesResolved(dest);
    }
}

TEST(CloneObjects, ReferenceCopyOwnsCopiesOfItsAttributes) {
    for (const bool across : {false, true}) {
        SCOPED_TRACE(across ? "wblock clone" : "deep clone");
        Library library;
        const ObjectId reference =
            append(library.db.modelSpaceId(),
                   std::make_unique<BlockReference>(ge::Point3d(0, 0, 0), library.part));
        ObjectId attribute;
        ASSERT_EQ(
            open<BlockReference>(reference, OpenMode::ForWrite)
                ->appendAttribute(std::make_unique<Attribute>(ge::Point3d(1, 0, 0), "M10", "SIZE"),
                                  attribute),
            ErrorStatus::eOk);
        Database target;
        Database& dest = across ? target : library.db;
        IdMapping map;
        ASSERT_EQ(cloneInto(library.db, dest, {reference}, dest.modelSpaceId(), map),
                  ErrorStatus::eOk);

        const ObjectId copy = cloneOf(map, reference);
        const std::vector<ObjectId> attributes =
            open<BlockReference>(copy, OpenMode::ForRead)->attributeIds();
        ASSERT_EQ(attributes, std::vector<ObjectId>{cloneOf(map, attribute)});
        EXPECT_NE(attributes[0], attribute);
        EXPECT_EQ(open<Attribute>(attributes[0], OpenMode::ForRead)->ownerId(), copy);
        EXPECT_EQ(open<BlockReference>(reference, OpenMode::ForRead)->attributeIds(),
                  std::vector<ObjectId>{attribute});
        expectReferencesResolved(dest);
        expectReferencesResolved(*readBack(dest));
    }
}

TEST(CloneObjects, DeepCloneTranslatesAmongClonesAndKeepsOtherReferences) {
    Library library;
    Database& db = library.db;
    // The part's line is in a group and has an extension dictionary whose record points hard
    // at the text (cloned too) and soft at the bolt's line (not cloned).
    ObjectId group, extension, record;
    ASSERT_EQ(addGroup(db, std::make_unique<Group>(), "OUTLINE", group), ErrorStatus::eOk);
    open<Group>(group, OpenMode::ForWrite)->append(library.partLine);
    {
        auto line = open<Line>(library.partLine, OpenMode::ForWrite);
        db.addObject(std::make_unique<Dictionary>(), extension, library.partLine);
        line->setExtensionDictionary(extension);
    }
    auto xrecord = std::make_unique<Xrecord>();
    xrecord->setFromRbChain({{340, library.partText}, {330, library.boltLine}});
    open<Dictionary>(extension, OpenMode::ForWrite)->setAt("LINK", std::move(xrecord), record);

    // Two owners, so two calls on one map; the second translates for both.
    const ObjectId copy = addBlock(db, "COPY");
    IdMapping map;
    ASSERT_EQ(db.deepCloneObjects({library.partLine, library.partText}, copy, map, true),
              ErrorStatus::eOk);
    ASSERT_EQ(db.deepCloneObjects({group}, db.groupDictionaryId(), map), ErrorStatus::eOk);

    // The map lists every pair: the primaries, what they own, and their owners standing for
    // the new ones.
    struct Row {
        ObjectId key;
        bool cloned, primary;
    };
    const Row rows[] = {{library.part, false, false},
                        {library.partLine, true, true},
                        {extension, true, false},
                        {record, true, false},
                        {library.partText, true, true},
                        {db.groupDictionaryId(), false, false},
                        {group, true, true}};
    ASSERT_EQ(map.size(), std::size(rows));
    for (const Row& row : rows) {
        IdPair pair(row.key, ObjectId::kNull, false);
        ASSERT_TRUE(map.compute(pair));
        EXPECT_EQ(pair.isCloned(), row.cloned) << row.key.handle().toHex();
        EXPECT_EQ(pair.isPrimary(), row.primary) << row.key.handle().toHex();
    }
    EXPECT_EQ(cloneOf(map, library.part), copy);

    const ObjectId line = cloneOf(map, library.partLine), text = cloneOf(map, library.partText);
    EXPECT_EQ(entitiesOf(copy), (std::vector<ObjectId>{line, text}));
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->layerId(), library.partLayer);
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->extensionDictionary(), cloneOf(map, extension));
    EXPECT_EQ(open<Dictionary>(cloneOf(map, extension), OpenMode::ForRead)->ownerId(), line);
    ObjectId entry;
    open<Dictionary>(cloneOf(map, extension), OpenMode::ForRead)->getAt("LINK", entry);
    EXPECT_EQ(entry, cloneOf(map, record));
    const ResBufChain chain = open<Xrecord>(entry, OpenMode::ForRead)->rbChain();
    EXPECT_EQ(std::get<ObjectId>(chain.at(0).value), text);
    EXPECT_EQ(std::get<ObjectId>(chain.at(1).value), library.boltLine);
    // The copied group holds the copied line, and only the copy is told so.
    const ObjectId groupCopy = cloneOf(map, group);
    EXPECT_EQ(open<Group>(groupCopy, OpenMode::ForRead)->allEntityIds(),
              std::vector<ObjectId>{line});
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->persistentReactors(),
              std::vector<ObjectId>{groupCopy});
    EXPECT_EQ(open<Line>(library.partLine, OpenMode::ForRead)->persistentReactors(),
              std::vector<ObjectId>{group});
    EXPECT_EQ(entitiesOf(library.part).size(), 3u);
    expectReferencesResolved(db);
}

TEST(CloneObjects, RefusesIdsOwnersAndMapsOfAnotherDatabase) {
    Library library;
    Database other;
    IdMapping a, b, c, d;
    d.setDestDb(&other);
    const std::size_t objects = library.db.objectIds().size();
    const ObjectId space = library.db.modelSpaceId();
    EXPECT_EQ(library.db.deepCloneObjects({other.layerZero()}, space, a),
              ErrorStatus::eWrongDatabase);
    EXPECT_EQ(library.db.deepCloneObjects({library.partLine}, other.modelSpaceId(), b),
              ErrorStatus::eWrongDatabase);
    EXPECT_EQ(library.db.deepCloneObjects({library.partLine}, ObjectId::kNull, c),
              ErrorStatus::eNullObjectId);
    EXPECT_EQ(library.db.deepCloneObjects({library.partLine}, space, d),
              ErrorStatus::eWrongDatabase);
    EXPECT_EQ(
        other.wblockCloneObjects({library.partLine}, space, a, DuplicateRecordCloning::Ignore),
        ErrorStatus::eWrongDatabase);
    EXPECT_EQ(library.db.objectIds().size(), objects);
    EXPECT_EQ(library.db.openObjectCount() + other.openObjectCount(), 0);
}

}  // namespace
}  // namespace cad::db
