// Reading headless input line by line.
#include "ScriptLineSource.h"

#include <strings.h>

#include "cad/ed/ScriptInputSource.h"

namespace vantorcad {

bool ScriptLineSource::isCancelToken(std::string_view line) {
    return line == "^C" || line == "^c" ||
           (line.size() == 5 && ::strncasecmp(line.data(), "<esc>", 5) == 0);
}

const std::string* ScriptLineSource::peekLine() {
    if (!lookahead_) {
        std::string line;
        if (!std::getline(in_, line)) return nullptr;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lookahead_ = std::move(line);
    }
    return &*lookahead_;
}

std::optional<std::string> ScriptLineSource::takeLine() {
    if (peekLine() == nullptr) return std::nullopt;
    std::optional<std::string> line = std::move(lookahead_);
    lookahead_.reset();
    return line;
}

cad::ed::InputEvent ScriptLineSource::next(const cad::ed::InputRequest&) {
    std::optional<std::string> line = takeLine();
    if (!line) return cad::ed::InputEvent::end();
    if (isCancelToken(*line)) return cad::ed::InputEvent::cancel();
    return cad::ed::ScriptInputSource::parseLine(*line);
}

}  // namespace vantorcad
