// Script lines turned into input events.
#include "cad/ed/ScriptInputSource.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "cad/ed/TypedInput.h"
#include "cad/sys/AsciiCase.h"

namespace cad::ed {

namespace {

std::optional<unsigned> keyCode(const std::string& word) {
    if (word == "shift") return VK_SHIFT;
    if (word == "ctrl") return VK_CONTROL;
    if (word == "esc") return VK_ESCAPE;
    if (word == "enter") return VK_RETURN;
    char* end = nullptr;
    unsigned long code = std::strtoul(word.c_str(), &end, 0);
    if (word.empty() || *end != '\0' || code > 0xFF) return std::nullopt;
    return static_cast<unsigned>(code);
}

}  // namespace

ErrorStatus ScriptInputSource::readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return ErrorStatus::eFileNotFound;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines_.push_back(line);
    }
    return ErrorStatus::eOk;
}

InputEvent ScriptInputSource::next(const InputRequest&) {
    if (atEnd()) return InputEvent::end();
    return parseLine(lines_[position_++]);
}

InputEvent ScriptInputSource::parseLine(const std::string& line) {
    if (line.empty() || line.front() != '<') return InputEvent::typed(line);
    std::istringstream words(line);
    std::string tag;
    words >> tag;
    tag = sys::asciiLower(tag);
    if (tag == "<esc>") return InputEvent::cancel();
    if (tag != "<pick>" && tag != "<move>" && tag != "<key>") return InputEvent::typed(line);

    std::string argument;
    words >> argument;
    bool shift = false;
    bool ctrl = false;
    for (std::string word; words >> word;) {
        word = sys::asciiLower(word);
        if (word == "shift")
            shift = true;
        else if (word == "ctrl")
            ctrl = true;
        else
            return InputEvent::typed(line);
    }
    if (tag == "<key>") {
        auto code = keyCode(sys::asciiLower(argument));
        if (!code) return InputEvent::typed(line);
        if (*code == VK_ESCAPE) return InputEvent::cancel();
        return InputEvent::key(*code, shift, ctrl);
    }
    auto point = parsePoint(argument, ge::Point3d::kOrigin);
    if (!point || argument.front() == '@') return InputEvent::typed(line);
    return InputEvent::pointer(tag == "<pick>" ? InputEvent::Kind::Pick : InputEvent::Kind::Move,
                               *point, shift, ctrl);
}

}  // namespace cad::ed
