// The store commands of the vantor command line on real files: a library drawing written by
// another program (Python's ezdxf, Korean names in ANSI_949) read through `tree` and `parts`,
// and the sample library through `cache` and `supplier`.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "apps/vantor/CliRun.h"
#include "cad/sys/TestTempFolder.h"

namespace {

using vantor::cli::testing_support::CliOutcome;
using vantor::cli::testing_support::runVantor;
using vantor::cli::testing_support::shellQuoted;

// Nested dictionaries with 26-value part records, one record cut short, as another program
// writes them.
constexpr const char* kForeignLibrary = R"PY(
import sys
import ezdxf

doc = ezdxf.new("R2000")
doc.encoding = "cp949"
root = doc.rootdict

def record(group, kname, spec, front=("", (0, 0, 0))):
    tags = [(2, front[0]), (10, front[1])]
    for _ in range(5):
        tags += [(2, ""), (10, (0, 0, 0))]
    texts = [group, kname, "Hex bolt", spec, "SS400", "0.03", "120", "KS"] + ["u1"] + [""] * 5
    return tags + [(1, t) for t in texts]

bolts = root.add_new_dict("User data list").add_new_dict("볼트")
hexes = bolts.add_new_dict("육각볼트")
hexes.add_xrecord("QRB_VANTORDATA-0").reset(
    record("육각볼트", "육각 볼트", "M10x30", ("HB-F", (1.5, -2, 0))))
hexes.add_xrecord("QRB_VANTORDATA-1").reset(record("육각볼트", "육각 볼트", "M12x40"))
hexes.add_xrecord("QRB_VANTORDATA-2").reset([(2, "X"), (10, (0, 0, 0))])
bolts.add_new_dict("너트")
valves = root.add_new_dict("Adv data list").add_new_dict("Valves")
valves.add_xrecord("QRB_VANTORDATA-0").reset(record("Valves", "게이트 밸브", "10K 50A"))
doc.saveas(sys.argv[1])
)PY";

class StoreCommands : public testing::Test {
protected:
    CliOutcome run(const std::vector<std::string>& args) const { return runVantor(args, output_); }

    cad::sys::TestTempFolder folder_;
    cad::sys::TestTempFolder output_;
};

class ForeignLibrary : public StoreCommands {
protected:
    void SetUp() override {
        folder_.writeBytes("make.py", kForeignLibrary);
        const std::string command = "/usr/bin/python3 " + shellQuoted(folder_.file("make.py")) +
                                    " " + shellQuoted(drawing) + " 2>/dev/null";
        if (std::system(command.c_str()) != 0) GTEST_SKIP() << "python3 with ezdxf is not here";
    }
    std::string drawing = folder_.file("foreign.dxf");
};

TEST_F(ForeignLibrary, TreeShowsBothLibrariesFromTheCache) {
    const CliOutcome tree = run({"tree", drawing, "--json"});
    EXPECT_EQ(tree.exitCode, 0) << tree.err;
    EXPECT_EQ(tree.out,
              "{\"drawing\":\"" + drawing +
                  "\",\"libraries\":["
                  "{\"key\":\"Adv data list\",\"name\":\"AD-LIBRARY\",\"label\":\"foreign "
                  "[AD-LIB]\",\"children\":[{\"name\":\"Valves\",\"kind\":\"group\","
                  "\"children\":[],\"records\":[{\"key\":\"QRB_VANTORDATA-0\",\"spec\":\"10K "
                  "50A\"}]}],\"records\":[]},"
                  "{\"key\":\"User data list\",\"name\":\"USR-LIBRARY\",\"label\":\"foreign "
                  "[USR-LIB]\",\"children\":[{\"name\":\"볼트\",\"kind\":\"category\","
                  "\"children\":[{\"name\":\"너트\",\"kind\":\"group\",\"children\":[],"
                  "\"records\":[]},{\"name\":\"육각볼트\",\"kind\":\"group\",\"children\":[],"
                  "\"records\":[{\"key\":\"QRB_VANTORDATA-0\",\"spec\":\"M10x30\"},"
                  "{\"key\":\"QRB_VANTORDATA-1\",\"spec\":\"M12x40\"},"
                  "{\"key\":\"QRB_VANTORDATA-2\",\"spec\":\"\"}]}],\"records\":[]}],"
                  "\"records\":[]}]}\n");
    EXPECT_TRUE(std::filesystem::exists(folder_.file("foreign.vnf")));
    // The second run takes the cache just written and shows the same.
    EXPECT_EQ(run({"tree", drawing, "--json"}).out, tree.out);
}

