// Placed parts and their records: the link a placement leaves, kept through DXF and DWG saves
// and readable by ezdxf; the comparison after a record changed or went; the update and its
// undo. The command's question is tested in the host (tests/placement).
#include "vantor/placement/PartSync.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/RegAppTableRecord.h"
#include "cad/ed/Editor.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"
#include "vantor/placement/BomMark.h"
#include "vantor/placement/PartLink.h"
#include "vantor/placement/PartPlacement.h"
#include "vantor/placement/PlacementTestDrawing.h"
#include "vantor/store/LibraryDrawingCache.h"

namespace vantor {
namespace {

using namespace testing_support;
using cad::ErrorStatus;
using cad::db::BlockReference;

const std::vector<std::string> kGroupPath{"User data list", "볼트", "육각볼트"};

class PartSyncTest : public ::testing::Test {
protected:
    PartSyncTest() {
        // The record as the window hands it over: read from the library, with its key.
        auto db = openLibraryDrawing(library.path);
        const GroupRecords group = readGroupRecords(dictionaryAtPath(*db, kGroupPath));
        record = group.records.at(0);
        recordHandle = record.recordId.handle();
    }
    void TearDown() override { EXPECT_EQ(target.openObjectCount(), 0); }

    PlacedPart place(bool explode = false) {
        PlacementRequest request;
        request.libraryPath = library.path;
        request.blockName = "BOLT-F";
        request.record = record;
        request.insertionPoint = {10, 20, 0};
        request.options.explode = explode;
        PartPlacement placement(target, editor,
                                std::string(VANTOR_SOURCE_DIR) + "/data/acadiso.lin");
        PlacedPart placed;
        EXPECT_EQ(placement.place(request, placed), ErrorStatus::eOk);
        return placed;
    }
    // Changes the stored record in the library drawing and saves it, as the data dialog does.
    void changeRecord(const std::function<void(PartRecord&)>& change) {
        auto db = openLibraryDrawing(library.path);
        const cad::db::ObjectId group = dictionaryAtPath(*db, kGroupPath);
        PartRecord stored = readGroupRecords(group).records.at(0);
        change(stored);
        ASSERT_EQ(rewritePartRecord(stored.recordId, stored), ErrorStatus::eOk);
        ASSERT_EQ(db->saveAs(library.path), ErrorStatus::eOk);
    }
    // Deletes the record, then adds one with the same texts, which takes the freed key.
    void deleteRecordAndReuseItsKey() {
        auto db = openLibraryDrawing(library.path);
        const cad::db::ObjectId group = dictionaryAtPath(*db, kGroupPath);
        const PartRecord old = readGroupRecords(group).records.at(0);
        ASSERT_EQ(deletePartRecord(old.recordId), ErrorStatus::eOk);
        ASSERT_FALSE(writePartRecord(group, old).isNull());
        ASSERT_EQ(readGroupRecords(group).records.at(0).key, old.key);
        ASSERT_EQ(db->saveAs(library.path), ErrorStatus::eOk);
    }
    std::vector<PartSyncEntry> compare(cad::db::Database& db) {
        LibraryDrawingCache libraries;
        return compareWithRecords(findLinkedParts(db), libraries);
    }
    // Tag=text of every field attribute the parts carry, for comparing before and after.
    static std::multimap<std::string, std::string> carried(cad::db::Database& db) {
        std::multimap<std::string, std::string> texts;
        for (const LinkedPart& part : findLinkedParts(db))
            for (const CarriedAttribute& attribute : part.attributes)
                texts.emplace(std::string(PartFields::field(attribute.field).bomTag),
                              attribute.text);
        return texts;
    }

