// The command line keeps text as the window shows it: "\n" starts a new line, everything else
// accumulates on the current one; sinks see the text exactly as printed.
#include "cad/ed/CommandLine.h"

#include <gtest/gtest.h>

namespace cad::ed {
namespace {

TEST(CommandLine, PrintsSplitAtNewlines) {
    const struct {
        std::vector<std::string> prints;
        std::vector<std::string> lines;
        std::string current;
    } rows[] = {
        // clang-format off
        {{"Command: ", "VNK", "\nVantor V1.0.0.0"}, {"Command: VNK"}, "Vantor V1.0.0.0"},
        {{"\nOpened:a.dxf.\n"}, {"", "Opened:a.dxf."}, ""},  // a trailing newline: empty current
        {{"a\n\nb"}, {"a", ""}, "b"},
        {{"Sel", "ect ", "objects: "}, {}, "Select objects: "},
        {{"x", ""}, {}, "x"},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.prints));
        CommandLine commandLine;
        for (const std::string& text : row.prints) commandLine.print(text);
        EXPECT_EQ(std::vector<std::string>(commandLine.lines().begin(), commandLine.lines().end()),
                  row.lines);
        EXPECT_EQ(commandLine.currentLine(), row.current);
    }
}

struct RecordingSink : CommandLineSink {
    std::string text;
    void write(std::string_view written) override { text += written; }
};

TEST(CommandLine, PrintfFormatsAndSinksSeeRawText) {
    CommandLine commandLine;
    RecordingSink sink;
    commandLine.addSink(&sink);
    commandLine.addSink(&sink);  // added once only
    commandLine.printf("\n  위치: X(%0.4f), Y(%0.4f)", 1.5, -2.0);
    commandLine.printf("%s", std::string(3000, 'x').c_str());  // longer than any fixed buffer
    EXPECT_EQ(commandLine.lines().back(), "");
    EXPECT_EQ(commandLine.currentLine().substr(0, 31), "  위치: X(1.5000), Y(-2.0000)");
    EXPECT_EQ(commandLine.currentLine().size(), 31u + 3000u);
    EXPECT_EQ(sink.text, commandLine.text());
    commandLine.removeSink(&sink);
    commandLine.print("after");
    EXPECT_EQ(sink.text.find("after"), std::string::npos);
}

}  // namespace
}  // namespace cad::ed
