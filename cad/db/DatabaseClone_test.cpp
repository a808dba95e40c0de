// Tests of deep and wblock cloning on drawings built in memory: what comes along, what the
// destination keeps, how references are translated, and that nothing is left open.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/IdMapping.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/RawObject.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/Xrecord.h"

namespace cad::db {
namespace {

// ---- Building drawings -------------------------------------------------------------------

ObjectId addRecord(ObjectId tableId, std::unique_ptr<SymbolTableRecord> record,
                   const std::string& name) {
    EXPECT_EQ(record->setName(name), ErrorStatus::eOk);
    auto table = open<SymbolTable>(tableId, OpenMode::ForWrite);
    EXPECT_TRUE(table);
    ObjectId id;
    EXPECT_EQ(table->add(std::move(record), id), ErrorStatus::eOk) << name;
    return id;
}

ObjectId addLayer(Database& db, const std::string& name, std::int16_t color,
                  ObjectId linetype = {}) {
    auto layer = std::make_unique<LayerTableRecord>();
    layer->setColorIndex(color);
    if (!linetype.isNull()) layer->setLinetypeObjectId(linetype);
    return addRecord(db.layerTableId(), std::move(layer), name);
}

ObjectId addBlock(Database& db, const std::string& name) {
    return addRecord(db.blockTableId(), std::make_unique<BlockTableRecord>(), name);
}

ObjectId append(ObjectId blockId, std::unique_ptr<Entity> entity, ObjectId layer = {}) {
    if (!layer.isNull()) entity->setLayer(layer);
    auto block = open<BlockTableRecord>(blockId, OpenMode::ForWrite);
    EXPECT_TRUE(block);
    ObjectId id;
    EXPECT_EQ(block->appendEntity(std::move(entity), id), ErrorStatus::eOk);
    return id;
}

ObjectId lookUp(ObjectId tableId, const std::string& name) {
    auto table = open<SymbolTable>(tableId, OpenMode::ForRead);
    ObjectId id;
    if (table) table->getAt(name, id);
    return id;
}

std::string nameOf(ObjectId recordId) {
    auto record = open<SymbolTableRecord>(recordId, OpenMode::ForRead);
    return record ? record->name()
                  : std::string("<") + errorStatusName(record.openStatus()).data() + ">";
}

std::vector<ObjectId> entitiesOf(ObjectId blockId) {
    auto block = open<BlockTableRecord>(blockId, OpenMode::ForRead);
    return block ? block->entityIds() : std::vector<ObjectId>{};
}

std::int16_t layerColor(ObjectId layerId) {
    auto layer = open<LayerTableRecord>(layerId, OpenMode::ForRead);
    return layer ? layer->colorIndex() : -1;
}

// Every reference of every live object names a live object of the same database (or nothing):
// no reference into the source drawing, none to something missing.
void expectReferencesResolved(Database& db) {
    for (ObjectId id : db.objectIds()) {
        if (id.isErased()) continue;
        auto object = open<DbObject>(id, OpenMode::ForRead);
        ASSERT_TRUE(object) << id.handle().toHex();
        ReferenceWalker walker([&](const ReferenceWalker::Field& field, ObjectId& target) {
            if (target.isNull() || field.kind == ReferenceWalker::Kind::Arbitrary) return;
            EXPECT_EQ(target.database(), &db)
                << object->dxfName() << " " << id.handle().toHex() << " code " << field.code;
            EXPECT_TRUE(target.isValid())
                << object->dxfName() << " " << id.handle().toHex() << " code " << field.code;
        });
        walker.walk(*object);
    }
}

// A library drawing: block PART (a line on layer PART with a dashed linetype, a text in
// style KS, a reference to the nested block BOLT whose line lies on layer HIDDEN).
struct Library {
    Database db;
    ObjectId dashed, textStyle, partLayer, hiddenLayer, bolt, boltLine, part, partLine, partText,
        boltReference;