    cad::sys::TestTempFolder folder;
    SampleLibrary library{folder.file("library.dxf")};
    PartRecord record;
    cad::db::Handle recordHandle;
    cad::db::Database target;
    cad::ed::Editor editor;
};

TEST_F(PartSyncTest, PlacementLinksThePartAndTheLinkSurvivesDxfAndDwgSaves) {
    const PlacedPart placed = place();
    ASSERT_EQ(placed.entities.size(), 2u);  // the bolt and the marker beside it
    const PartLink expected{
        library.path, kGroupPath, record.key, recordHandle, {placed.entities[1].handle()}};
    EXPECT_TRUE(lookUp(target.regAppTableId(), PartLink::kAppName).isLive());

    for (const char* name : {"plant.dxf", "plant.dwg"}) {
        SCOPED_TRACE(name);
        const std::string path = folder.file(name);
        ASSERT_EQ(target.saveAs(path), ErrorStatus::eOk);
        cad::db::Database reread(false);
        ASSERT_EQ(reread.readDwgFile(path), ErrorStatus::eOk) << reread.lastErrorMessage();
        const std::vector<LinkedPart> parts = findLinkedParts(reread);
        ASSERT_EQ(parts.size(), 1u);
        EXPECT_EQ(parts[0].link, expected);
        EXPECT_EQ(parts[0].blockName, "BOLT-F");
        // SPEC on the bolt, the 13 fields on its marker (QTY holds no field).
        EXPECT_EQ(parts[0].attributes.size(), 14u);
        const std::vector<PartSyncEntry> entries = compare(reread);
        EXPECT_EQ(entries.at(0).state, PartSyncState::Current);
        EXPECT_EQ(reread.openObjectCount(), 0);
    }

    if (!test::ezdxfAvailable()) GTEST_SKIP() << "python3-ezdxf is not installed";
    const test::ExternalRun run = test::runEzdxf(
        "import sys, ezdxf\n"
        "doc = ezdxf.readfile(sys.argv[1])\n"
        "print('appid', 'VANTOR_PART' in doc.appids)\n"
        "for e in doc.modelspace().query('INSERT'):\n"
        "    if e.has_xdata('VANTOR_PART'):\n"
        "        print(e.dxf.name, [v for c, v in e.get_xdata('VANTOR_PART')])\n",
        folder.file("plant.dxf"));
    EXPECT_NE(run.output.find("appid True"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("BOLT-F [1, '" + library.path + "', '" + record.key + "', '" +
                              recordHandle.toHex() +
                              "', '{', 'User data list', '볼트', "
                              "'육각볼트', '}', '" +
                              placed.entities[1].handle().toHex() + "']"),
              std::string::npos)
        << run.output;
}

TEST_F(PartSyncTest, ExplodedPartLeavesTheLinkOnItsMarker) {
    place(true);
    const std::vector<LinkedPart> parts = findLinkedParts(target);
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].blockName, BomMark::kBlockName);
    EXPECT_TRUE(parts[0].link.companions.empty());
    EXPECT_EQ(parts[0].attributes.size(), 13u);
}

TEST_F(PartSyncTest, ChangedRecordIsListedUpdatedAndUndoneAsOneStep) {
    place();
    place();
    const auto before = carried(target);
    changeRecord([](PartRecord& r) {
        r.spec = "M10x45";
        r.weight = "0.036";
    });
    std::vector<PartSyncEntry> entries = compare(target);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].state, PartSyncState::Changed);
    ASSERT_EQ(entries[0].changes.size(), 2u);
    EXPECT_EQ(entries[0].changes[0].field, PartFields::Spec);
    EXPECT_EQ(entries[0].changes[0].carried, "M10x40");
    EXPECT_EQ(entries[0].changes[0].current, "M10x45");

    const PartSyncList list = makeSyncList(entries);
    EXPECT_EQ(list.linked, 2);
    EXPECT_EQ(list.changed, 2);
    EXPECT_EQ(list.gone, 0);
    ASSERT_EQ(list.rows.size(), 2u);
    EXPECT_EQ(list.rows[0].name, "육각볼트");
    EXPECT_EQ(list.rows[0].drawing, "library.dxf");
    EXPECT_EQ(list.rows[0].group, "육각볼트");
    EXPECT_EQ(list.rows[0].state, "변경됨");
    EXPECT_EQ(list.rows[0].changes, "SPEC: M10x40 → M10x45, WEIGHT: 0.033 → 0.036");
    EXPECT_TRUE(list.rows[0].updatable);

    target.startUndoGroup("VNKSYNC");
    // Per part: SPEC on the bolt, SPEC and WEIGHT on its marker.
    EXPECT_EQ(updateCarriedAttributes(entries), 6);
    target.endUndoGroup();
    for (const PartSyncEntry& entry : compare(target))
        EXPECT_EQ(entry.state, PartSyncState::Current);
    const auto after = carried(target);
    EXPECT_EQ(after.count("SPEC"), 4u);
    for (auto [it, end] = after.equal_range("SPEC"); it != end; ++it)
        EXPECT_EQ(it->second, "M10x45");

    std::string name;
    ASSERT_EQ(target.undo(name), ErrorStatus::eOk);
    EXPECT_EQ(name, "VNKSYNC");
    EXPECT_EQ(carried(target), before);
    EXPECT_EQ(target.undoRecorder().undoCount(), 0u);
}

