// How typed answers read: numbers, points ("x,y[,z]", "@dx,dy[,dz]" relative to the last point,
// "@" the last point itself, "dist<angle" and "@dist<angle" polar with the angle in degrees),
// and angles (typed in degrees, held in radians).
#pragma once

#include <optional>
#include <string_view>

#include "cad/ge/Point3d.h"

namespace cad::ed {

// Decimal numbers only ("12", "-0.5", "1e3"); blanks around are allowed, nothing else is.
std::optional<double> parseReal(std::string_view text);
std::optional<long> parseInteger(std::string_view text);
std::optional<ge::Point3d> parsePoint(std::string_view text, const ge::Point3d& lastPoint);

double degreesToRadians(double degrees);
// Into [0, 2π), as angle answers are given.
double normalizeAngle(double radians);
// The angle in the XY plane from `from` to `to`, in [0, 2π).
double angleBetween(const ge::Point3d& from, const ge::Point3d& to);

}  // namespace cad::ed
