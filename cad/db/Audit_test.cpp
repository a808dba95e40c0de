// Tests of the audit: a sound drawing audits clean; each broken link made by hand is found
// with its code and repaired where the fix is safe. (Drawings of other programs, loaded and
// written back, audit clean in the writer's round trips.)
#include "cad/db/Audit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/Layout.h"
#include "cad/db/Line.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Xrecord.h"

namespace cad::db {
namespace {

using namespace testing_support;

// The codes of the issues (only of those left unfixed when asked), sorted.
std::vector<int> codesOf(const std::vector<AuditIssue>& issues, bool unfixedOnly = false) {
    std::vector<int> codes;
    for (const AuditIssue& issue : issues) {
        if (!unfixedOnly || !issue.fixed) codes.push_back(issue.code);
    }
    std::sort(codes.begin(), codes.end());
    return codes;
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
        line = append(db.modelSpaceId(),
                      std::make_unique<Line>(ge::Point3d{0, 0, 0}, ge::Point3d{10, 5, 0}));
        insert = append(db.modelSpaceId(), std::make_unique<BlockReference>(
                                               ge::Point3d{1, 2, 0}, addBlock(db, "VALVE")));
        open<BlockReference>(insert, OpenMode::ForWrite)
            ->appendAttribute(std::make_unique<Attribute>(ge::Point3d{}, "DN50", "SPEC"),
                              attribute);

        auto valves = std::make_unique<Group>("valves");
        valves->append(line);
        addGroup(db, std::move(valves), "VALVES", group);

        catalogue = add(db.namedObjectsDictionaryId(), "Adv data list",
                        std::make_unique<Dictionary>());
        auto record = std::make_unique<Xrecord>();
        record->setFromRbChain({ResBuf{1, std::string("Gate valve")}});
        xrecord = add(catalogue, "QRB_VANTORDATA", std::move(record));
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

    // Puts `object` under `key` of the dictionary `parent`.
    ObjectId add(ObjectId parent, std::string_view key, std::unique_ptr<DbObject> object) {
        ObjectId id;
        EXPECT_EQ(open<Dictionary>(parent, OpenMode::ForWrite)->setAt(key, std::move(object), id),
                  ErrorStatus::eOk);
        return id;
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
    ObjectId line, insert, attribute, group, catalogue, xrecord, stray;
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
    std::vector<int> found;     // codes the audit reports, sorted
    std::vector<int> leftOver;  // codes a second audit still reports after the fix
    std::function<void(AuditedDrawing&)> damage;
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
    EXPECT_EQ(codesOf(fixing, true), c.leftOver) << listed(fixing);
    EXPECT_EQ(codesOf(audit(drawing.db)), c.leftOver) << listed(audit(drawing.db));
    EXPECT_EQ(drawing.db.openObjectCount(), 0);
}

using D = AuditedDrawing&;
constexpr int kNotListed = kIssueOwnerDoesNotList, kDangling = kIssueDanglingReference,
              kMissingSymbol = kIssueMissingSymbol, kLayout = kIssueLayoutLink,
              kTwice = kIssueListedTwice;

// clang-format off
const BrokenCase kBrokenCases[] = {
    {"EntityItsBlockDoesNotList", {kNotListed}, {},
     [](D d) { d.db.addObject(std::make_unique<Line>(), d.stray, d.db.modelSpaceId()); }},
    {"EntityOwnedByAnotherBlockThanListsIt", {kNotListed}, {},
     [](D d) { d.setOwner(d.line, d.db.paperSpaceId()); }},
    {"AttributeOwnedByTheBlockInsteadOfItsReference", {kNotListed}, {},
     [](D d) { d.setOwner(d.attribute, d.db.modelSpaceId()); }},
    {"ListedRecordWithoutOwner", {kIssueMissingOwner}, {},
     [](D d) { d.setOwner(d.xrecord, ObjectId::kNull); }},
    {"UnlistedRecordWithoutOwner", {kIssueMissingOwner}, {kIssueMissingOwner},
     [](D d) { d.db.addObject(std::make_unique<Xrecord>(), d.stray, ObjectId::kNull); }},
    {"OwnerNamesNoObject", {kIssueDanglingOwner}, {},
     [](D d) { d.setOwner(d.xrecord, d.nothing()); }},
    {"OwnerErasedButObjectLive", {kIssueDanglingOwner}, {}, [](D d) {
         const ObjectId inner = d.add(d.catalogue, "Category", std::make_unique<Dictionary>());
         const ObjectId record = d.add(inner, "Part", std::make_unique<Xrecord>());
         d.erase(inner);
         d.erase(record, false);
     }},
    {"OwnersInALoop", {kIssueOwnerCycle, kNotListed}, {},
     [](D d) { d.setOwner(d.catalogue, d.add(d.catalogue, "Category", std::make_unique<Dictionary>())); }},
    // The record its entry named is left owned by a dictionary that no longer lists it.
    {"DictionaryEntryNamesNothing", {kIssueDanglingDictionaryEntry, kNotListed}, {kNotListed},
     [](D d) { d.redirect(d.catalogue, 350, d.nothing()); }},
    {"ExtensionDictionaryNamesNothing", {kIssueDanglingDictionaryEntry}, {},
     [](D d) { open<DbObject>(d.line, OpenMode::ForWrite)->setExtensionDictionary(d.nothing()); }},
    {"LayerNamesNothing", {kMissingSymbol}, {}, [](D d) { d.redirect(d.line, 8, d.nothing()); }},
    {"LayerErased", {kMissingSymbol}, {}, [](D d) {
         const ObjectId parts = addLayer(d.db, "PARTS", 7);
         open<Entity>(d.line, OpenMode::ForWrite)->setLayer(parts);
         d.erase(parts);
     }},
    {"BlockOfReferenceNamesNothing", {kMissingSymbol}, {kMissingSymbol},
     [](D d) { d.redirect(d.insert, 2, d.nothing()); }},
    // Layer "0" names it, and so does the default entry of the plot style dictionary.
    {"HardPointersToErasedPlotStyle", {kIssuePointerToErased, kIssuePointerToErased}, {},
     [](D d) { d.erase(open<LayerTableRecord>(d.db.layerZero(), OpenMode::ForRead)->plotStyleNameId()); }},
    {"ReactorNamesNothing", {kDangling}, {},
     [](D d) { open<DbObject>(d.line, OpenMode::ForWrite)->addPersistentReactor(d.nothing()); }},
    // The BLOCK of model space; it is not made an entity of its block.
    {"BlockEntityNamesNothing", {kNotListed, kDangling}, {kNotListed, kDangling},
     [](D d) { d.redirect(d.db.modelSpaceId(), 360, d.nothing()); }},
    {"EntityListedTwiceByItsBlock", {kTwice}, {kTwice},
     [](D d) { open<BlockTableRecord>(d.db.modelSpaceId(), OpenMode::ForWrite)->appendEntity(d.line); }},
    {"EntityListedByTwoBlocks", {kTwice}, {kTwice},
     [](D d) { open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->appendEntity(d.line); }},
    {"BlockRecordLostItsLayout", {kLayout}, {},
     [](D d) { open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->setLayoutId({}); }},
    {"LayoutLostItsBlockRecord", {kLayout}, {},
     [](D d) { open<Layout>(d.layout1(), OpenMode::ForWrite)->setBlockTableRecordId({}); }},
    // Both links of the paper space record are wrong; which layout is right is not known.
    {"BlockRecordNamesAnotherRecordsLayout", {kLayout, kLayout}, {kLayout, kLayout}, [](D d) {
         const ObjectId model = open<BlockTableRecord>(d.db.modelSpaceId(), OpenMode::ForRead)->layoutId();
         open<BlockTableRecord>(d.db.paperSpaceId(), OpenMode::ForWrite)->setLayoutId(model);
     }},
    {"GroupDictionaryErased", {kIssueMissingStandardObject}, {kIssueMissingStandardObject},
     [](D d) { d.erase(d.db.groupDictionaryId()); }},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Damage, AuditBrokenLink, ::testing::ValuesIn(kBrokenCases), rowName);

}  // namespace
}  // namespace cad::db