TEST_F(PartSyncTest, GoneRecordsAreListedAndLeftAsTheyAre) {
    place();
    const auto before = carried(target);

    // The link names the record by its handle: a new record under the old key is not it.
    deleteRecordAndReuseItsKey();
    std::vector<PartSyncEntry> entries = compare(target);
    EXPECT_EQ(entries.at(0).state, PartSyncState::RecordDeleted);
    EXPECT_EQ(updateCarriedAttributes(entries), 0);

    std::filesystem::rename(library.path, folder.file("moved.dxf"));
    entries = compare(target);
    EXPECT_EQ(entries.at(0).state, PartSyncState::DrawingMissing);
    const PartSyncList list = makeSyncList(entries);
    EXPECT_EQ(list.gone, 1);
    ASSERT_EQ(list.rows.size(), 1u);
    EXPECT_EQ(list.rows[0].state, "도면 없음");
    EXPECT_FALSE(list.rows[0].updatable);
    EXPECT_EQ(carried(target), before);
}

TEST(PartLinkData, ReplacesItsOwnDataKeepsOthersAndSkipsWhatDoesNotRead) {
    cad::db::Database db;
    const cad::db::ObjectId line = addLine(db.modelSpaceId(), {}, {0, 0, 0}, {1, 0, 0});
    const std::vector<cad::db::RawTag> other{{1001, "OTHERAPP"}, {1000, "kept"}};
    cad::db::open<cad::db::Line>(line, OpenMode::ForWrite)->xdata() = other;
    PartLink link{
        "/lib/a.dxf", {"Adv data list", "G"}, "QRB_VANTORDATA-3", cad::db::Handle(0x2A), {}};
    ASSERT_EQ(attachPartLink(line, link), ErrorStatus::eOk);
    link.recordKey = "QRB_VANTORDATA-4";
    ASSERT_EQ(attachPartLink(line, link), ErrorStatus::eOk);
    {
        auto opened = cad::db::open<cad::db::Line>(line, OpenMode::ForRead);
        EXPECT_EQ(partLinkOf(*opened), link);
        const std::vector<cad::db::RawTag>& xdata = opened->xdata();
        EXPECT_EQ(std::vector<cad::db::RawTag>(xdata.begin(), xdata.begin() + 2), other);
        EXPECT_EQ(xdata.size(), 2 + link.toXdata().size());
    }

    std::vector<cad::db::RawTag> later = link.toXdata();
    later[1].value = "2";
    EXPECT_FALSE(PartLink::fromXdata(later));
    std::vector<cad::db::RawTag> cut = link.toXdata();
    cut.resize(4);
    EXPECT_FALSE(PartLink::fromXdata(cut));
    EXPECT_FALSE(PartLink::fromXdata(other));
}

}  // namespace
}  // namespace vantor
