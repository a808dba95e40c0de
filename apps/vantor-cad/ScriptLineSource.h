// Headless input: the lines of a script or of standard input, read one at a time as the host
// asks, so an interactive pipe works as well as a file. Each line is typed text or an event
// line as ScriptInputSource reads it; "^C" also stands for Esc. Dialogs take whole lines.
#pragma once

#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "cad/ed/InputSource.h"

namespace vantorcad {

class ScriptLineSource : public cad::ed::InputSource {
public:
    explicit ScriptLineSource(std::istream& in) : in_(in) {}

    cad::ed::InputEvent next(const cad::ed::InputRequest& request) override;

    // The next line without taking it; nullptr at the end of the input.
    const std::string* peekLine();
    std::optional<std::string> takeLine();

    // "^C" or "<esc>" (any case).
    static bool isCancelToken(std::string_view line);

private:
    std::istream& in_;
    std::optional<std::string> lookahead_;
};

}  // namespace vantorcad
