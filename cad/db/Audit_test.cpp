// Tests of the audit: a sound drawing audits clean; each broken link made by hand is found
// with its code and repaired where the fix is safe; drawings of other programs, loaded and
// written back, audit clean.
#include "cad/db/Audit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Layout.h"
#include "cad/db/Line.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::db {
namespace {

std::vector<int> codesOf(const std::vector<AuditIssue>& issues) {
    std::vector<int> codes;
    for (const AuditIssue& issue : issues) codes.push_back(issue.code);
    std::sort(codes.begin(), codes.end());
    return codes;
}

std::vector<int> unfixedCodesOf(const std::vector<AuditIssue>& issues) {
    std::vector<AuditIssue> unfixed;
    for (const AuditIssue& issue : issues) {
        if (!issue.fixed) unfixed.push_back(issue);
    }
    return codesOf(unfixed);
}

std::string listed(const std::vector<AuditIssue>& issues) {
    std::string text;
    for (const AuditIssue& issue : issues)
        text += std::to_string(issue.code) + " " + issue.message + "\n";
    return text;
}

// A drawing with the pieces the broken links are made from: a line in model space, a block
// reference with an attribute, a group, and a catalogue dictionary holding a record.
class AuditedDrawing {
public:
    AuditedDrawing() {
        auto model = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite);
        model->appendEntity(std::make_unique<Line>(ge::Point3d{0, 0, 0}, ge::Point3d{10, 5, 0}),
                            line);
        auto reference = std::make_unique<BlockReference>(ge::Point3d{1, 2, 0}, part());
        model->appendEntity(std::move(reference), insert);
        model.close();
        auto insertPtr = open<BlockReference>(insert, OpenMode::ForWrite);
        insertPtr->appendAttribute(std::make_unique<Attribute>(ge::Point3d{}, "DN50", "SPEC"),
                                   attribute);
        insertPtr.close();

        auto valves = std::make_unique<Group>("valves");
        valves->append(line);
        addGroup(db, std::move(valves), "VALVES", group);

        auto root = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
        root->setAt("Adv data list", std::make_unique<Dictionary>(), catalogue);
        root.close();
        auto record = std::make_unique<Xrecord>();
        record->setFromRbChain({ResBuf{1, std::string("Gate valve")}});
        open<Dictionary>(catalogue, OpenMode::ForWrite)
            ->setAt("QRB_VANTORDATA", std::move(record), xrecord);
    }

    // An id for a handle no object carries.
    ObjectId nothing() {
        ObjectId id;
        db.getObjectId(id, true, Handle{0xFFFF0});
        return id;
    }

    // Points the first reference under `code` of `object` somewhere else, as a damaged file
    // or a faulty clone would.
    void redirect(ObjectId object, int code, ObjectId to) {
        auto writable = open<DbObject>(object, OpenMode::ForWrite);
        bool done = false;
        ReferenceWalker walker([&](const ReferenceWalker::Field& field, ObjectId& id) {
            if (done || field.code != code || field.kind == ReferenceWalker::Kind::Owner) return;
            id = to;
            done = true;
        });
        walker.walk(*writable);
        EXPECT_TRUE(done) << "no reference " << code;
    }

    void setOwner(ObjectId object, ObjectId owner) {
        EXPECT_EQ(open<DbObject>(object, OpenMode::ForWrite)->setOwnerId(owner), ErrorStatus::eOk);
    }
    void erase(ObjectId object, bool erasing = true) {
        EXPECT_EQ(open<DbObject>(object, OpenMode::ForWrite, true)->erase(erasing),
                  ErrorStatus::eOk);
    }
    ObjectId layout1() {
        return open<BlockTableRecord>(db.paperSpaceId(), OpenMode::ForRead)->layoutId();
    }

    Database db;
    ObjectId line, insert, attribute, group, catalogue, xrecord;

private:
    ObjectId part() {
        auto record = std::make_unique<BlockTableRecord>();
        record->setName("VALVE");
        ObjectId id;
        open<SymbolTable>(db.blockTableId(), OpenMode::ForWrite)->add(std::move(record), id);
        return id;
    }
};

TEST(Audit, SoundDrawingsAuditCleanAndFixChangesNothing) {
    Database empty;
    EXPECT_EQ(listed(audit(empty)), "");

    AuditedDrawing drawing;
    EXPECT_EQ(listed(audit(drawing.db)), "");
    const Handle seed = drawing.db.handseed();
    EXPECT_EQ(listed(audit(drawing.db, true)), "");
    EXPECT_EQ(drawing.db.handseed(), seed);
    EXPECT_EQ(drawing.db.openObjectCount(), 0);
}

struct BrokenCase {
    const char* name;
    std::function<void(AuditedDrawing&)> damage;
    std::vector<int> found;     // codes the audit reports, sorted
    std::vector<int> leftOver;  // codes a second audit still reports after the fix
};

