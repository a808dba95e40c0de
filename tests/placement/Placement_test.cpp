// UBLI in the host: vantor-cad run headless on a script that chooses a sample part, runs UBLI
// and answers the drag; the saved drawing read back by the engine and by ezdxf.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"

namespace {

using testing::HasSubstr;
using vantor::test::shellQuoted;

class PlacementInHost : public testing::Test {
protected:
    PlacementInHost() { cad::db::Database(true).saveAs(drawing()); }
    std::string drawing() const { return folder_.file("plant.dxf"); }

    // Chooses the sample's M10x40 hex bolt with the option word, then runs the lines.
    std::string run(int option, const std::vector<std::string>& lines) const {
        std::string script = "VNTPART\n" + std::string(VANTOR_SOURCE_DIR) +
                             "/data/samples/standard-parts.dxf\nUser data list\n볼트\n육각볼트\n\n"
                             "QRB_VANTORDATA-2\nHB-M10X40-F\n" +
                             std::to_string(option) + "\n";
        for (const std::string& line : lines) script += line + "\n";
        folder_.writeBytes("input.script", script + "VNTSTATE\nQSAVE\nQUIT\n");
        return vantor::test::runCommand(
                   "VANTOR_MODULE_DIR=" + shellQuoted(folder_.path().string()) + " " +
                   shellQuoted(VANTOR_CAD) + " --load " + shellQuoted(VANTOR_PLACEMENT_MODULE) +
                   " --open " + shellQuoted(drawing()) + " --script " +
                   shellQuoted(folder_.file("input.script")))
            .output;
    }

    cad::sys::TestTempFolder folder_;
};

TEST_F(PlacementInHost, PointAndAngleLeaveThePartWithItsBomMark) {
    const std::string out = run(0x0C00, {"UBLI", "100,50", "30"});
    EXPECT_THAT(out, HasSubstr("[part] M10x40"));
    EXPECT_THAT(out, HasSubstr("사양설정(S)/작도취소(X)/<삽입점>: 100,50"));
    EXPECT_THAT(out, HasSubstr("명령취소(U)/작도취소(X)/각도 <0.0000>"));
    EXPECT_THAT(out,
                HasSubstr("  품명: 육각볼트\n  사양: M10x40\n  위치: X(100.0000), Y(50.0000)"));
    EXPECT_THAT(out, HasSubstr("[state] outcome 1"));

    cad::db::Database db(false);
    ASSERT_EQ(db.readDwgFile(drawing()), cad::ErrorStatus::eOk) << db.lastErrorMessage();
    std::vector<std::string> found;
    auto space =
        cad::db::open<cad::db::BlockTableRecord>(db.modelSpaceId(), cad::db::OpenMode::ForRead);
    for (cad::db::ObjectId id : space->entityIds()) {
        auto reference = cad::db::open<cad::db::BlockReference>(id, cad::db::OpenMode::ForRead);
        ASSERT_TRUE(reference);
        auto block = cad::db::open<cad::db::BlockTableRecord>(reference->blockTableRecord(),
                                                              cad::db::OpenMode::ForRead);
        std::string line =
            block->name() + " " + std::to_string(static_cast<int>(reference->position().x)) + " " +
            std::to_string(static_cast<int>(reference->rotation() * 180 / 3.14159265 + 0.5));
        for (cad::db::ObjectId attributeId : reference->attributeIds()) {
            auto attribute =
                cad::db::open<cad::db::Attribute>(attributeId, cad::db::OpenMode::ForRead);
            if (attribute->tag() == "QTY" || attribute->tag() == "SPEC")
                line += " " + attribute->tag() + "=" + attribute->textString();
        }
        found.push_back(line);
    }
    EXPECT_THAT(found,
                testing::ElementsAre("HB-M10X40-F 100 30", "QRBBM2 108 30 SPEC=M10x40 QTY=1"));
    space.close();
    EXPECT_EQ(db.openObjectCount(), 0);

    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "python3-ezdxf is not installed";
    const auto audit = vantor::test::ezdxfAudit(drawing());
    EXPECT_THAT(audit.output, HasSubstr("errors 0 fixes 0"));
}

TEST_F(PlacementInHost, DragEndingsLeaveNoTraceAndTheirOutcome) {
    for (const auto& [lines, outcome] :
         {std::pair{std::vector<std::string>{"UBLI", "<esc>"}, "[state] outcome 1"},
          std::pair{std::vector<std::string>{"UBLI", ""}, "[state] outcome 0"},
          std::pair{std::vector<std::string>{"UBLI", "5,5", "U", "X"}, "[state] outcome 1"}}) {
        SCOPED_TRACE(testing::PrintToString(lines));
        EXPECT_THAT(run(0x0C00, lines), HasSubstr(outcome));
        cad::db::Database db(false);
        ASSERT_EQ(db.readDwgFile(drawing()), cad::ErrorStatus::eOk);
        EXPECT_TRUE(
            cad::db::open<cad::db::BlockTableRecord>(db.modelSpaceId(), cad::db::OpenMode::ForRead)
                ->entityIds()
                .empty());
    }
}

// The objects of a saved drawing by handle, each as the tags written for it; the header is
// left out (the handle seed and the save time differ from one save to the next).
std::map<std::string, std::string> savedObjects(const std::string& text) {
    std::map<std::string, std::string> objects;
    std::istringstream in(text);
    std::string code, value, section, handle, record;
    const auto keep = [&] {
        if (!handle.empty() && section != "HEADER") objects[handle] = record;
        handle.clear();
        record.clear();
    };
    while (std::getline(in, code) && std::getline(in, value)) {
        const int number = std::stoi(code);
        if (!value.empty() && value.back() == '\r') value.pop_back();
        if (number == 0) keep();
        if (number == 2 && record == "0 SECTION\n") section = value;
        if ((number == 5 || number == 105) && handle.empty()) handle = value;
        record += std::to_string(number) + " " + value + "\n";
    }
    keep();
    return objects;
}

// What a user sees of a drawing: model space's entities, the blocks, layers and text styles,
// and the keys of the named objects dictionary and the dictionaries under it.
std::string drawingSummary(const std::string& path) {
    using namespace cad::db;
    Database db(false);
    if (db.readDwgFile(path) != cad::ErrorStatus::eOk)
        return "unreadable: " + db.lastErrorMessage();
    std::string out = "model space:";
    for (ObjectId id : open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)->entityIds())
        out += " " + std::string(open<DbObject>(id, OpenMode::ForRead)->dxfName());
    for (ObjectId table : {db.blockTableId(), db.layerTableId(), db.textStyleTableId()}) {
        out += "\ntable:";
        for (ObjectId id : open<SymbolTable>(table, OpenMode::ForRead)->recordIds())
            out += " " + open<SymbolTableRecord>(id, OpenMode::ForRead)->name();
    }
    auto root = open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead);
    for (const Dictionary::Entry& entry : root->entries()) {
        out += "\n" + entry.key + ":";
        if (auto inner = open<Dictionary>(entry.id, OpenMode::ForRead))
            for (const Dictionary::Entry& innerEntry : inner->entries())
                out += " " + innerEntry.key;
    }
    return out;
}

