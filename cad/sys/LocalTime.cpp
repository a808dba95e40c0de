// Local time as text.
#include "cad/sys/LocalTime.h"

#include <ctime>

namespace cad::sys {

std::string localTimeText(std::int64_t seconds, const char* format) {
    const std::time_t time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    char text[64] = {};
    if (!::localtime_r(&time, &parts) || std::strftime(text, sizeof text, format, &parts) == 0)
        return std::to_string(seconds);
    return text;
}

}  // namespace cad::sys
