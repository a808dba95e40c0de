// A registered command: its group, global and local names, flags and the function it runs.
#pragma once

#include <functional>
#include <string>

namespace cad::app {

// Command flags, with the host's values.
inline constexpr int ACRX_CMD_MODAL = 0x00000;
inline constexpr int ACRX_CMD_TRANSPARENT = 0x00001;
inline constexpr int ACRX_CMD_USEPICKSET = 0x00002;  // the pick-first set is kept for it
inline constexpr int ACRX_CMD_REDRAW = 0x00004;
inline constexpr int ACRX_CMD_NOPERSPECTIVE = 0x00008;
inline constexpr int ACRX_CMD_NOMULTIPLE = 0x00010;
inline constexpr int ACRX_CMD_NOTILEMODE = 0x00020;
inline constexpr int ACRX_CMD_NOPAPERSPACE = 0x00040;
inline constexpr int ACRX_CMD_NOOEM = 0x00100;
inline constexpr int ACRX_CMD_UNDEFINED = 0x00200;
inline constexpr int ACRX_CMD_INPROGRESS = 0x00400;
inline constexpr int ACRX_CMD_DEFUN = 0x00800;
inline constexpr int ACRX_CMD_NONEWSTACK = 0x10000;
inline constexpr int ACRX_CMD_NOINTERNALLOCK = 0x20000;
inline constexpr int ACRX_CMD_DOCREADLOCK = 0x80000;
inline constexpr int ACRX_CMD_DOCEXCLUSIVELOCK = 0x100000;
inline constexpr int ACRX_CMD_SESSION = 0x200000;  // runs in application context

using CommandFunction = std::function<void()>;

struct Command {
    std::string groupName;
    std::string globalName;
    std::string localName;
    int flags = ACRX_CMD_MODAL;
    CommandFunction function;
};

}  // namespace cad::app
