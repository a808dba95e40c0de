// Angles as DXF stores them (degrees) and as the engine keeps them (radians).
#pragma once

#include <cmath>
#include <numbers>

namespace cad::db {

inline double radiansFromDegrees(double degrees) {
    return degrees * (std::numbers::pi / 180.0);
}

// Rounded to 1e-10 degree, so an angle read as 30 is written back as 30 and not as
// 29.999999999999996 after the trip through radians.
inline double degreesFromRadians(double radians) {
    return std::round(radians * (180.0 / std::numbers::pi) * 1e10) / 1e10;
}

// The angle brought into [0, 2 pi).
inline double normalizedAngle(double radians) {
    constexpr double kTwoPi = 2.0 * std::numbers::pi;
    double a = std::fmod(radians, kTwoPi);
    if (a < 0.0) a += kTwoPi;
    return a >= kTwoPi ? 0.0 : a;
}

}  // namespace cad::db
