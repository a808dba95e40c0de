// One event from an input source: a typed line, a pick or a mouse move in the view, a key, Esc,
// or the end of the input.
#pragma once

#include <string>

#include "cad/ed/WindowMessage.h"

namespace cad::ed {

struct InputEvent {
    enum class Kind {
        Text,    // a typed line; Enter ends it, so "" is Enter alone
        Pick,    // a left click in the view at message.point
        Move,    // the mouse moved to message.point (a drag sample)
        Key,     // a key (message.keyCode), or another message only the filters see
        Cancel,  // Esc
        End,     // nothing more will come: every open request is cancelled
    };
    Kind kind = Kind::End;
    std::string text;
    WindowMessage message;

    static InputEvent typed(std::string line) { return {Kind::Text, std::move(line), {}}; }
    static InputEvent cancel() { return {Kind::Cancel, {}, {}}; }
    static InputEvent end() { return {Kind::End, {}, {}}; }
    static InputEvent pointer(Kind kind, const ge::Point3d& point, bool shift = false,
                              bool ctrl = false);
    static InputEvent key(unsigned keyCode, bool shift = false, bool ctrl = false);
};

}  // namespace cad::ed