    Library() {
        auto linetype = std::make_unique<LinetypeTableRecord>();
        dashed = addRecord(db.linetypeTableId(), std::move(linetype), "DASHED");
        auto style = std::make_unique<TextStyleTableRecord>();
        style->setFileName("ks.shx");
        textStyle = addRecord(db.textStyleTableId(), std::move(style), "KS");
        partLayer = addLayer(db, "PART", 1, dashed);
        hiddenLayer = addLayer(db, "HIDDEN", 2);
        bolt = addBlock(db, "BOLT");
        boltLine = append(bolt, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(1, 0, 0)),
                          hiddenLayer);
        part = addBlock(db, "PART");
        partLine = append(part, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(5, 5, 0)),
                          partLayer);
        partText = append(part, std::make_unique<Text>(ge::Point3d(1, 1, 0), "M10", textStyle));
        boltReference =
            append(part, std::make_unique<BlockReference>(ge::Point3d(2, 0, 0), bolt), partLayer);
    }

    std::vector<ObjectId> partEntities() const { return entitiesOf(part); }
};

void expectNothingOpen(const Database& a, const Database& b) {
    EXPECT_EQ(a.openObjectCount(), 0);
    EXPECT_EQ(b.openObjectCount(), 0);
}

// ---- Wblock cloning of a block -----------------------------------------------------------

// The block comes over either as a record (with its entities) or, as the module's block copy
// does, as entities cloned into a record made in the target beforehand.
enum class BlockCopy { RecordIntoTable, EntitiesIntoRecord };

class WblockBlock : public ::testing::TestWithParam<BlockCopy> {
protected:
    // Copies PART into `target` and answers the target's PART record.
    ObjectId copyPart(Database& target, IdMapping& map,
                      DuplicateRecordCloning drc = DuplicateRecordCloning::Ignore) {
        ObjectId record;
        if (GetParam() == BlockCopy::RecordIntoTable) {
            EXPECT_EQ(target.wblockCloneObjects({library.part}, target.blockTableId(), map, drc),
                      ErrorStatus::eOk);
            record = lookUp(target.blockTableId(), "PART");
        } else {
            record = lookUp(target.blockTableId(), "PART");
            if (record.isNull()) record = addBlock(target, "PART");
            EXPECT_EQ(target.wblockCloneObjects(library.partEntities(), record, map, drc),
                      ErrorStatus::eOk);
        }
        expectNothingOpen(library.db, target);
        return record;
    }

    Library library;
};

TEST_P(WblockBlock, BringsLayersLinetypesTextStylesAndNestedBlocks) {
    // The line's group stays behind: a soft pointer to it has nothing to point at.
    ObjectId group;
    ASSERT_EQ(addGroup(library.db, std::make_unique<Group>(), "*", group), ErrorStatus::eOk);
    open<Group>(group, OpenMode::ForWrite)->append(library.partLine);
    Database target;
    const std::size_t sourceObjects = library.db.objectIds().size();
    IdMapping map;
    const ObjectId part = copyPart(target, map);
    ASSERT_FALSE(part.isNull());
    EXPECT_EQ(map.destDb(), &target);
    EXPECT_EQ(map.origDb(), &library.db);
    EXPECT_EQ(map.deepCloneContext(), DeepCloneContext::WblockObjects);

    const std::vector<ObjectId> entities = entitiesOf(part);
    ASSERT_EQ(entities.size(), 3u);
    {
        auto line = open<Line>(entities[0], OpenMode::ForRead);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->ownerId(), part);
        EXPECT_EQ(nameOf(line->layerId()), "PART");
        EXPECT_EQ(line->layerId(), lookUp(target.layerTableId(), "PART"));
        EXPECT_EQ(line->endPoint(), ge::Point3d(5, 5, 0));
        EXPECT_TRUE(line->persistentReactors().empty());
        auto layer = open<LayerTableRecord>(line->layerId(), OpenMode::ForRead);
        ASSERT_TRUE(layer);
        EXPECT_EQ(layer->colorIndex(), 1);
        EXPECT_EQ(layer->linetypeObjectId(), lookUp(target.linetypeTableId(), "DASHED"));
    }
    {
        auto text = open<Text>(entities[1], OpenMode::ForRead);
        ASSERT_TRUE(text);
        EXPECT_EQ(text->textStyle(), lookUp(target.textStyleTableId(), "KS"));
        EXPECT_EQ(text->layerId(), target.layerZero());
    }
    {
        auto reference = open<BlockReference>(entities[2], OpenMode::ForRead);
        ASSERT_TRUE(reference);
        const ObjectId bolt = lookUp(target.blockTableId(), "BOLT");
        ASSERT_FALSE(bolt.isNull());
        EXPECT_EQ(reference->blockTableRecord(), bolt);
        const std::vector<ObjectId> boltEntities = entitiesOf(bolt);
        ASSERT_EQ(boltEntities.size(), 1u);
        auto line = open<Line>(boltEntities[0], OpenMode::ForRead);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->ownerId(), bolt);
        EXPECT_EQ(line->layerId(), lookUp(target.layerTableId(), "HIDDEN"));
    }
    expectReferencesResolved(target);
    // The source was only read.
    EXPECT_EQ(library.db.objectIds().size(), sourceObjects);
    expectReferencesResolved(library.db);
}

