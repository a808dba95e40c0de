// Part records in a group dictionary: the first free key, the 26 values of a stored record,
// change in place, delete, and chains that are no part record left out with their keys.
#include "vantor/store/PartRecordStore.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::ErrorStatus;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::ResBuf;
using cad::db::ResBufChain;
using cad::db::Xrecord;
using cad::ge::Point3d;

// Code and value at every position.
bool sameChain(const ResBufChain& a, const ResBufChain& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].code != b[i].code || !(a[i].value == b[i].value)) return false;
    }
    return true;
}

class PartRecords : public cad::db::testing_support::DrawingTest {
protected:
    PartRecord minimal(std::string kname) {
        PartRecord record;
        record.group = "육각볼트";
        record.kname = std::move(kname);
        return record;
    }
    ObjectId addRaw(const std::string& key, ResBufChain chain) {
        auto xrecord = std::make_unique<Xrecord>();
        xrecord->setFromRbChain(std::move(chain));
        ObjectId id;
        EXPECT_EQ(cad::db::open<Dictionary>(group, OpenMode::ForWrite)
                      ->setAt(key, std::move(xrecord), id),
                  ErrorStatus::eOk);
        return id;
    }
    std::string keyOf(ObjectId id) {
        std::string key;
        cad::db::open<Dictionary>(group, OpenMode::ForRead)->nameAt(id, key);
        return key;
    }
    ResBufChain chainOf(ObjectId id) {
        return cad::db::open<Xrecord>(id, OpenMode::ForRead)->rbChain();
    }

    ObjectId group = testing_support::addDictionary(
        testing_support::addDictionary(db.namedObjectsDictionaryId(), "User data list"), "육각볼트");
};

TEST_F(PartRecords, KeysFillTheFirstGap) {
    std::vector<ObjectId> ids;
    for (const char* name : {"a", "b", "c"}) ids.push_back(writePartRecord(group, minimal(name)));
    EXPECT_EQ(keyOf(ids[0]), "QRB_VANTORDATA-0");
    EXPECT_EQ(keyOf(ids[2]), "QRB_VANTORDATA-2");
    ASSERT_EQ(deletePartRecord(ids[1]), ErrorStatus::eOk);
    ObjectId again = writePartRecord(group, minimal("d"));
    EXPECT_EQ(keyOf(again), "QRB_VANTORDATA-1");
    EXPECT_EQ(keyOf(writePartRecord(group, minimal("e"))), "QRB_VANTORDATA-3");

    auto dictionary = cad::db::open<Dictionary>(group, OpenMode::ForRead);
    EXPECT_EQ(nextRecordKey(*dictionary), "QRB_VANTORDATA-4");
    // A record being changed passes over its own key even when that is the first free one.
    EXPECT_EQ(nextRecordKey(*dictionary, "QRB_VANTORDATA-4"), "QRB_VANTORDATA-5");
}

TEST_F(PartRecords, RecordWithGroupAndNameOnlyHoldsAll26Values) {
    ObjectId id = writePartRecord(group, minimal("육각 볼트"));
    ASSERT_FALSE(id.isNull());
    ResBufChain chain = chainOf(id);
    ASSERT_EQ(chain.size(), 26u);
    for (std::size_t i = 0; i < 12; i += 2) {
        EXPECT_EQ(chain[i].code, 2);
        ASSERT_NE(chain[i].text(), nullptr);
        EXPECT_EQ(*chain[i].text(), "");
        EXPECT_EQ(chain[i + 1].code, 10);
        ASSERT_NE(chain[i + 1].point(), nullptr);
        EXPECT_EQ(*chain[i + 1].point(), Point3d(0, 0, 0));
    }
    for (std::size_t i = 12; i < 26; ++i) EXPECT_EQ(chain[i].code, 1) << i;
    EXPECT_EQ(*chain[12].text(), "육각볼트");
    EXPECT_EQ(*chain[13].text(), "육각 볼트");
    EXPECT_EQ(*chain[25].text(), "");
}

