// `vantor place` on the sample library: parts placed into a new drawing and into one that has
// them already, the refusals, and the result read back by ezdxf.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/vantor/CliRun.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

using testing::HasSubstr;

using vantor::cli::testing_support::CliOutcome;
using vantor::cli::testing_support::runVantor;

const std::string kSample = std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf";
const std::string kBolts = "User data list/볼트/육각볼트";

class PlaceCommand : public testing::Test {
protected:
    CliOutcome place(std::vector<std::string> args) const {
        args.insert(args.begin(), "place");
        return runVantor(args, output_);
    }
    std::string target() const { return folder_.file("plant.dxf"); }

    cad::sys::TestTempFolder folder_;
    cad::sys::TestTempFolder output_;
};

TEST_F(PlaceCommand, PlacesPartsWithTheirBomMarksIntoANewDrawing) {
    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "python3-ezdxf is not installed";
    CliOutcome run = place({kSample, kBolts, "QRB_VANTORDATA-2", target(), "--at", "100,50",
                            "--angle", "30", "--group", "--info-point"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "placed HB-M10X40-F at 100,50,0: 3 entities, group *A0\n");
    run = place({kSample, "Adv data list/밸브/게이트 밸브", "QRB_VANTORDATA-0", target(), "--at",
                 "0,0", "--view", "side", "--mirror-y", "--scale", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    // The same bolt again: its block is refilled in place, not doubled.
    ASSERT_EQ(
        place({kSample, kBolts, "QRB_VANTORDATA-2", target(), "--at", "0,0", "--explode"}).exitCode,
        0);

    const auto audit = vantor::test::ezdxfAudit(target());
    EXPECT_THAT(audit.output, HasSubstr("errors 0 fixes 0"));
    const auto read = vantor::test::runEzdxf(
        "import sys, ezdxf\n"
        "doc = ezdxf.readfile(sys.argv[1])\n"
        "for ref in doc.modelspace().query('INSERT'):\n"
        "    print(ref.dxf.name, ref.dxf.layer, round(ref.dxf.rotation), ref.dxf.yscale,\n"
        "          ref.get_attrib_text('NAME'), ref.get_attrib_text('QTY'), len(ref.attribs))\n"
        "print('blocks', len([b for b in doc.blocks if b.name == 'HB-M10X40-F']))\n"
        "print('points', len(doc.modelspace().query('POINT')))\n"
        "print('groups', [g.dxf.description for name, g in doc.groups])\n",
        target());
    const std::string& out = read.output;
    EXPECT_THAT(out, HasSubstr("HB-M10X40-F 0 30 1  "));
    EXPECT_THAT(out, HasSubstr("GV-10K-50A-S 0 0 -2.0"));
    EXPECT_THAT(out, HasSubstr("QRBBM2 BOM 30 1 육각볼트 1 14"));
    EXPECT_THAT(out, HasSubstr("QRBBM2 BOM 0 1 게이트 밸브 1 14"));
    EXPECT_THAT(out, HasSubstr("blocks 1\npoints 1\ngroups ['품명:육각볼트, 사양:M10x40']"));
}

TEST_F(PlaceCommand, RefusalsSayWhyAndWriteNothing) {
    const struct {
        std::vector<std::string> args;  // after the library, the group and the record
        int exitCode;
        const char* message;
    } rows[] = {
        {{"QRB_VANTORDATA-0"}, 2, "usage: vantor place"},
        {{"QRB_VANTORDATA-0", "--at", "0,0", "--angle", "400"},
         2,
         "[입력 에러] Sorry, Range = -360 to 360"},
        {{"QRB_VANTORDATA-99", "--at", "0,0"}, 1, "no part record 'QRB_VANTORDATA-99'"},
    };
    for (const auto& row : rows) {
        std::vector<std::string> args = row.args;
        args.insert(args.begin(), {kSample, kBolts});
        args.insert(args.begin() + 3, target());
        const CliOutcome run = place(args);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.message;
        EXPECT_THAT(run.err, HasSubstr(row.message));
        EXPECT_FALSE(std::filesystem::exists(target()));
    }
}

}  // namespace