TEST_P(WblockBlock, ExistingLayerFollowsTheDuplicateRecordRule) {
    struct Row {
        const char* name;
        DuplicateRecordCloning drc;
        std::int16_t color;
    };
    const Row rows[] = {
        {"Ignore keeps the target's colour", DuplicateRecordCloning::Ignore, 5},
        {"Replace takes the source's colour", DuplicateRecordCloning::Replace, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Database target;
        const ObjectId existing = addLayer(target, "part", 5);  // names compare without case
        IdMapping map;
        const ObjectId part = copyPart(target, map, row.drc);
        const std::vector<ObjectId> entities = entitiesOf(part);
        ASSERT_FALSE(entities.empty());
        auto line = open<Line>(entities[0], OpenMode::ForRead);
        ASSERT_TRUE(line);
        // The record is the target's either way, so what else uses it keeps working.
        EXPECT_EQ(line->layerId(), existing);
        line.close();
        EXPECT_EQ(layerColor(existing), row.color);
        IdPair pair(library.partLayer, ObjectId::kNull, false);
        ASSERT_TRUE(map.compute(pair));
        EXPECT_EQ(pair.value(), existing);
        expectReferencesResolved(target);
        expectNothingOpen(library.db, target);
    }
}

TEST_P(WblockBlock, ExistingNestedBlockKeepsItsRecordAndByTheRuleItsContents) {
    for (DuplicateRecordCloning drc :
         {DuplicateRecordCloning::Ignore, DuplicateRecordCloning::Replace}) {
        const bool replace = drc == DuplicateRecordCloning::Replace;
        SCOPED_TRACE(replace ? "Replace" : "Ignore");
        Database target;
        const ObjectId bolt = addBlock(target, "BOLT");
        const ObjectId circle =
            append(bolt, std::make_unique<Circle>(ge::Point3d(0, 0, 0), ge::Vector3d::kZAxis, 1.0));
        IdMapping map;
        const ObjectId part = copyPart(target, map, drc);
        const std::vector<ObjectId> entities = entitiesOf(part);
        ASSERT_EQ(entities.size(), 3u);
        // References already in the target keep working: the record is the same either way.
        EXPECT_EQ(open<BlockReference>(entities[2], OpenMode::ForRead)->blockTableRecord(), bolt);
        const std::vector<ObjectId> boltEntities = entitiesOf(bolt);
        ASSERT_EQ(boltEntities.size(), 1u);
        if (replace) {
            auto line = open<Line>(boltEntities[0], OpenMode::ForRead);
            ASSERT_TRUE(line);
            EXPECT_EQ(line->ownerId(), bolt);
            EXPECT_EQ(line->layerId(), lookUp(target.layerTableId(), "HIDDEN"));
            EXPECT_TRUE(circle.isErased());
        } else {
            EXPECT_EQ(boltEntities[0], circle);
        }
        expectReferencesResolved(target);
    }
}

TEST_P(WblockBlock, AnonymousBlockGetsANameFreeInTheTarget) {
    // PART also holds a reference to an anonymous block; the target has an unrelated block
    // of the same name.
    auto anonymous = std::make_unique<BlockTableRecord>();
    anonymous->setFlags(BlockTableRecord::kAnonymous);
    const ObjectId source = addRecord(library.db.blockTableId(), std::move(anonymous), "*U1");
    append(source, std::make_unique<Line>(ge::Point3d(0, 0, 0), ge::Point3d(0, 1, 0)));
    append(library.part, std::make_unique<BlockReference>(ge::Point3d(0, 0, 0), source));
    Database target;
    auto other = std::make_unique<BlockTableRecord>();
    other->setFlags(BlockTableRecord::kAnonymous);
    const ObjectId existing = addRecord(target.blockTableId(), std::move(other), "*U1");

    IdMapping map;
    const ObjectId part = copyPart(target, map);
    const std::vector<ObjectId> entities = entitiesOf(part);
    ASSERT_EQ(entities.size(), 4u);
    const ObjectId copy = open<BlockReference>(entities[3], OpenMode::ForRead)->blockTableRecord();
    EXPECT_NE(copy, existing);
    EXPECT_EQ(copy.database(), &target);
    EXPECT_EQ(nameOf(copy), "*U2");
    EXPECT_EQ(entitiesOf(copy).size(), 1u);
    EXPECT_TRUE(entitiesOf(existing).empty());
    EXPECT_EQ(nameOf(source), "*U1");
}

TEST_P(WblockBlock, SecondCopyReusesTheRecordsOfTheFirst) {
    Database target;
    IdMapping first;
    const ObjectId part = copyPart(target, first);
    const std::size_t layers =
        open<SymbolTable>(target.layerTableId(), OpenMode::ForRead)->recordIds().size();
    const std::size_t blocks =
        open<SymbolTable>(target.blockTableId(), OpenMode::ForRead)->recordIds().size();

    IdMapping second;
    copyPart(target, second);
    EXPECT_EQ(open<SymbolTable>(target.layerTableId(), OpenMode::ForRead)->recordIds().size(),
              layers);
    EXPECT_EQ(open<SymbolTable>(target.blockTableId(), OpenMode::ForRead)->recordIds().size(),
              blocks);
    for (ObjectId entity : entitiesOf(part)) {
        auto clone = open<Entity>(entity, OpenMode::ForRead);
        ASSERT_TRUE(clone);
        IdPair pair(library.partLayer, ObjectId::kNull, false);
        ASSERT_TRUE(first.compute(pair));
        if (nameOf(clone->layerId()) == "PART") {
            EXPECT_EQ(clone->layerId(), pair.value());
        }
    }
    // The same map again: what it holds is not copied twice.
    const std::size_t objects = target.objectIds().size();
    copyPart(target, second);
    EXPECT_EQ(target.objectIds().size(), objects);
    expectReferencesResolved(target);
}

INSTANTIATE_TEST_SUITE_P(Clone, WblockBlock,
                         ::testing::Values(BlockCopy::RecordIntoTable,
                                           BlockCopy::EntitiesIntoRecord),
                         [](const ::testing::TestParamInfo<BlockCopy>& row) {
                             return row.param == BlockCopy::RecordIntoTable ? "RecordIntoTable"
                                                                            : "EntitiesIntoRecord";
                         });

// ---- Wblock cloning of entities ----------------------------------------------------------

TEST(WblockCloneObjects, DeferredTranslationWaitsForTheLastCall) {
    Library library;
    Database target;
    const ObjectId record = addBlock(target, "PART");
    IdMapping map;
    ASSERT_EQ(target.wblockCloneObjects({library.partLine}, record, map,
                                        DuplicateRecordCloning::Ignore, true),
              ErrorStatus::eOk);
    const ObjectId line = entitiesOf(record).at(0);
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->layerId(), library.partLayer);

    // A second call adds to the same map; only the last one translates.
    ASSERT_EQ(target.wblockCloneObjects({library.partText}, record, map,
                                        DuplicateRecordCloning::Ignore, false),
              ErrorStatus::eOk);
    EXPECT_EQ(open<Line>(line, OpenMode::ForRead)->layerId(),
              lookUp(target.layerTableId(), "PART"));
    EXPECT_EQ(open<Text>(entitiesOf(record).at(1), OpenMode::ForRead)->textStyle(),
              lookUp(target.textStyleTableId(), "KS"));
    expectNothingOpen(library.db, target);
    expectReferencesResolved(target);
}