TEST_F(PlacementInHost, UndoTakesThePlacementBackAndRedoBringsItAgain) {
    const std::string empty = folder_.readBytes("plant.dxf");
    // Each run starts from the same empty drawing and leaves the one it saved in `name`.
    const auto saved = [&](const std::vector<std::string>& lines, const char* name,
                           std::string* out = nullptr) {
        folder_.writeBytes("plant.dxf", empty);
        const std::string said = run(0x0C00, lines);
        if (out != nullptr) *out = said;
        folder_.writeBytes(name, folder_.readBytes("plant.dxf"));
        return savedObjects(folder_.readBytes(name));
    };
    const auto without = saved({}, "without.dxf");
    const auto with = saved({"UBLI", "100,50", "30"}, "with.dxf");
    ASSERT_NE(with, without) << "the placement changed nothing";
    ASSERT_THAT(drawingSummary(folder_.file("with.dxf")), HasSubstr("model space: INSERT INSERT"));

    std::string said;
    const auto undone = saved({"UBLI", "100,50", "30", "U"}, "undone.dxf", &said);
    EXPECT_THAT(said, HasSubstr("\nUBLI\n"));
    EXPECT_EQ(drawingSummary(folder_.file("undone.dxf")),
              drawingSummary(folder_.file("without.dxf")));
    EXPECT_EQ(undone, without);

    // Brought again under the handles it had: the same drawing as placing once.
    const auto redone = saved({"UBLI", "100,50", "30", "U", "REDO"}, "redone.dxf", &said);
    EXPECT_THAT(said, HasSubstr("\nUBLI\n"));
    EXPECT_EQ(drawingSummary(folder_.file("redone.dxf")), drawingSummary(folder_.file("with.dxf")));
    EXPECT_EQ(redone, with);
}

