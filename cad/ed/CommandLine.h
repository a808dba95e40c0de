// The command line: the text printed by commands and prompts, kept as the window shows it.
// Text accumulates on the current line and each "\n" starts a new one.
#pragma once

#include <cstdarg>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "cad/ed/CommandLineSink.h"

namespace cad::ed {

class CommandLine {
public:
    void print(std::string_view text);
    void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void vprintf(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));

    // Completed lines, oldest first (the oldest fall away beyond kHistoryLines).
    const std::deque<std::string>& lines() const { return lines_; }
    const std::string& currentLine() const { return current_; }
    // Everything kept, as the window shows it: completed lines and the current one joined by "\n".
    std::string text() const;
    void clear();

    void addSink(CommandLineSink* sink);
    void removeSink(CommandLineSink* sink);

    static constexpr std::size_t kHistoryLines = 10000;

private:
    std::deque<std::string> lines_;
    std::string current_;
    std::vector<CommandLineSink*> sinks_;
};

}  // namespace cad::ed
