// The tool-bar label rule.
#include "vantor/host/ToolbarLabel.h"

namespace vantor {

std::string toolbarLabel(std::string_view entry) {
    std::string_view label;
    while (!entry.empty()) {
        std::size_t dash = entry.find('-');
        std::string_view piece = entry.substr(0, dash);
        if (!piece.empty()) label = piece;
        if (dash == std::string_view::npos) break;
        entry.remove_prefix(dash + 1);
    }
    return std::string(label);
}

}  // namespace vantor