// ---- Raw tags ----------------------------------------------------------------------------

// An application dictionary in the named-objects dictionary holding an extended record and
// an object of a type the engine does not model, which refers to the record by a 340 (a
// reference) and a 320 (a handle kept as it is) and to layer HIDDEN by a 330.
struct AppData {
    ObjectId dictionary, record, raw;

    explicit AppData(Library& library) {
        Database& db = library.db;
        auto nod = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
        EXPECT_EQ(nod->setAt("APP", std::make_unique<Dictionary>(), dictionary), ErrorStatus::eOk);
        nod.close();
        auto app = open<Dictionary>(dictionary, OpenMode::ForWrite);
        EXPECT_EQ(app->setAt("DATA", std::make_unique<Xrecord>(), record), ErrorStatus::eOk);
        const std::string handle = record.handle().toHex();
        auto unknown = std::make_unique<RawObject>(
            "APPOBJECT", "AppObject",
            std::vector<RawTag>{{100, "AppObject"},
                                {340, handle},
                                {320, handle},
                                {330, library.hiddenLayer.handle().toHex()}});
        EXPECT_EQ(app->setAt("OBJECT", std::move(unknown), raw), ErrorStatus::eOk);
    }

    static std::vector<RawTag> tagsOf(ObjectId id) {
        auto object = open<RawObject>(id, OpenMode::ForRead);
        return object ? object->tags() : std::vector<RawTag>{};
    }
};

