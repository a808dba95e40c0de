// Caret escapes of control characters.
#include "cad/sys/CaretText.h"

namespace cad::sys {

bool needsCaretForm(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == '^') return true;
    }
    return false;
}

std::string toCaretForm(std::string_view text) {
    if (!needsCaretForm(text)) return std::string(text);
    std::string out;
    out.reserve(text.size() + 8);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            out += '^';
            out += static_cast<char>(byte + '@');
        } else if (c == '^') {
            out += "^ ";
        } else {
            out += c;
        }
    }
    return out;
}

std::string fromCaretForm(std::string_view text) {
    std::size_t caret = text.find('^');
    if (caret == std::string_view::npos) return std::string(text);
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    for (; caret != std::string_view::npos; caret = text.find('^', pos)) {
        out.append(text, pos, caret - pos);
        const char next = caret + 1 < text.size() ? text[caret + 1] : '\0';
        if (caret + 1 < text.size() && next == ' ') {
            out += '^';
            pos = caret + 2;
        } else if (caret + 1 < text.size() && next >= '@' && next <= '_') {
            out += static_cast<char>(next - '@');
            pos = caret + 2;
        } else {
            out += '^';
            pos = caret + 1;
        }
    }
    out.append(text, pos);
    return out;
}

}  // namespace cad::sys
