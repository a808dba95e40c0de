// Tests of _splitpath semantics over Windows, network and POSIX paths, and of nativePath.
#include "cad/sys/SplitPath.h"

#include <gtest/gtest.h>

namespace cad::sys {
namespace {

struct SplitRow {
    const char* name;
    std::string path;
    PathParts parts;
};

class SplitPathRows : public testing::TestWithParam<SplitRow> {};

TEST_P(SplitPathRows, GivesRuntimeParts) {
    const SplitRow& row = GetParam();
    const PathParts parts = splitPath(row.path);
    EXPECT_EQ(parts.drive, row.parts.drive);
    EXPECT_EQ(parts.dir, row.parts.dir);
    EXPECT_EQ(parts.fname, row.parts.fname);
    EXPECT_EQ(parts.ext, row.parts.ext);
    EXPECT_EQ(parts.drive + parts.dir + parts.fname + parts.ext, row.path);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, SplitPathRows,
    testing::Values(
        SplitRow{"DrivePath", R"(C:\a\b.dwg)", {"C:", R"(\a\)", "b", ".dwg"}},
        SplitRow{"NetworkPath", R"(\\server\share\x.dwg)", {"", R"(\\server\share\)", "x", ".dwg"}},
        SplitRow{"PosixTwoDots", "/home/u/x.tar.gz", {"", "/home/u/", "x.tar", ".gz"}},
        SplitRow{
            "MixedSeparators", R"(C:/lib\부품/볼트.DWG)", {"C:", R"(/lib\부품/)", "볼트", ".DWG"}},
        SplitRow{"DoubledBackslash",
                 R"(C:\a\\DATA\UBList0.dat)",
                 {"C:", R"(\a\\DATA\)", "UBList0", ".dat"}},
        SplitRow{"HiddenFile", ".hidden", {"", "", "", ".hidden"}},
        SplitRow{"DotInFolderOnly", "dir.d/name", {"", "dir.d/", "name", ""}},
        SplitRow{"TrailingSeparator", R"(C:\a\)", {"C:", R"(\a\)", "", ""}},
        SplitRow{"DriveOnly", "C:", {"C:", "", "", ""}},
        SplitRow{"DriveRelative", "C:b.dwg", {"C:", "", "b", ".dwg"}},
        SplitRow{"TrailingDot", "name.", {"", "", "name", "."}},
        SplitRow{"Empty", "", {"", "", "", ""}}),
    [](const auto& row) { return row.param.name; });

struct NativeRow {
    const char* name;
    std::string path;
    std::string native;
};

class NativePathRows : public testing::TestWithParam<NativeRow> {};

TEST_P(NativePathRows, NamesTheSameFile) {
    EXPECT_EQ(nativePath(GetParam().path), GetParam().native);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NativePathRows,
    testing::Values(NativeRow{"ModuleDataFolder", R"(/opt/v/\DATA\UBList0.dat)",
                              "/opt/v/DATA/UBList0.dat"},
                    NativeRow{"PosixUnchanged", "/home/u/x.dwg", "/home/u/x.dwg"},
                    NativeRow{"RunsCollapse", R"(a\\\b//c\/d)", "a/b/c/d"},
                    NativeRow{"TrailingSeparatorKept", R"(/opt/v\)", "/opt/v/"},
                    NativeRow{"Relative", R"(DATA\x.dat)", "DATA/x.dat"},
                    NativeRow{"Empty", "", ""}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace cad::sys