TEST_F(ForeignLibrary, PartsGivesAll26FieldsAndNamesTheRecordItSkips) {
    const CliOutcome parts = run({"parts", drawing, "User data list/볼트/육각볼트", "--json"});
    EXPECT_EQ(parts.exitCode, 0);
    EXPECT_EQ(parts.err,
              "vantor: record QRB_VANTORDATA-2 skipped: holds 2 values where 26 are expected\n");
    const std::string empty = "\"block\":\"\",\"point\":[0,0,0]}";
    const std::string otherViews = ",{\"slot\":\"side\"," + empty + ",{\"slot\":\"plan\"," + empty +
                                   ",{\"slot\":\"drawing1\"," + empty + ",{\"slot\":\"drawing2\"," +
                                   empty + ",{\"slot\":\"drawing3\"," + empty + "]";
    const std::string texts =
        "\"group\":\"육각볼트\",\"kname\":\"육각 볼트\",\"ename\":\"Hex bolt\",\"spec\":\"";
    const std::string rest =
        "\",\"material\":\"SS400\",\"weight\":\"0.03\",\"price\":\"120\","
        "\"remark\":\"KS\",\"user\":[\"u1\",\"\",\"\",\"\",\"\",\"\"]}";
    EXPECT_EQ(parts.out,
              "[{\"key\":\"QRB_VANTORDATA-0\",\"views\":[{\"slot\":\"front\","
              "\"block\":\"HB-F\",\"point\":[1.5,-2,0]}" +
                  otherViews + "," + texts + "M10x30" + rest +
                  ",{\"key\":\"QRB_VANTORDATA-1\",\"views\":[{\"slot\":\"front\"," + empty +
                  otherViews + "," + texts + "M12x40" + rest + "]\n");

    const CliOutcome missing = run({"parts", drawing, "User data list/볼트/와셔"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "vantor: no group 'User data list/볼트/와셔' in " + drawing + "\n");
    EXPECT_EQ(run({"supplier", drawing, "--json"}).out,
              "{\"drawing\":\"" + drawing + "\",\"supplier\":{}}\n");
}

TEST_F(StoreCommands, CacheAndSupplierOfTheSampleLibrary) {
    const std::string drawing = folder_.file("standard-parts.dxf");
    std::filesystem::copy_file(VANTOR_SOURCE_DIR "/data/samples/standard-parts.dxf", drawing);
    const CliOutcome cache = run({"cache", drawing});
    EXPECT_EQ(cache.exitCode, 0) << cache.err;
    EXPECT_EQ(cache.out, "rebuilt " + folder_.file("standard-parts.vnf") +
                             ": 46 nodes, 14 dictionaries, 32 records\n");

    const CliOutcome supplier = run({"supplier", drawing});
    EXPECT_EQ(supplier.exitCode, 0);
    EXPECT_EQ(supplier.out,
              "(주)한빛밸브\n경기도 안산시 단원구 산단로 123\nTEL: 031-490-1234\n"
              "FAX: 031-490-1235\nWWW.HANBIT-VALVE.CO.KR\tHTTP://WWW.HANBIT-VALVE.CO.KR\n"
              "E-Mail: sales@hanbit-valve.co.kr\t"
              "mailto:sales@hanbit-valve.co.kr?subject=제품문의:\n"
              "KS 인증 밸브 및 플랜지 전문 제조\nlogo: 18134 bytes\n");
}

TEST_F(StoreCommands, MissingDrawingFailsAndHelpNamesTheCommands) {
    const std::string missing = folder_.file("none.dxf");
    const CliOutcome tree = run({"tree", missing});
    EXPECT_EQ(tree.exitCode, 1);
    EXPECT_EQ(tree.err, "vantor: no drawing " + missing + "\n");
    EXPECT_EQ(run({"tree"}).exitCode, 2);
    const std::string help = run({"--help"}).out;
    for (const char* usage : {"tree DRAWING [--json]", "parts DRAWING GROUP-PATH [--json]",
                              "cache DRAWING", "supplier DRAWING [--json]"})
        EXPECT_NE(help.find(usage), std::string::npos) << usage;
}

}  // namespace
