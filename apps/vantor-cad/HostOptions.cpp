// Parsing the host program's options.
#include "HostOptions.h"

namespace vantorcad {

std::optional<HostOptions> HostOptions::parse(const std::vector<std::string>& arguments,
                                              std::string& error) {
    HostOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--headless") {
            options.headless = true;
            continue;
        }
        if (option == "--help" || option == "-h") {
            options.help = true;
            continue;
        }
        if (option != "--script" && option != "--load" && option != "--open" && option != "--sdi") {
            error = "unknown option \"" + option + "\"";
            return std::nullopt;
        }
        if (i + 1 == arguments.size()) {
            error = option + " needs a value";
            return std::nullopt;
        }
        const std::string& value = arguments[++i];
        if (option == "--script") {
            options.script = value;
            options.headless = true;
        } else if (option == "--load") {
            options.modules.push_back(value);
        } else if (option == "--open") {
            options.drawings.push_back(value);
        } else if (value == "0" || value == "1") {
            options.sdi = value == "1" ? 1 : 0;
        } else {
            error = "--sdi takes 0 or 1, not \"" + value + "\"";
            return std::nullopt;
        }
    }
    return options;
}

std::string HostOptions::usage() {
    return R"(Usage: vantor-cad [options]
The CAD host: drawings, a command line, partial menus, and modules loaded through their
exported entry point.

Options:
  --headless        run offscreen: the command line reads a script or standard input and is
                    printed to standard output
  --script FILE     read the command-line input from FILE (implies --headless)
  --load MODULE     load a module at start (repeatable)
  --open DRAWING    open a drawing at start (repeatable); without one a new drawing is made
  --sdi 0|1         1: single-document mode, one drawing open at a time
  --help            show this help

Headless input, one line each: a command or an answer as typed (points "x,y[,z]", numbers,
angles, keywords), an empty line for Enter, "^C" or "<esc>" for Esc. A dialog takes the next
line as its answer: "OK", "Cancel", "Yes" or "No" for a question, a path (several joined by
";"), a folder or a text; "Cancel", "^C" or "<esc>" cancels it. A message box with only OK
needs no line but may take an "OK". Message boxes print as "[title] text".
Host commands besides the drawing commands: SAVE, LOADMODULE path, UNLOADMODULE name.

Exit code: 0 after QUIT or the end of the input; 1 when a module or drawing given at start,
or a module loaded by a headless script, fails to load; 2 for a usage error.
)";
}

}  // namespace vantorcad
