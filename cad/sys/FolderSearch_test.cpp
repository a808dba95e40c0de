// Tests of wildcard matching and of the folder search order over a real tree in a
// temporary folder, with a link loop and an unreadable folder.
#include "cad/sys/FolderSearch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

namespace fs = std::filesystem;

TEST(FolderSearch, WildcardsMatchIgnoringCaseAndCountingCharacters) {
    const struct {
        std::string fileName, pattern;
        bool matches;
    } rows[] = {
        // clang-format off
        {"A.DWG", "*.dwg", true}, {"y.dxf", "*.DXF", true}, {"a.dwgx", "*.dwg", false},
        {".dwg", "*.dwg", true}, {"a.dwg.dwg", "*.dwg", true}, {"aXXbYc", "a*b*c", true},
        {"aXXbY", "a*b*c", false}, {"주.dwg", "?.dwg", true}, {"ac", "a?c", false},
        {"볼트-주.dwg", "*주.DWG", true}, {"", "*", true}, {"", "", true}, {"a", "", false},
        // clang-format on
    };
    for (const auto& row : rows) {
        EXPECT_EQ(matchesPattern(row.fileName, row.pattern), row.matches)
            << row.fileName << " " << row.pattern;
    }
}

class FolderSearchTree : public testing::Test {
protected:
    void SetUp() override {
        for (const char* file : {"b.dwg", "A.DWG", "c.txt", "_under.dwg", "Sub2/x.dwg",
                                 "sub1/y.DXF", "sub1/deep/z.dwg", "sub1/deep/notes.txt"}) {
            fs::create_directories((temp_.path() / file).parent_path());
            temp_.writeBytes(file, "0\n");
        }
        fs::create_directory_symlink(temp_.path(), temp_.path() / "loop");
        fs::create_directory_symlink(temp_.path() / "sub1" / "deep",
                                     temp_.path() / "sub1" / "deep" / "back");
        fs::create_directory_symlink(temp_.path() / "Sub2", temp_.path() / "zlink");
        fs::create_symlink(temp_.path() / "missing.dwg", temp_.path() / "broken.dwg");
    }

    std::string path(const std::string& relative) const { return temp_.file(relative); }

    TestTempFolder temp_;
};

TEST_F(FolderSearchTree, SubfoldersFirstInCaseInsensitiveOrderAndLoopsCut) {
    std::vector<std::string> unreadable;
    const auto found = findFiles(temp_.path().string(), {"*.dwg", "*.dxf"}, &unreadable);
    const std::vector<std::string> expected{
        path("sub1/deep/z.dwg"), path("sub1/y.DXF"), path("Sub2/x.dwg"),
        // A link to a folder that is not above it is searched like the folder.
        path("zlink/x.dwg"),
        // Upper-case folding puts '_' after the letters.
        path("A.DWG"), path("b.dwg"), path("broken.dwg"), path("_under.dwg")};
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(unreadable.empty());
}

TEST_F(FolderSearchTree, TrailingSlashGivesSamePathsAndAMissingFolderIsReported) {
    const auto found = findFiles(temp_.path().string() + "/", {"*.DXF"});
    EXPECT_EQ(found, std::vector<std::string>{path("sub1/y.DXF")});
    std::vector<std::string> unreadable;
    EXPECT_TRUE(findFiles(path("nowhere"), {"*.dwg"}, &unreadable).empty());
    EXPECT_EQ(unreadable, std::vector<std::string>{path("nowhere")});
}

TEST_F(FolderSearchTree, UnreadableFolderIsSkippedAndReported) {
    if (geteuid() == 0) GTEST_SKIP() << "root reads a folder without permissions";
    ASSERT_EQ(chmod(path("sub1/deep").c_str(), 0), 0);
    std::vector<std::string> unreadable;
    const auto found = findFiles(path("sub1"), {"*.dwg", "*.dxf"}, &unreadable);
    chmod(path("sub1/deep").c_str(), 0755);
    EXPECT_EQ(found, std::vector<std::string>{path("sub1/y.DXF")});
    EXPECT_EQ(unreadable, std::vector<std::string>{path("sub1/deep")});
}

}  // namespace
}  // namespace cad::sys
