// Where the command line's text goes as it is printed: standard output in the headless host,
// the command-line widget in the GUI.
#pragma once

#include <string_view>

namespace cad::ed {

class CommandLineSink {
public:
    virtual ~CommandLineSink() = default;
    // Text exactly as printed, "\n" included; the sink shows it as a command line does.
    virtual void write(std::string_view text) = 0;
};

}  // namespace cad::ed