TEST(CloneRawTags, ReferencesAreTranslatedArbitraryHandlesAreNot) {
    struct Row {
        const char* name;
        bool acrossDatabases;
    };
    for (const Row row : {Row{"deep clone", false}, Row{"wblock clone", true}}) {
        SCOPED_TRACE(row.name);
        Library library;
        AppData app(library);
        Database target;
        Database& into = row.acrossDatabases ? target : library.db;
        const ObjectId owner =
            row.acrossDatabases ? target.namedObjectsDictionaryId() : app.dictionary;
        IdMapping map;
        const std::vector<ObjectId> ids = {app.record, app.raw};
        const ErrorStatus es =
            row.acrossDatabases
                ? into.wblockCloneObjects(ids, owner, map, DuplicateRecordCloning::Ignore)
                : into.deepCloneObjects(ids, owner, map);
        ASSERT_EQ(es, ErrorStatus::eOk);
        expectNothingOpen(library.db, target);

        IdPair record(app.record, ObjectId::kNull, false), raw(app.raw, ObjectId::kNull, false);
        ASSERT_TRUE(map.compute(record));
        ASSERT_TRUE(map.compute(raw));
        EXPECT_EQ(raw.value().database(), &into);
        const std::vector<RawTag> tags = AppData::tagsOf(raw.value());
        ASSERT_EQ(tags.size(), 4u);
        EXPECT_EQ(tags[1].value, record.value().handle().toHex());
        EXPECT_EQ(tags[2].value, app.record.handle().toHex());
        // The layer was not cloned: the same layer within a drawing, nothing across drawings.
        EXPECT_EQ(tags[3].value, row.acrossDatabases ? "0" : library.hiddenLayer.handle().toHex());
        // The source object is untouched.
        EXPECT_EQ(AppData::tagsOf(app.raw)[1].value, app.record.handle().toHex());
    }
}

