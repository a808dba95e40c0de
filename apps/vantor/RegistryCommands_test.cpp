// register, scan, optimise and export run as the program on a temporary module folder with
// copies of the sample library.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "apps/vantor/CliRun.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/ListFile.h"

namespace {

using Outcome = vantor::cli::testing_support::CliOutcome;
using Strings = std::vector<std::string>;
using vantor::cli::testing_support::shellQuoted;

class RegistryCommands : public testing::Test {
protected:
    Outcome run(const Strings& args) const {
        return vantor::cli::testing_support::runVantor(
            args, output_, "VANTOR_MODULE_DIR=" + shellQuoted(module_.path().string()));
    }
    Strings listed() const {
        return vantor::ListFile::readAll(module_.path().string() + "/DATA/UBList0.dat")
            .value_or(Strings{"<no file>"});
    }
    std::string sample(const std::string& relative) const {
        const std::filesystem::path path = files_.path() / relative;
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(VANTOR_SOURCE_DIR "/data/samples/standard-parts.dxf", path);
        return path.string();
    }

    cad::sys::TestTempFolder module_;
    cad::sys::TestTempFolder output_;
    cad::sys::TestTempFolder files_;
};

TEST_F(RegistryCommands, RegisterAnnouncesDuplicatesAndOptimiseDropsTheUnreadable) {
    const std::string library = sample("standard-parts.dxf");
    const std::string missing = files_.file("gone.dxf");
    const Outcome registered = run({"register", "0", library, missing, library});
    EXPECT_EQ(registered.exitCode, 0) << registered.err;
    EXPECT_EQ(registered.out, "[도면 중복 알림] \"" + library +
                                  "\"\n은 이미 등록된 도면입니다.\nregistered " + library +
                                  "\nregistered " + missing + " (inactive)\n");
    EXPECT_EQ(listed(), (Strings{library, missing}));

    const Outcome optimised = run({"optimise", "0"});
    EXPECT_EQ(optimised.exitCode, 0) << optimised.err;
    EXPECT_EQ(optimised.out,
              "[리스트 최적화] 비활성 도면들을 모두 리스트에서 제거합니다?\n실행하시겠습니까?\n"
              "removed 1 inactive drawings\n");
    EXPECT_EQ(listed(), Strings{library});
}

TEST_F(RegistryCommands, ScanReplacesTheListWithTheReadableDrawings) {
    run({"register", "0", sample("old.dxf")});
    const std::string top = sample("lib/top.dxf");
    const std::string nested = sample("lib/sub/nested.dxf");
    files_.writeBytes("lib/broken.dwg", "not a drawing");

    const Outcome scanned = run({"scan", "0", files_.file("lib")});
    EXPECT_EQ(scanned.exitCode, 0) << scanned.err;
    EXPECT_EQ(scanned.out,
              "[폴더 SCAN] 기존의 리스트가 사라집니다.\n그래도 하시겠습니까?\nregistered " +
                  nested + "\nregistered " + top + "\n2 drawings registered\n");
    EXPECT_EQ(listed(), (Strings{nested, top}));
    EXPECT_EQ(run({"scan", "0", files_.file("nowhere")}).exitCode, 1);  // list kept
    EXPECT_EQ(listed(), (Strings{nested, top}));
}

TEST_F(RegistryCommands, ExportWritesOneLinePerRecordOfTheWindow) {
    run({"register", "0", sample("standard-parts.dxf")});
    const std::string csv = files_.file("parts.csv");
    const Outcome exported = run({"export", "0", csv, "--delimiter", "bar"});
    EXPECT_EQ(exported.exitCode, 0) << exported.err;
    EXPECT_EQ(exported.out, "[저장완료] " + csv + "\"\n에 저장되었습니다.\n");

    const std::string bytes = files_.readBytes("parts.csv");
    EXPECT_TRUE(bytes.starts_with("\xB5\xB5\xB8\xE9\xC0\xA7\xC4\xA1|")) << "도면위치 in CP949";
    // The header and the sample's 32 records, each ended by CR LF.
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 1 + 32);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\r'), 1 + 32);

    EXPECT_EQ(run({"export", "0", csv, "--delimiter", "semicolon"}).exitCode, 2);
    EXPECT_EQ(run({"export", "0", files_.file("no/parts.csv")}).exitCode, 1);
    const std::string help = run({"--help"}).out;
    for (const char* usage : {"register N PATH...", "scan N FOLDER", "optimise N",
                              "export N FILE [--delimiter comma|bar|tab]"})
        EXPECT_NE(help.find(usage), std::string::npos) << usage;
}

TEST_F(RegistryCommands, SearchListsThePartsHoldingEveryWordOfTheWindowOrOfAll) {
    const std::string main = sample("main/standard-parts.dxf");
    const std::string other = sample("other/standard-parts.dxf");
    run({"register", "0", main});
    run({"window", "add", "배관"});
    run({"register", "1", other});

    const Outcome found = run({"search", "0", "m12", "ㅇㄱ"});
    EXPECT_EQ(found.exitCode, 0) << found.err;
    EXPECT_EQ(found.out, main + "\tUser data list/너트/육각너트\tQRB_VANTORDATA-3\t육각너트\t"
                                "Hexagon nut\tM12\n" +
                             main + "\tUser data list/볼트/육각볼트\tQRB_VANTORDATA-3\t육각볼트\t"
                                    "Hexagon head bolt\tM12x50\n");
    const Outcome everywhere = run({"search", "0", "M12X50", "--all-windows", "--json"});
    EXPECT_EQ(everywhere.exitCode, 0) << everywhere.err;
    EXPECT_NE(everywhere.out.find("\"drawing\":\"" + other + "\""), std::string::npos);
    EXPECT_NE(everywhere.out.find("\"group\":[\"User data list\",\"볼트\",\"육각볼트\"]"),
              std::string::npos);

    const Outcome nothing = run({"search", "1", "xyzzy"});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_EQ(nothing.out, "");
    EXPECT_EQ(run({"search", "7", "bolt"}).exitCode, 1);
    EXPECT_EQ(run({"search", "0"}).exitCode, 2);
}

}  // namespace
