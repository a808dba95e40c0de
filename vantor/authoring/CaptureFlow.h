// The block list's "블록추가": a block captured from the current drawing into a library
// drawing, which is saved at once.
#pragma once

#include <string>

#include "vantor/authoring/CallerWindow.h"

namespace vantor {

class BlockCapture;

// Reads the drawing at `path` under its lock, captures into it (`currentDrawing`: the drawing
// listed is the one the user selects in) with `caller` hidden, and saves it when a block was
// made. Answers whether the file changed, so the caller rebuilds its block list.
bool captureIntoLibraryDrawing(const std::string& path, bool currentDrawing,
                               BlockCapture& capture, const CallerWindow& caller);

}  // namespace vantor
