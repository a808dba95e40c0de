// Tests of _splitpath semantics over Windows, network and POSIX paths, and of nativePath.
#include "cad/sys/SplitPath.h"

#include <gtest/gtest.h>

namespace cad::sys {
namespace {

TEST(SplitPath, GivesTheRuntimesPartsWhichJoinToThePath) {
    const std::pair<std::string, PathParts> rows[] = {
        // clang-format off
        {R"(C:\a\b.dwg)", {"C:", R"(\a\)", "b", ".dwg"}},
        {R"(\\server\share\x.dwg)", {"", R"(\\server\share\)", "x", ".dwg"}},
        {"/home/u/x.tar.gz", {"", "/home/u/", "x.tar", ".gz"}},
        {R"(C:/lib\부품/볼트.DWG)", {"C:", R"(/lib\부품/)", "볼트", ".DWG"}},
        {R"(C:\a\\DATA\UBList0.dat)", {"C:", R"(\a\\DATA\)", "UBList0", ".dat"}},
        {".hidden", {"", "", "", ".hidden"}},
        {"dir.d/name", {"", "dir.d/", "name", ""}},
        {R"(C:\a\)", {"C:", R"(\a\)", "", ""}},
        {"C:", {"C:", "", "", ""}},
        {"C:b.dwg", {"C:", "", "b", ".dwg"}},
        {"name.", {"", "", "name", "."}},
        {"", {"", "", "", ""}},
        // clang-format on
    };
    for (const auto& [path, expected] : rows) {
        SCOPED_TRACE(path);
        const PathParts parts = splitPath(path);
        EXPECT_EQ(parts.drive, expected.drive);
        EXPECT_EQ(parts.dir, expected.dir);
        EXPECT_EQ(parts.fname, expected.fname);
        EXPECT_EQ(parts.ext, expected.ext);
        EXPECT_EQ(parts.drive + parts.dir + parts.fname + parts.ext, path);
    }
}

TEST(SplitPath, NativePathNamesTheSameFile) {
    const std::pair<std::string, std::string> rows[] = {
        {R"(/opt/v/\DATA\UBList0.dat)", "/opt/v/DATA/UBList0.dat"},
        {"/home/u/x.dwg", "/home/u/x.dwg"},
        {R"(a\\\b//c\/d)", "a/b/c/d"},  // runs collapse
        {R"(/opt/v\)", "/opt/v/"},      // a trailing separator is kept
        {R"(DATA\x.dat)", "DATA/x.dat"},
        {"", ""},
    };
    for (const auto& [path, native] : rows) EXPECT_EQ(nativePath(path), native) << path;
}

}  // namespace
}  // namespace cad::sys
