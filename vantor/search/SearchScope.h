// Which drawings a search covers: those of the current management window, or, widened, those
// of every window, each drawing once, in window order.
#pragma once

#include <string>
#include <vector>

namespace vantor {

class ManagementWindows;

// The registered drawings of every window, read from their list files; a list that cannot be
// read adds nothing.
std::vector<std::string> drawingsOfEveryWindow(const ManagementWindows& windows);

}  // namespace vantor
