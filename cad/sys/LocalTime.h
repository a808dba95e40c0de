// Times shown to users and written into file names, in the machine's local time.
#pragma once

#include <cstdint>
#include <string>

namespace cad::sys {

// `seconds` since the epoch formatted by strftime's `format`; the plain number when the time
// cannot be converted.
std::string localTimeText(std::int64_t seconds, const char* format = "%Y-%m-%d %H:%M:%S");

}  // namespace cad::sys
