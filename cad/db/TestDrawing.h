// For tests: drawings built in memory a line at a time, the tags an object writes, geometry
// compared with a tolerance, and the sample drawings other programs wrote.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/TagRecorder.h"

namespace cad::db::testing_support {

// A fixture with a new drawing, which every test must leave with no object open.
class DrawingTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(db.openObjectCount(), 0); }
    Database db;
};

inline ObjectId addRecord(ObjectId table, std::unique_ptr<SymbolTableRecord> record,
                          std::string_view name, std::int16_t flags = 0) {
    record->setName(name);
    if (flags != 0) record->setFlags(flags);
    ObjectId id;
    EXPECT_EQ(open<SymbolTable>(table, OpenMode::ForWrite)->add(std::move(record), id),
              ErrorStatus::eOk)
        << name;
    return id;
}

inline ObjectId addBlock(Database& db, std::string_view name, const ge::Point3d& origin = {},
                         std::int16_t flags = 0) {
    auto record = std::make_unique<BlockTableRecord>();
    record->setOrigin(origin);
    return addRecord(db.blockTableId(), std::move(record), name, flags);
}

inline ObjectId addLayer(Database& db, std::string_view name, std::int16_t color,
                         ObjectId linetype = {}) {
    auto layer = std::make_unique<LayerTableRecord>();
    layer->setColorIndex(color);
    if (!linetype.isNull()) layer->setLinetypeObjectId(linetype);
    return addRecord(db.layerTableId(), std::move(layer), name);
}

inline ObjectId append(ObjectId block, std::unique_ptr<Entity> entity, ObjectId layer = {}) {
    if (!layer.isNull()) entity->setLayer(layer);
    ObjectId id;
    EXPECT_EQ(
        open<BlockTableRecord>(block, OpenMode::ForWrite)->appendEntity(std::move(entity), id),
        ErrorStatus::eOk);
    return id;
}

inline ObjectId lookUp(ObjectId table, std::string_view name) {
    ObjectId id;
    open<SymbolTable>(table, OpenMode::ForRead)->getAt(name, id);
    return id;
}

inline std::vector<ObjectId> entitiesOf(ObjectId block) {
    return open<BlockTableRecord>(block, OpenMode::ForRead)->entityIds();
}

inline void expectPoint(const ge::Point3d& actual, const ge::Point3d& expected,
                        std::string_view what = {}) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-9) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-9) << what;
}

inline void expectExtents(const Extents3d& extents, const ge::Point3d& min,
                          const ge::Point3d& max) {
    expectPoint(extents.minPoint, min, "min");
    expectPoint(extents.maxPoint, max, "max");
}

inline std::vector<RawTag> recorded(DbObject& object, DxfVersion version = DxfVersion::R2000) {
    TagRecorder recorder(version);
    object.dxfFields(recorder);
    return recorder.tags();
}

inline std::vector<int> codesOf(const std::vector<RawTag>& tags) {
    std::vector<int> codes;
    for (const RawTag& tag : tags) codes.push_back(tag.code);
    return codes;
}

// One "code value" per line, for comparisons whose failures read like a file.
inline std::string textOf(const std::vector<RawTag>& tags) {
    std::string text;
    for (const RawTag& tag : tags) text += std::to_string(tag.code) + " " + tag.value + "\n";
    return text;
}

// Tags from code and value pairs separated by blanks: "91 1 92 1 10 0.5". Values hold no blank.
inline std::vector<RawTag> tagsOf(std::string_view pairs) {
    std::istringstream in{std::string(pairs)};
    std::vector<RawTag> tags;
    int code;
    std::string value;
    while (in >> code >> value) tags.push_back({code, value});
    return tags;
}

// The folder of drawings other programs wrote, and its DXF files by name, in name order.
inline std::filesystem::path corpusFolder() {
    return std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus";
}

inline std::vector<std::string> corpusDrawings() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(corpusFolder())) {
        if (entry.path().extension() == ".dxf") names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Names a row of corpusDrawings() after its file: the stem, with '_' for what is no letter or
// digit.
inline std::string corpusRowName(const ::testing::TestParamInfo<std::string>& row) {
    std::string name = std::filesystem::path(row.param).stem().string();
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return name;
}

// Names a parameterised test's rows after their `name` member.
inline constexpr auto rowName = [](const auto& info) { return std::string(info.param.name); };

}  // namespace cad::db::testing_support
