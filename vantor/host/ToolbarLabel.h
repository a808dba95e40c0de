// The short text of a library-window tool-bar button, taken from its string-table entry.
#pragma once

#include <string>
#include <string_view>

namespace vantor {

// Each entry holds the status-bar prompt first and the button's short label last, joined by
// "-": the label is the last non-empty piece ("창이 항상 보이도록 설정/해제 합니다-항상 위"
// gives "항상 위"). An entry without "-" is its own label; an empty entry gives no text.
std::string toolbarLabel(std::string_view entry);

}  // namespace vantor