class AuditBrokenLink : public ::testing::TestWithParam<BrokenCase> {};

TEST_P(AuditBrokenLink, IsFoundWithItsCodeAndFixedWhereSafe) {
    const BrokenCase& c = GetParam();
    AuditedDrawing drawing;
    c.damage(drawing);

    const std::vector<AuditIssue> found = audit(drawing.db);
    EXPECT_EQ(codesOf(found), c.found) << listed(found);
    for (const AuditIssue& issue : found) {
        EXPECT_FALSE(issue.fixed);
        EXPECT_FALSE(issue.handle.isNull()) << issue.message;
    }

    const std::vector<AuditIssue> fixing = audit(drawing.db, true);
    EXPECT_EQ(unfixedCodesOf(fixing), c.leftOver) << listed(fixing);
    EXPECT_EQ(codesOf(audit(drawing.db)), c.leftOver) << listed(audit(drawing.db));
    EXPECT_EQ(drawing.db.openObjectCount(), 0);
}

const BrokenCase kBrokenCases[] = {
    {"EntityItsBlockDoesNotList",
     [](AuditedDrawing& d) {
         ObjectId stray;
         d.db.addObject(std::make_unique<Line>(), stray, d.db.modelSpaceId());
     },
     {kIssueOwnerDoesNotList},
     {}},
    {"EntityOwnedByAnotherBlockThanListsIt",
     [](AuditedDrawing& d) { d.setOwner(d.line, d.db.paperSpaceId()); },
     {kIssueOwnerDoesNotList},
     {}},
    {"AttributeOwnedByTheBlockInsteadOfItsReference",
     [](AuditedDrawing& d) { d.setOwner(d.attribute, d.db.modelSpaceId()); },
     {kIssueOwnerDoesNotList},
     {}},
    {"ListedRecordWithoutOwner",
     [](AuditedDrawing& d) { d.setOwner(d.xrecord, ObjectId::kNull); },
     {kIssueMissingOwner},
     {}},
    {"UnlistedRecordWithoutOwner",
     [](AuditedDrawing& d) {
         ObjectId orphan;
         d.db.addObject(std::make_unique<Xrecord>(), orphan, ObjectId::kNull);
     },
     {kIssueMissingOwner},
     {kIssueMissingOwner}},
    {"OwnerNamesNoObject",
     [](AuditedDrawing& d) { d.setOwner(d.xrecord, d.nothing()); },
     {kIssueDanglingOwner},
     {}},
    {"OwnerErasedButObjectLive",
     [](AuditedDrawing& d) {
         ObjectId inner;
         open<Dictionary>(d.catalogue, OpenMode::ForWrite)
             ->setAt("Category", std::make_unique<Dictionary>(), inner);
         ObjectId record;
         open<Dictionary>(inner, OpenMode::ForWrite)
             ->setAt("Part", std::make_unique<Xrecord>(), record);
         d.erase(inner);
         d.erase(record, false);
     },
     {kIssueDanglingOwner},
     {}},
    {"OwnersInALoop",
     [](AuditedDrawing& d) {
         ObjectId inner;
         open<Dictionary>(d.catalogue, OpenMode::ForWrite)
             ->setAt("Category", std::make_unique<Dictionary>(), inner);
         d.setOwner(d.catalogue, inner);
     },
     {kIssueOwnerCycle, kIssueOwnerDoesNotList},
     {}},
    {"DictionaryEntryNamesNothing",
     [](AuditedDrawing& d) { d.redirect(d.catalogue, 350, d.nothing()); },
     // The record its entry named is left owned by a dictionary that no longer lists it.
     {kIssueDanglingDictionaryEntry, kIssueOwnerDoesNotList},
     {kIssueOwnerDoesNotList}},
    {"ExtensionDictionaryNamesNothing",
     [](AuditedDrawing& d) {
         open<DbObject>(d.line, OpenMode::ForWrite)->setExtensionDictionary(d.nothing());
     },
     {kIssueDanglingDictionaryEntry},
     {}},
    {"LayerNamesNothing",
     [](AuditedDrawing& d) { d.redirect(d.line, 8, d.nothing()); },
     {kIssueMissingSymbol},
     {}},
    {"LayerErased",
     [](AuditedDrawing& d) {
         auto layer = std::make_unique<LayerTableRecord>();
         layer->setName("PARTS");
         ObjectId parts;
         open<SymbolTable>(d.db.layerTableId(), OpenMode::ForWrite)->add(std::move(layer), parts);
         open<Entity>(d.line, OpenMode::ForWrite)->setLayer(parts);
         d.erase(parts);
     },
     {kIssueMissingSymbol},
     {}},
    {"BlockOfReferenceNamesNothing",
     [](AuditedDrawing& d) { d.redirect(d.insert, 2, d.nothing()); },
     {kIssueMissingSymbol},
     {kIssueMissingSymbol}},
    {"HardPointersToErasedPlotStyle",
     [](AuditedDrawing& d) {
         d.erase(open<LayerTableRecord>(d.db.layerZero(), OpenMode::ForRead)->plotStyleNameId());
     },
     // Layer "0" names it, and so does the default entry of the plot style dictionary.
     {kIssuePointerToErased, kIssuePointerToErased},
     {}},
    {"ReactorNamesNothing",
     [](AuditedDrawing& d) {
         open<DbObject>(d.line, OpenMode::ForWrite)->addPersistentReactor(d.nothing());
     },
     {kIssueDanglingReference},
     {}},
    {"BlockEntityNamesNothing",
     [](AuditedDrawing& d) {
         d.redirect(d.db.modelSpaceId(), 360, d.nothing());  // the BLOCK of model space
     },
     // The BLOCK is not made an entity of its block.
     {kIssueOwnerDoesNotList, kIssueDanglingReference},
     {kIssueOwnerDoesNotList, kIssueDanglingReference}},
    {"EntityListedTwiceByItsBlock",
     [](AuditedDrawing& d) {
         open<BlockTableRecord>(d.db.modelSpaceId(), OpenMode::ForWrite)->appendEntity(d.line);
     },
     {kIssueListedTwice},
     {kIssueListedTwice}},
    {"EntityListedByTwoBlocks",
     [](AuditedDrawing& d) {
         open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->appendEntity(d.line);
     },
     {kIssueListedTwice},
     {kIssueListedTwice}},
    {"BlockRecordLostItsLayout",
     [](AuditedDrawing& d) {
         open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->setLayoutId({});
     },
     {kIssueLayoutLink},
     {}},
    {"LayoutLostItsBlockRecord",
     [](AuditedDrawing& d) {
         open<Layout>(d.layout1(), OpenMode::ForWrite)->setBlockTableRecordId({});
     },
     {kIssueLayoutLink},
     {}},
    {"BlockRecordNamesAnotherRecordsLayout",
     [](AuditedDrawing& d) {
         const ObjectId model =
             open<BlockTableRecord>(d.db.modelSpaceId(), OpenMode::ForRead)->layoutId();
         open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->setLayoutId(model);
     },
     // Both links of the paper space record are wrong; which layout is right is not known.
     {kIssueLayoutLink, kIssueLayoutLink},
     {kIssueLayoutLink, kIssueLayoutLink}},
    {"GroupDictionaryErased",
     [](AuditedDrawing& d) { d.erase(d.db.groupDictionaryId()); },
     {kIssueMissingStandardObject},
     {kIssueMissingStandardObject}},
};