TEST_F(PartRecords, ReadBackGivesEveryFieldInPlace) {
    PartRecord record = minimal("육각 볼트");
    for (std::size_t i = 0; i < 6; ++i) {
        record.viewBlocks[i] = "B" + std::to_string(i);
        record.viewPoints[i] = Point3d(i, -1.5 * i, 0.25);
        record.user[i] = "u" + std::to_string(i);
    }
    record.ename = "Hex bolt";
    record.spec = "M10x30";
    record.material = "SS400";
    record.weight = "0.03";
    record.price = "120";
    record.remark = "KS B 1002";
    ObjectId id = writePartRecord(group, record);

    PartRecord read;
    read.key = "kept";
    ASSERT_EQ(readPartRecord(id, read), ErrorStatus::eOk);
    EXPECT_TRUE(read.loaded);
    EXPECT_EQ(read.recordId, id);
    EXPECT_EQ(read.key, "kept");
    EXPECT_TRUE(sameChain(read.toChain(), record.toChain()));
}

TEST_F(PartRecords, ChangeKeepsKeyIdAndWhatFollowsThe26Values) {
    ResBufChain chain = minimal("old").toChain();
    chain.push_back(ResBuf{1000, std::string("kept by another program")});
    ObjectId id = addRaw("QRB_VANTORDATA-7", chain);

    PartRecord changed = minimal("new");
    changed.viewBlocks[2] = "PLAN";
    changed.viewPoints[2] = Point3d(1, 2, 3);
    ASSERT_EQ(rewritePartRecord(id, changed), ErrorStatus::eOk);

    EXPECT_EQ(keyOf(id), "QRB_VANTORDATA-7");
    ResBufChain after = chainOf(id);
    ASSERT_EQ(after.size(), 27u);
    EXPECT_EQ(*after[4].text(), "PLAN");
    EXPECT_EQ(*after[5].point(), Point3d(1, 2, 3));
    EXPECT_EQ(*after[13].text(), "new");
    EXPECT_EQ(after[26].code, 1000);
}

TEST_F(PartRecords, ChangeRepairsAChainThatLostItsShape) {
    ObjectId id = addRaw("QRB_VANTORDATA-0", {ResBuf{1, std::string("only one")}});
    ASSERT_EQ(rewritePartRecord(id, minimal("fixed")), ErrorStatus::eOk);
    EXPECT_TRUE(sameChain(chainOf(id), minimal("fixed").toChain()));
}

TEST_F(PartRecords, ChainsThatAreNoRecordAreReportedWithTheirKeysAndSkipped) {
    writePartRecord(group, minimal("first"));
    ResBufChain wrongType = minimal("bad").toChain();
    wrongType[3] = ResBuf{1, std::string("not a point")};
    addRaw("QRB_VANTORDATA-1", wrongType);
    ResBufChain shortChain = minimal("short").toChain();
    shortChain.resize(25);
    addRaw("QRB_VANTORDATA-2", shortChain);
    writePartRecord(group, minimal("last"));
    {
        // A sub-dictionary is no record and no problem.
        auto dictionary = cad::db::open<Dictionary>(group, OpenMode::ForWrite);
        ObjectId sub;
        dictionary->setAt("sub", std::make_unique<Dictionary>(), sub);
    }

    GroupRecords read = readGroupRecords(group);
    ASSERT_EQ(read.records.size(), 2u);
    EXPECT_EQ(read.records[0].kname, "first");
    EXPECT_EQ(read.records[0].key, "QRB_VANTORDATA-0");
    EXPECT_EQ(read.records[1].kname, "last");
    EXPECT_EQ(read.records[1].key, "QRB_VANTORDATA-3");
    ASSERT_EQ(read.problems.size(), 2u);
    EXPECT_EQ(read.problems[0].key, "QRB_VANTORDATA-1");
    EXPECT_EQ(read.problems[0].message, "value 4 is not a point");
    EXPECT_EQ(read.problems[1].key, "QRB_VANTORDATA-2");
    EXPECT_EQ(read.problems[1].message, "holds 25 values where 26 are expected");
}

TEST_F(PartRecords, AddingToASelectedRecordAddsToItsGroup) {
    cad::app::ScriptedDialogs dialogs;
    ObjectId first = addPartRecord(group, minimal("a"), dialogs);
    ObjectId second = addPartRecord(first, minimal("b"), dialogs);
    EXPECT_EQ(keyOf(second), "QRB_VANTORDATA-1");
    EXPECT_TRUE(dialogs.calls().empty());

    EXPECT_TRUE(addPartRecord(ObjectId::kNull, minimal("c"), dialogs).isNull());
    EXPECT_EQ(testing_support::boxesShown(dialogs),
              std::vector<std::string>{"저장 에러: 데이터가 추가되지 않았습니다. [error]"});
}

}  // namespace
}  // namespace vantor
