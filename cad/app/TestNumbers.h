// For tests of the commands: a number as tests compare it, four significant digits and no
// negative zero, so what a command made reads the same on every machine.
#pragma once

#include <cmath>
#include <cstdio>
#include <string>

namespace cad::app {

inline std::string num(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.4g", std::abs(value) < 1e-9 ? 0.0 : value);
    return buffer;
}

}  // namespace cad::app
