// Tests of extended records and typed values: every value type through a chain, the merge
// flag ahead of the data, and the type each group code implies.
#include "cad/db/Xrecord.h"

#include <gtest/gtest.h>

#include <variant>

#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/TagRecorder.h"

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
    const std::vector<RawTag> expected = {{100, "AcDbXrecord"},
                                          {280, "1"},
                                          {2, "FRONT"},
                                          {10, "1.5"},
                                          {20, "-2"},
                                          {30, "3.25"},
                                          {1, "\xEB\xB0\xB8\xEB\xB8\x8C"},
                                          {70, "-7"},
                                          {90, "18134"},
                                          {160, "1099511627776"},
                                          {40, "0.1"},
                                          {290, "1"},
                                          {310, "00FF1A"},
                                          {340, root.handle().toHex()}};
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

struct CodeType {
    const char* name;
    int code;
    std::size_t index;  // of the value type in ResBuf::Value
};

class ResBufForCode : public ::testing::TestWithParam<CodeType> {};

TEST_P(ResBufForCode, GivesTheTypeTheCodeImplies) {
    const ResBuf rb = ResBuf::forCode(GetParam().code);
    EXPECT_EQ(rb.code, GetParam().code);
    EXPECT_EQ(rb.value.index(), GetParam().index);
}

// Indices: 0 string, 1 int16, 2 int32, 3 int64, 4 double, 5 point, 6 binary, 7 object id.
INSTANTIATE_TEST_SUITE_P(
    Codes, ResBufForCode,
    ::testing::Values(CodeType{"text", 1, 0}, CodeType{"point", 10, 5},
                      CodeType{"extrusion", 210, 5}, CodeType{"single_double", 40, 4},
                      CodeType{"elevation", 38, 4}, CodeType{"int16", 70, 1},
                      CodeType{"int32", 90, 2}, CodeType{"int64", 160, 3}, CodeType{"bool", 290, 1},
                      CodeType{"binary", 310, 6}, CodeType{"arbitrary_handle", 320, 0},
                      CodeType{"soft_pointer", 330, 7}, CodeType{"hard_owner", 360, 7},
                      CodeType{"plot_style", 390, 7}, CodeType{"xdata_handle", 1005, 7},
                      CodeType{"xdata_point", 1010, 5}, CodeType{"xdata_real", 1040, 4},
                      CodeType{"xdata_long", 1071, 2}, CodeType{"comment", 999, 0}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace cad::db
