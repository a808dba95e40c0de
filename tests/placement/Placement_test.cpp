// UBLI in the host: vantor-cad run headless on a script that chooses a sample part, runs UBLI
// and answers the drag; the saved drawing read back by the engine and by ezdxf.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

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

}  // namespace
