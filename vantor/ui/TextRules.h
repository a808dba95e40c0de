// Text rules the whole module shares: when an entry counts as empty, and how numbers stored as
// text are read back.
#pragma once

#include <string_view>

namespace vantor {

// True when nothing is left after removing every space character. Only the space itself
// counts: a title made of tabs is text the user typed on purpose.
bool isBlankText(std::string_view text);

// The C library's atoi as the settings file has always been read with: leading white space,
// an optional sign, then digits up to the first other character; no digits read as 0. Values
// beyond 32 bits stop at the nearest limit instead of wrapping.
int atoiText(std::string_view text);

}  // namespace vantor