// ---- Deep cloning ------------------------------------------------------------------------

TEST(DeepCloneObjects, TranslatesAmongClonesAndKeepsOtherReferences) {
    Library library;
    Database& db = library.db;
    // The part's line has an extension dictionary whose record points hard at the text (also
    // cloned) and soft at the bolt's line (not cloned); a reactor names the bolt's line too.
    ObjectId extension, record;
    {
        auto line = open<Line>(library.partLine, OpenMode::ForWrite);
        ASSERT_TRUE(line);
        auto dictionary = std::make_unique<Dictionary>();
        ASSERT_EQ(db.addObject(std::move(dictionary), extension, library.partLine),
                  ErrorStatus::eOk);
        line->setExtensionDictionary(extension);
        line->addPersistentReactor(library.boltLine);
    }
    {
        auto dictionary = open<Dictionary>(extension, OpenMode::ForWrite);
        auto xrecord = std::make_unique<Xrecord>();
        xrecord->setFromRbChain(
            {{340, library.partText}, {330, library.boltLine}, {1, std::string("x")}});
        ASSERT_EQ(dictionary->setAt("LINK", std::move(xrecord), record), ErrorStatus::eOk);
    }
    const ObjectId copy = addBlock(db, "COPY");
    IdMapping map;
    ASSERT_EQ(db.deepCloneObjects({library.partLine, library.partText}, copy, map),
              ErrorStatus::eOk);
    EXPECT_EQ(db.openObjectCount(), 0);

    // The map lists every pair: the two primaries, the dictionary and record they own, and
    // the owner they left for the new one.
    struct Expected {
        ObjectId key;
        bool cloned, primary;
    };
    const Expected expected[] = {{library.part, false, false},
                                 {library.partLine, true, true},
                                 {extension, true, false},
                                 {record, true, false},
                                 {library.partText, true, true}};
    ASSERT_EQ(map.size(), std::size(expected));
    for (const Expected& e : expected) {
        IdPair pair(e.key, ObjectId::kNull, false);
        ASSERT_TRUE(map.compute(pair)) << e.key.handle().toHex();
        EXPECT_EQ(pair.isCloned(), e.cloned) << e.key.handle().toHex();
        EXPECT_EQ(pair.isPrimary(), e.primary) << e.key.handle().toHex();
        if (e.cloned) {
            EXPECT_NE(pair.value(), e.key);
        }
    }
    auto clonedId = [&](ObjectId key) {
        IdPair pair(key, ObjectId::kNull, false);
        map.compute(pair);
        return pair.value();
    };

    const std::vector<ObjectId> entities = entitiesOf(copy);
    ASSERT_EQ(entities,
              (std::vector<ObjectId>{clonedId(library.partLine), clonedId(library.partText)}));
    {
        auto line = open<Line>(entities[0], OpenMode::ForRead);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->ownerId(), copy);
        EXPECT_EQ(line->layerId(), library.partLayer);  // same drawing: the same layer
        EXPECT_EQ(line->extensionDictionary(), clonedId(extension));
        EXPECT_EQ(line->persistentReactors(), std::vector<ObjectId>{library.boltLine});
    }
    {
        auto dictionary = open<Dictionary>(clonedId(extension), OpenMode::ForRead);
        ASSERT_TRUE(dictionary);
        EXPECT_EQ(dictionary->ownerId(), entities[0]);
        ObjectId entry;
        ASSERT_EQ(dictionary->getAt("LINK", entry), ErrorStatus::eOk);
        EXPECT_EQ(entry, clonedId(record));
        auto xrecord = open<Xrecord>(entry, OpenMode::ForRead);
        ASSERT_TRUE(xrecord);
        EXPECT_EQ(xrecord->ownerId(), dictionary->objectId());
        ASSERT_EQ(xrecord->rbChain().size(), 3u);
        EXPECT_EQ(std::get<ObjectId>(xrecord->rbChain()[0].value), entities[1]);
        EXPECT_EQ(std::get<ObjectId>(xrecord->rbChain()[1].value), library.boltLine);
    }
    // The originals are as they were.
    EXPECT_EQ(entitiesOf(library.part).size(), 3u);
    EXPECT_EQ(open<Line>(library.partLine, OpenMode::ForRead)->extensionDictionary(), extension);
    expectReferencesResolved(db);
}

