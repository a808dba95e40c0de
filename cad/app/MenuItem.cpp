// Menu macros turned into typed text.
#include "cad/app/MenuItem.h"

namespace cad::app {

std::string MenuItem::typedText() const {
    std::string out;
    for (std::size_t i = 0; i < macro.size(); ++i) {
        char c = macro[i];
        if (c == '^' && i + 1 < macro.size()) {
            char next = static_cast<char>(macro[i + 1] & ~0x20);  // ^c and ^C alike
            if (next == 'C' || next == 'M') {
                out += next == 'C' ? '\x03' : '\n';
                ++i;
                continue;
            }
        }
        out += c == ';' ? '\n' : c;
    }
    return out;
}

}  // namespace cad::app
