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
#include "cad/db/TestDrawing.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/TestLibrary.h"

namespace vantor::testing_support {

using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::testing_support::addBlock;
using cad::db::testing_support::addLayer;
using cad::db::testing_support::append;
using cad::db::testing_support::entitiesOf;
using cad::db::testing_support::lookUp;

inline ObjectId addLine(ObjectId block, ObjectId layer, const cad::ge::Point3d& from,
                        const cad::ge::Point3d& to) {
    return append(block, std::make_unique<cad::db::Line>(from, to), layer);
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
