// Script lines as input events: typed text, the event tags with their modifiers, malformed tags
// kept as text, and script files with either line ending.
#include "cad/ed/ScriptInputSource.h"

#include <gtest/gtest.h>

#include "cad/sys/TestTempFolder.h"

namespace cad::ed {
namespace {

using Kind = InputEvent::Kind;

TEST(ScriptInputSource, EachLineReadsAsItsEvent) {
    const struct {
        const char* line;
        Kind kind;
        ge::Point3d point = {};
        bool shift = false;
        bool ctrl = false;
        unsigned key = 0;
    } rows[] = {
        // clang-format off
        {"_UBLI", Kind::Text}, {"", Kind::Text}, {"<ESC>", Kind::Cancel},
        {"<pick> 1,2 shift", Kind::Pick, {1, 2, 0}, true},
        {"<Move> 1,2,3 CTRL", Kind::Move, {1, 2, 3}, false, true},
        {"<key> shift", Kind::Key, {}, true, false, 0x10},
        {"<key> 0x41 ctrl", Kind::Key, {}, false, true, 0x41},
        {"<key> esc", Kind::Cancel},
        // Malformed tags are typed text.
        {"<pick> here", Kind::Text}, {"<pick> @1,1", Kind::Text}, {"<move> 1,1 alt", Kind::Text},
        {"<45", Kind::Text},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        const InputEvent event = ScriptInputSource::parseLine(row.line);
        EXPECT_EQ(event.kind, row.kind);
        if (row.kind == Kind::Text) EXPECT_EQ(event.text, row.line);
        if (row.kind == Kind::Pick || row.kind == Kind::Move)
            EXPECT_EQ(event.message.point, row.point);
        EXPECT_EQ(event.message.shift, row.shift);
        EXPECT_EQ(event.message.ctrl, row.ctrl);
        EXPECT_EQ(event.message.keyCode, row.key);
    }
}

TEST(ScriptInputSource, ReadsFilesWithEitherLineEnding) {
    sys::TestTempFolder folder;
    folder.writeBytes("s.scr", "VNK\r\n\r\n<esc>\nlast");
    ScriptInputSource script;
    ASSERT_EQ(script.readFile(folder.file("s.scr")), ErrorStatus::eOk);
    InputRequest request;
    EXPECT_EQ(script.next(request).text, "VNK");
    EXPECT_EQ(script.next(request).text, "");
    EXPECT_EQ(script.next(request).kind, Kind::Cancel);
    EXPECT_EQ(script.next(request).text, "last");
    EXPECT_TRUE(script.atEnd());
    EXPECT_EQ(script.next(request).kind, Kind::End);
    EXPECT_EQ(script.readFile(folder.file("none.scr")), ErrorStatus::eFileNotFound);
}

}  // namespace
}  // namespace cad::ed
