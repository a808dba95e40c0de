// For tests: small drawings built in memory, with the blocks, layers and part records the
// placement reads, and a library drawing saved to a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/TestLibrary.h"

namespace vantor::testing_support {

using cad::db::ObjectId;
using cad::db::OpenMode;

inline ObjectId lookUp(ObjectId table, std::string_view name) {
    ObjectId id;
    cad::db::open<cad::db::SymbolTable>(table, OpenMode::ForRead)->getAt(name, id);
    return id;
}

inline ObjectId addTableRecord(ObjectId table, std::unique_ptr<cad::db::SymbolTableRecord> record,
                               std::string_view name) {
    record->setName(name);
    ObjectId id;
    EXPECT_EQ(
        cad::db::open<cad::db::SymbolTable>(table, OpenMode::ForWrite)->add(std::move(record), id),
        cad::ErrorStatus::eOk);
    return id;
}

inline ObjectId addLayer(cad::db::Database& db, std::string_view name, std::int16_t color) {
    auto layer = std::make_unique<cad::db::LayerTableRecord>();
    layer->setColorIndex(color);
    return addTableRecord(db.layerTableId(), std::move(layer), name);
}

inline ObjectId addBlock(cad::db::Database& db, std::string_view name,
                         const cad::ge::Point3d& origin = {}) {
    auto block = std::make_unique<cad::db::BlockTableRecord>();
    block->setOrigin(origin);
    return addTableRecord(db.blockTableId(), std::move(block), name);
}

inline ObjectId append(ObjectId block, std::unique_ptr<cad::db::Entity> entity) {
    ObjectId id;
    EXPECT_EQ(cad::db::open<cad::db::BlockTableRecord>(block, OpenMode::ForWrite)
                  ->appendEntity(std::move(entity), id),
              cad::ErrorStatus::eOk);
    return id;
}

inline ObjectId addLine(ObjectId block, ObjectId layer, const cad::ge::Point3d& from,
                        const cad::ge::Point3d& to) {
    auto line = std::make_unique<cad::db::Line>(from, to);
    line->setLayer(layer);
    return append(block, std::move(line));
}

inline std::vector<ObjectId> entitiesOf(ObjectId block) {
    return cad::db::open<cad::db::BlockTableRecord>(block, OpenMode::ForRead)->entityIds();
}

// A library drawing: block "BOLT-F" (a line on layer "PART" of colour 1 and the attribute
// definitions SPEC and DWG), described "육각볼트 정면도", with its record in the user library's
// group "볼트/육각볼트" and a BOM mark 5 to the right of its base point.
struct SampleLibrary {
    std::string path;
    PartRecord record;

    explicit SampleLibrary(std::string file) : path(std::move(file)) {
        cad::db::Database db;
        const ObjectId part = addLayer(db, "PART", 1);
        const ObjectId bolt = addBlock(db, "BOLT-F");
        cad::db::open<cad::db::BlockTableRecord>(bolt, OpenMode::ForWrite)
            ->setComments("육각볼트 정면도");
        addLine(bolt, part, {0, 0, 0}, {0, -40, 0});
        for (const char* tag : {"SPEC", "DWG"})
            append(bolt, std::make_unique<cad::db::AttributeDefinition>(cad::ge::Point3d(2, 0, 0),
                                                                        "?", tag, tag));
        record.group = "육각볼트";
        record.kname = "육각볼트";
        record.ename = "Hex bolt";
        record.spec = "M10x40";
        record.material = "SS400";
        record.weight = "0.033";
        record.user[5] = "납기 2주";
        record.viewBlocks[0] = "BOLT-F";
        record.viewPoints[0] = {5, 0, 0};
        const ObjectId user = libraryDictionaryId(db, LibraryKind::User, true);
        const ObjectId group = addDictionary(addDictionary(user, "볼트"), "육각볼트");
        EXPECT_FALSE(writePartRecord(group, record).isNull());
        record.loaded = true;
        EXPECT_EQ(db.saveAs(path), cad::ErrorStatus::eOk);
    }
};

}  // namespace vantor::testing_support
