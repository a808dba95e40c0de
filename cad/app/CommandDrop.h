// A command dragged from a module's window onto the drawing: its string (UTF-8) under this
// type, run as if typed once the drop point is the drawing's last point, as a tool palette's
// item is. The host's view takes it; a module's window starts it.
#pragma once

namespace cad::app {

inline constexpr const char* kCommandMimeType = "application/x-cad-command";

}  // namespace cad::app
