// Input read from the lines of a script, so the headless host and the tests drive every flow.
// A line is typed text ended by Enter (an empty line is Enter alone; within it a space also
// ends an answer unless the prompt takes spaces), except these event lines:
//   <esc>                        Esc
//   <pick> x,y[,z] [shift] [ctrl]  a click in the view at that drawing point
//   <move> x,y[,z] [shift] [ctrl]  the mouse moved there (a drag sample)
//   <key> code|shift|ctrl|esc|enter [shift] [ctrl]   a key pressed (code in decimal or 0x hex)
// The tags are not case-sensitive. After the last line every request gets Kind::End.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cad/ed/InputSource.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::ed {

class ScriptInputSource : public InputSource {
public:
    ScriptInputSource() = default;
    explicit ScriptInputSource(std::vector<std::string> lines) : lines_(std::move(lines)) {}

    // Reads the script's lines (UTF-8; CR LF or LF). eFileNotFound when it cannot be read.
    ErrorStatus readFile(const std::string& path);
    void append(std::string line) { lines_.push_back(std::move(line)); }

    InputEvent next(const InputRequest& request) override;

    // Parses one script line into its event; a malformed event line is typed text.
    static InputEvent parseLine(const std::string& line);

    bool atEnd() const { return position_ >= lines_.size(); }
    std::size_t linesRead() const { return position_; }

private:
    std::vector<std::string> lines_;
    std::size_t position_ = 0;
};

}  // namespace cad::ed
