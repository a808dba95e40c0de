// The command line's text model.
#include "cad/ed/CommandLine.h"

#include <algorithm>
#include <cstdio>

namespace cad::ed {

void CommandLine::print(std::string_view text) {
    if (text.empty()) return;
    std::size_t start = 0;
    for (std::size_t nl = text.find('\n'); nl != std::string_view::npos;
         nl = text.find('\n', start)) {
        current_.append(text.substr(start, nl - start));
        lines_.push_back(std::move(current_));
        current_.clear();
        if (lines_.size() > kHistoryLines) lines_.pop_front();
        start = nl + 1;
    }
    current_.append(text.substr(start));
    // A sink may remove itself while being told; walk a copy.
    auto sinks = sinks_;
    for (CommandLineSink* sink : sinks) sink->write(text);
}

void CommandLine::printf(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    vprintf(format, args);
    va_end(args);
}

void CommandLine::vprintf(const char* format, std::va_list args) {
    std::va_list copy;
    va_copy(copy, args);
    int size = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (size <= 0) return;
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, args);
    text.resize(static_cast<std::size_t>(size));
    print(text);
}

std::string CommandLine::text() const {
    std::string out;
    for (const std::string& line : lines_) {
        out += line;
        out += '\n';
    }
    return out + current_;
}

void CommandLine::clear() {
    lines_.clear();
    current_.clear();
}

void CommandLine::addSink(CommandLineSink* sink) {
    if (std::find(sinks_.begin(), sinks_.end(), sink) == sinks_.end()) sinks_.push_back(sink);
}

void CommandLine::removeSink(CommandLineSink* sink) {
    sinks_.erase(std::remove(sinks_.begin(), sinks_.end(), sink), sinks_.end());
}

}  // namespace cad::ed