TEST(DeepCloneObjects, GroupAndMembersClonedTogetherLeaveTheOriginalsAlone) {
    Library library;
    Database& db = library.db;
    ObjectId group;
    ASSERT_EQ(addGroup(db, std::make_unique<Group>("part outline"), "OUTLINE", group),
              ErrorStatus::eOk);
    open<Group>(group, OpenMode::ForWrite)->append(library.partLine);

    // Two owners, so two calls on one map; the second translates both.
    IdMapping map;
    ASSERT_EQ(db.deepCloneObjects({library.partLine}, db.modelSpaceId(), map, true),
              ErrorStatus::eOk);
    ASSERT_EQ(db.deepCloneObjects({group}, db.groupDictionaryId(), map), ErrorStatus::eOk);
    EXPECT_EQ(db.openObjectCount(), 0);
    IdPair line(library.partLine, ObjectId::kNull, false), copy(group, ObjectId::kNull, false);
    ASSERT_TRUE(map.compute(line));
    ASSERT_TRUE(map.compute(copy));

    EXPECT_EQ(open<Group>(copy.value(), OpenMode::ForRead)->allEntityIds(),
              std::vector<ObjectId>{line.value()});
    EXPECT_EQ(open<Line>(line.value(), OpenMode::ForRead)->persistentReactors(),
              std::vector<ObjectId>{copy.value()});
    EXPECT_EQ(open<Group>(group, OpenMode::ForRead)->allEntityIds(),
              std::vector<ObjectId>{library.partLine});
    EXPECT_EQ(open<Line>(library.partLine, OpenMode::ForRead)->persistentReactors(),
              std::vector<ObjectId>{group});
    // The copy is in the group dictionary under a key of its own.
    std::string name;
    EXPECT_EQ(open<Group>(copy.value(), OpenMode::ForRead)->getName(name), ErrorStatus::eOk);
    EXPECT_NE(name, "OUTLINE");
}

// ---- Refusals ----------------------------------------------------------------------------

TEST(CloneObjects, RefusesIdsAndOwnersOfTheWrongDatabase) {
    Library library;
    Database other;
    IdMapping used;
    used.setDestDb(&other);
    struct Row {
        const char* name;
        std::vector<ObjectId> ids;
        ObjectId owner;
        IdMapping* map;
        ErrorStatus expected;
    };
    IdMapping a, b, c;
    const Row rows[] = {
        {"object of another drawing",
         {other.layerZero()},
         library.db.modelSpaceId(),
         &a,
         ErrorStatus::eWrongDatabase},
        {"owner in another drawing",
         {library.partLine},
         other.modelSpaceId(),
         &b,
         ErrorStatus::eWrongDatabase},
        {"null owner", {library.partLine}, ObjectId::kNull, &c, ErrorStatus::eNullObjectId},
        {"map of another destination",
         {library.partLine},
         library.db.modelSpaceId(),
         &used,
         ErrorStatus::eWrongDatabase},
    };
    const std::size_t objects = library.db.objectIds().size();
    for (const Row& row : rows) {
        EXPECT_EQ(library.db.deepCloneObjects(row.ids, row.owner, *row.map), row.expected)
            << row.name;
        EXPECT_EQ(library.db.objectIds().size(), objects) << row.name;
    }
    IdMapping d;
    EXPECT_EQ(other.wblockCloneObjects({library.partLine}, library.db.modelSpaceId(), d,
                                       DuplicateRecordCloning::Ignore),
              ErrorStatus::eWrongDatabase);
    expectNothingOpen(library.db, other);
}

}  // namespace
}  // namespace cad::db
