// Adding paths to the registered-drawing list: the exact duplicate test, the collapsing of
// doubled backslashes, the split parts, and the bound of the list file.
#include "vantor/registry/DrawingList.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;

struct AddRow {
    const char* name;
    std::vector<std::string> added;
    std::vector<std::string> listed;
};

class DrawingListAdd : public testing::TestWithParam<AddRow> {};

TEST_P(DrawingListAdd, KeepsOneEntryPerPathAsStored) {
    DrawingList list;
    ScriptedDialogs dialogs;
    for (const std::string& path : GetParam().added) list.addPath(path, dialogs);
    EXPECT_EQ(list.paths(), GetParam().listed);
    EXPECT_TRUE(dialogs.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DrawingListAdd,
    testing::Values(
        AddRow{"same_path_twice", {"C:\\a\\b.dwg", "C:\\a\\b.dwg"}, {"C:\\a\\b.dwg"}},
        AddRow{"case_differs", {"C:\\a\\b.dwg", "C:\\A\\B.DWG"}, {"C:\\a\\b.dwg", "C:\\A\\B.DWG"}},
        AddRow{"doubled_then_single", {"C:\\a\\\\b.dwg", "C:\\a\\b.dwg"}, {"C:\\a\\b.dwg"}},
        AddRow{"single_then_doubled", {"C:\\a\\b.dwg", "C:\\a\\\\b.dwg"}, {"C:\\a\\b.dwg"}},
        AddRow{"three_backslashes_become_two", {"C:\\a\\\\\\b.dwg"}, {"C:\\a\\\\b.dwg"}},
        AddRow{"network_path_kept", {"\\\\server\\lib\\\\b.dwg"}, {"\\\\server\\lib\\\\b.dwg"}},
        AddRow{
            "korean_path", {"D:\\부품\\\\밸브.dwg", "D:\\부품\\밸브.dwg"}, {"D:\\부품\\밸브.dwg"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(DrawingList, EntryHoldsTheSplitPathAndIsActive) {
    DrawingList list;
    ScriptedDialogs dialogs;
    const RegisteredDrawing* entry = list.addPath("C:\\lib\\\\pump.v2.dwg", dialogs);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->path, "C:\\lib\\pump.v2.dwg");
    EXPECT_EQ(entry->drive, "C:");
    EXPECT_EQ(entry->dir, "\\lib\\");
    EXPECT_EQ(entry->name, "pump.v2");
    EXPECT_EQ(entry->ext, ".dwg");
    EXPECT_EQ(entry->active, 1);

    EXPECT_EQ(list.addPath("C:\\lib\\pump.v2.dwg", dialogs), nullptr);
}

TEST(DrawingList, RefusesPathsLongerThanTheListFileHolds) {
    DrawingList list;
    ScriptedDialogs dialogs;
    // 126 Hangul syllables: 252 bytes in CP949 (378 in UTF-8), so the path is 259 bytes there.
    std::string folder;
    for (int i = 0; i < 126; ++i) folder += "부";
    EXPECT_NE(list.addPath("C:\\" + folder + ".dwg", dialogs), nullptr);
    EXPECT_TRUE(dialogs.calls().empty());

    // One more byte is refused, and counted after the doubled backslash is collapsed.
    EXPECT_NE(list.addPath("D:\\\\" + folder + ".dwg", dialogs), nullptr);
    EXPECT_EQ(list.addPath("C:\\" + folder + "x.dwg", dialogs), nullptr);
    EXPECT_EQ(list.size(), 2u);
    const auto boxes = dialogs.messageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].title, "도면 등록 에러");
    EXPECT_EQ(boxes[0].icon(), cad::app::MB_ICONERROR);
    EXPECT_NE(boxes[0].text.find("259"), std::string::npos);
}

}  // namespace
}  // namespace vantor
