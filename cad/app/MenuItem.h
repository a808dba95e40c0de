// One entry of a pull-down menu: a command item with its label and macro, a separator, or a
// cascade holding further items.
#pragma once

#include <string>
#include <vector>

namespace cad::app {

struct MenuItem {
    enum class Kind { Command, Separator, Submenu };
    Kind kind = Kind::Command;
    std::string nameTag;          // "ID_VNK": what help strings and tool bars refer to
    std::string label;            // as written, "&" mnemonics included
    std::string macro;            // "^C^C_VNK "
    std::string helpString;       // the status-bar text from ***HELPSTRINGS
    bool enabled = true;          // "[~label]" is shown greyed
    std::vector<MenuItem> items;  // of a Submenu

    // The macro as typed text for the command line: "^C" is Esc (0x03), "^M" and ";" are
    // Enter, a space stays a space (which ends an answer as Enter does).
    std::string typedText() const;
};

}  // namespace cad::app
