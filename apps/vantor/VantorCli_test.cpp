// The vantor command line run as a program on a temporary module folder: the management
// window commands, their JSON, their messages and exit codes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apps/vantor/CliRun.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/ListFile.h"

namespace {

using testing::HasSubstr;

using Outcome = vantor::cli::testing_support::CliOutcome;
using vantor::cli::testing_support::shellQuoted;

class VantorCli : public testing::Test {
protected:
    Outcome run(const std::vector<std::string>& args) const {
        return vantor::cli::testing_support::runVantor(
            args, output_, "VANTOR_MODULE_DIR=" + shellQuoted(module_.path().string()));
    }
    std::string data(const std::string& name) const {
        return module_.path().string() + "/DATA/" + name;
    }

    cad::sys::TestTempFolder module_;
    cad::sys::TestTempFolder output_;
};

TEST_F(VantorCli, WindowsOnAFreshFolderMakesTheMainWindow) {
    const Outcome windows = run({"windows", "--json"});
    EXPECT_EQ(windows.exitCode, 0) << windows.err;
    EXPECT_EQ(windows.out,
              "{\"selected\":0,\"windows\":[{\"position\":0,\"name\":\"주 관리창\","
              "\"listFile\":\"" +
                  data("UBList0.dat") + "\",\"entries\":0}]}\n");
    EXPECT_EQ(vantor::ListFile::readAll(data("UBTabList.dat")),
              std::vector<std::string>{"주 관리창"});
}

TEST_F(VantorCli, AddDeleteAndListWorkOnTheSameFiles) {
    EXPECT_EQ(run({"window", "add", "배관 \"A\"\\B"}).exitCode, 0);
    const Outcome added = run({"window", "add", "밸브"});
    EXPECT_EQ(added.exitCode, 0) << added.err;
    EXPECT_EQ(added.out, "added window 2: 밸브\n");
    ASSERT_TRUE(vantor::ListFile::write(data("UBList2.dat"), {"C:\\v\\gate.dwg"}));

    const Outcome windows = run({"windows", "--json"});
    EXPECT_THAT(windows.out, HasSubstr("\"name\":\"배관 \\\"A\\\"\\\\B\""));
    EXPECT_NE(windows.out.find("\"position\":2,\"name\":\"밸브\""), std::string::npos);

    const Outcome deleted = run({"window", "delete", "1"});
    EXPECT_EQ(deleted.exitCode, 0) << deleted.err;
    EXPECT_EQ(deleted.out, "[리스트 삭제] 리스트를 정말로 삭제하시겠습니까?\n");
    EXPECT_EQ(vantor::ListFile::readAll(data("UBTabList.dat")),
              (std::vector<std::string>{"주 관리창", "밸브"}));

    const Outcome list = run({"list", "1", "--json"});
    EXPECT_EQ(list.exitCode, 0) << list.err;
    EXPECT_EQ(list.out,
              "{\"position\":1,\"name\":\"밸브\",\"drawings\":[{\"path\":\"C:\\\\v\\\\gate.dwg\","
              "\"drive\":\"C:\",\"dir\":\"\\\\v\\\\\",\"name\":\"gate\",\"ext\":\".dwg\","
              "\"active\":1}]}\n");
}

TEST_F(VantorCli, RefusalsAnswerTheExitCodeWithAMessage) {
    const Outcome refused = run({"window", "delete", "0"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "[삭제 에러] 기본 관리창은 삭제할 수 없습니다.\n");
    EXPECT_EQ(refused.out, "");
    const std::pair<std::vector<std::string>, int> rows[] = {
        {{}, 2},
        {{"frobnicate"}, 2},
        {{"windows", "--xml"}, 2},
        {{"window", "delete", "x"}, 2},  // a position that is not a number
        {{"list", "5"}, 1},              // a missing window
    };
    for (const auto& [args, exitCode] : rows) {
        const Outcome result = run(args);
        EXPECT_EQ(result.exitCode, exitCode) << testing::PrintToString(args);
        EXPECT_FALSE(result.err.empty()) << testing::PrintToString(args);
    }
}

}  // namespace