// VNKSYNC in the host: a part placed from a copy of the sample library, whose record is then
// changed or deleted in the library drawing; the saved drawing read back each time.
class PartSyncInHost : public PlacementInHost {
protected:
    PartSyncInHost() {
        std::filesystem::copy_file(
            std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf", library());
        runLines({"VNTPART", library(), "User data list", "볼트", "육각볼트", "",
                  "QRB_VANTORDATA-2", "HB-M10X40-F", "3072", "UBLI", "100,50", "30"});
    }
    std::string library() const { return folder_.file("parts.dxf"); }

    std::string runLines(const std::vector<std::string>& lines) const {
        std::string script;
        for (const std::string& line : lines) script += line + "\n";
        folder_.writeBytes("sync.script", script + "QSAVE\nQUIT\n");
        return vantor::test::runCommand(
                   "VANTOR_MODULE_DIR=" + shellQuoted(folder_.path().string()) + " " +
                   shellQuoted(VANTOR_CAD) + " --headless --load " +
                   shellQuoted(VANTOR_PLACEMENT_MODULE) + " --open " + shellQuoted(drawing()) +
                   " --script " + shellQuoted(folder_.file("sync.script")))
            .output;
    }

    // Changes (or, without a change, deletes) the record in the library drawing.
    void editRecord(const std::function<void(vantor::PartRecord&)>& change) const {
        auto db = vantor::openLibraryDrawing(library());
        ASSERT_TRUE(db);
        const auto group = vantor::dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"});
        for (vantor::PartRecord& record : vantor::readGroupRecords(group).records) {
            if (record.key != "QRB_VANTORDATA-2") continue;
            if (change) {
                change(record);
                ASSERT_EQ(vantor::rewritePartRecord(record.recordId, record),
                          cad::ErrorStatus::eOk);
            } else {
                ASSERT_EQ(vantor::deletePartRecord(record.recordId), cad::ErrorStatus::eOk);
            }
        }
        ASSERT_EQ(db->saveAs(library()), cad::ErrorStatus::eOk);
    }

    // The SPEC attributes of the saved drawing's model space, part and marker.
    std::vector<std::string> specs() const {
        cad::db::Database db(false);
        EXPECT_EQ(db.readDwgFile(drawing()), cad::ErrorStatus::eOk);
        std::vector<std::string> found;
        auto space =
            cad::db::open<cad::db::BlockTableRecord>(db.modelSpaceId(), cad::db::OpenMode::ForRead);
        for (cad::db::ObjectId id : space->entityIds()) {
            auto reference = cad::db::open<cad::db::BlockReference>(id, cad::db::OpenMode::ForRead);
            if (!reference) continue;
            for (cad::db::ObjectId attributeId : reference->attributeIds()) {
                auto attribute =
                    cad::db::open<cad::db::Attribute>(attributeId, cad::db::OpenMode::ForRead);
                if (attribute->tag() == "SPEC") found.push_back(attribute->textString());
            }
        }
        return found;
    }
};

TEST_F(PartSyncInHost, ChangedRecordIsListedThenUpdatedAndUndone) {
    const std::vector<std::string> placed = specs();
    ASSERT_FALSE(placed.empty());
    for (const std::string& spec : placed) ASSERT_EQ(spec, "M10x40");
    editRecord([](vantor::PartRecord& record) { record.spec = "M10x45"; });

    // "No" lists and changes nothing.
    std::string out = runLines({"VNKSYNC", "No"});
    EXPECT_THAT(out, HasSubstr("라이브러리와 다른 부품: 변경 1개, 없어짐 0개 (연결된 부품 1개)"));
    EXPECT_THAT(out, HasSubstr("HB-M10X40-F 육각볼트 (parts.dxf / 육각볼트): 변경됨"));
    EXPECT_THAT(out, HasSubstr("SPEC: M10x40 → M10x45"));
    EXPECT_EQ(specs(), placed);

    // The update, then the host's undo takes all of it back in one step.
    out = runLines({"VNKSYNC", "", "U"});
    EXPECT_THAT(out, HasSubstr("부품 1개의 BOM 속성 1개를 갱신했습니다."));
    EXPECT_EQ(specs(), placed);
    out = runLines({"VNKSYNC", "Yes"});
    EXPECT_THAT(out, HasSubstr("갱신했습니다."));
    EXPECT_EQ(specs(), std::vector<std::string>(placed.size(), "M10x45"));
    EXPECT_THAT(runLines({"VNKSYNC"}), HasSubstr("연결된 부품 1개가 모두 라이브러리와 같습니다."));
}

TEST_F(PartSyncInHost, DeletedRecordIsListedAndLeftAsItIs) {
    const std::vector<std::string> placed = specs();
    editRecord(nullptr);
    const std::string out = runLines({"VNKSYNC"});
    EXPECT_THAT(out, HasSubstr("변경 0개, 없어짐 1개"));
    EXPECT_THAT(out, HasSubstr(": 레코드 삭제됨"));
    EXPECT_THAT(out, testing::Not(HasSubstr("갱신하시겠습니까")));
    EXPECT_EQ(specs(), placed);
}

}  // namespace
