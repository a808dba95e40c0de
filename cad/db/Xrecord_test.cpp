// Tests of extended records and typed values: every value type through a chain, the merge
// flag ahead of the data, and the type each group code implies.
#include "cad/db/Xrecord.h"

#include <gtest/gtest.h>

#include <variant>

#include "cad/db/Dictionary.h"
#include "cad/db/TestDrawing.h"

namespace cad::db {
namespace {

TEST(Xrecord, KeepsAChainOfEveryValueTypeInOrder) {
    Database db;
    const ObjectId root = db.namedObjectsDictionaryId();
    const ResBufChain chain = {
        {2, std::string("FRONT")},
        {10, ge::Point3d{1.5, -2.0, 3.25}},
        {1, std::string("\xEB\xB0\xB8\xEB\xB8\x8C")},  // a Korean part name
        {70, std::int16_t{-7}},
        {90, std::int32_t{18134}},
        {160, std::int64_t{1} << 40},
        {40, 0.1},
        {290, std::int16_t{1}},
        {310, BinaryChunk{std::string("\x00\xFF\x1A", 3)}},
        {340, root},
    };
    ObjectId id;
    {
        auto dictionary = open<Dictionary>(root, OpenMode::ForWrite);
        auto record = std::make_unique<Xrecord>();
        ASSERT_EQ(record->setFromRbChain(chain), ErrorStatus::eOk);
        ASSERT_EQ(dictionary->setAt("KXADVINFO", std::move(record), id), ErrorStatus::eOk);
    }
    auto record = open<Xrecord>(id, OpenMode::ForRead);
    EXPECT_EQ(record->rbChain().size(), chain.size());
    for (std::size_t i = 0; i < chain.size(); ++i) {
        EXPECT_EQ(record->rbChain()[i].code, chain[i].code) << i;
        EXPECT_EQ(record->rbChain()[i].value, chain[i].value) << i;
    }

    TagRecorder recorder;
    record->dxfFields(recorder);
    const std::vector<RawTag> expected = testing_support::tagsOf(
        "100 AcDbXrecord 280 1 2 FRONT 10 1.5 20 -2 30 3.25 1 \xEB\xB0\xB8\xEB\xB8\x8C 70 -7 "
        "90 18134 160 1099511627776 40 0.1 290 1 310 00FF1A 340 " +
        root.handle().toHex());
    EXPECT_EQ(recorder.tags(), expected);
    // Before R2000 a 280 would be data, so no flag is written.
    TagRecorder r14(DxfVersion::R14);
    record->dxfFields(r14);
    EXPECT_EQ(r14.codes()[1], 2);
    EXPECT_EQ(db.openObjectCount(), 1);
}

TEST(Xrecord, ChangesNeedTheRecordOpenForWrite) {
    Database db;
    ObjectId id;
    {
        auto dictionary = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
        dictionary->setAt("R", std::make_unique<Xrecord>(), id);
    }
    EXPECT_EQ(open<Xrecord>(id, OpenMode::ForRead)->setFromRbChain({}),
              ErrorStatus::eWasNotOpenedForWrite);
    EXPECT_EQ(open<Xrecord>(id, OpenMode::ForWrite)->setMergeStyle(9), ErrorStatus::eInvalidInput);
    EXPECT_EQ(db.openObjectCount(), 0);
}

TEST(ResBuf, ForCodeGivesTheTypeTheCodeImplies) {
    // Indices into ResBuf::Value: 0 string, 1 int16, 2 int32, 3 int64, 4 double, 5 point,
    // 6 binary, 7 object id.
    const std::pair<int, std::size_t> rows[] = {
        {1, 0},    {10, 5},   {210, 5},  {40, 4},   {38, 4},  {70, 1},  {90, 2},
        {160, 3},  {290, 1},  {310, 6},  {320, 0},  {330, 7}, {360, 7}, {390, 7},
        {1005, 7}, {1010, 5}, {1040, 4}, {1071, 2}, {999, 0},
    };
    for (const auto& [code, index] : rows) {
        const ResBuf rb = ResBuf::forCode(code);
        EXPECT_EQ(rb.code, code);
        EXPECT_EQ(rb.value.index(), index) << code;
    }
}

}  // namespace
}  // namespace cad::db