INSTANTIATE_TEST_SUITE_P(Damage, AuditBrokenLink, ::testing::ValuesIn(kBrokenCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Drawings written by other programs ----

std::filesystem::path corpusFolder() {
    return std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus";
}

TEST(AuditCorpus, DuplicateHandlesAreRepairedOnLoadAndLeaveNothingToFind) {
    Database db(false);
    ASSERT_EQ(db.readDwgFile((corpusFolder() / "ezdxf__duplicate_handles.dxf").string()),
              ErrorStatus::eOk)
        << db.lastErrorMessage();
    EXPECT_TRUE(std::any_of(db.loadIssues().begin(), db.loadIssues().end(), [](const auto& i) {
        return i.code == kIssueDuplicateHandle && i.fixed;
    }));
    EXPECT_EQ(listed(audit(db)), "");
}

class AuditCorpusFile : public ::testing::TestWithParam<std::string> {};

TEST_P(AuditCorpusFile, WrittenBackAuditsClean) {
    Database db(false);
    ASSERT_EQ(db.readDwgFile((corpusFolder() / GetParam()).string()), ErrorStatus::eOk)
        << db.lastErrorMessage();
    sys::TestTempFolder folder;
    const std::string written = folder.file("written.dxf");
    ASSERT_EQ(db.saveAs(written), ErrorStatus::eOk) << db.lastErrorMessage();
    Database back(false);
    ASSERT_EQ(back.readDwgFile(written), ErrorStatus::eOk) << back.lastErrorMessage();
    EXPECT_EQ(listed(back.loadIssues()), "");
    EXPECT_EQ(listed(audit(back)), "");
}

std::vector<std::string> corpusDrawings() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(corpusFolder())) {
        if (entry.path().extension() == ".dxf") names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Corpus, AuditCorpusFile, ::testing::ValuesIn(corpusDrawings()),
                         [](const auto& row) {
                             std::string name = row.param.substr(0, row.param.size() - 4);
                             for (char& c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             }
                             return name;
                         });

}  // namespace
}  // namespace cad::db
