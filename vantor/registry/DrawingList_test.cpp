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

TEST(DrawingList, KeepsOneEntryPerPathAsStored) {
    using Paths = std::vector<std::string>;
    const struct {
        const char* name;
        Paths added, listed;
    } rows[] = {
        {"same path twice", {"C:\\a\\b.dwg", "C:\\a\\b.dwg"}, {"C:\\a\\b.dwg"}},
        {"case differs", {"C:\\a\\b.dwg", "C:\\A\\B.DWG"}, {"C:\\a\\b.dwg", "C:\\A\\B.DWG"}},
        {"doubled then single", {"C:\\a\\\\b.dwg", "C:\\a\\b.dwg"}, {"C:\\a\\b.dwg"}},
        {"single then doubled", {"C:\\a\\b.dwg", "C:\\a\\\\b.dwg"}, {"C:\\a\\b.dwg"}},
        {"three backslashes become two", {"C:\\a\\\\\\b.dwg"}, {"C:\\a\\\\b.dwg"}},
        {"network path kept", {"\\\\server\\lib\\\\b.dwg"}, {"\\\\server\\lib\\\\b.dwg"}},
        {"korean path", {"D:\\부품\\\\밸브.dwg", "D:\\부품\\밸브.dwg"}, {"D:\\부품\\밸브.dwg"}},
    };
    for (const auto& row : rows) {
        DrawingList list;
        ScriptedDialogs dialogs;
        for (const std::string& path : row.added) list.addPath(path, dialogs);
        EXPECT_EQ(list.paths(), row.listed) << row.name;
        EXPECT_TRUE(dialogs.calls().empty()) << row.name;
    }
}

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
