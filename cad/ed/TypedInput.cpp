// Parsing of typed numbers, points and angles.
#include "cad/ed/TypedInput.h"

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>

namespace cad::ed {

namespace {

std::string_view trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

}  // namespace

std::optional<double> parseReal(std::string_view text) {
    text = trim(text);
    if (text.empty()) return std::nullopt;
    // strtod also reads hex, "inf" and "nan"; a typed number is none of those.
    for (char c : text)
        if (!((c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E'))
            return std::nullopt;
    std::string copy(text);
    char* end = nullptr;
    double value = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<long> parseInteger(std::string_view text) {
    text = trim(text);
    if (text.empty()) return std::nullopt;
    std::string copy(text);
    char* end = nullptr;
    long value = std::strtol(copy.c_str(), &end, 10);
    if (end != copy.c_str() + copy.size()) return std::nullopt;
    return value;
}

std::optional<ge::Point3d> parsePoint(std::string_view text, const ge::Point3d& lastPoint) {
    text = trim(text);
    bool relative = !text.empty() && text.front() == '@';
    if (relative) text.remove_prefix(1);
    ge::Point3d origin = relative ? lastPoint : ge::Point3d::kOrigin;
    if (relative && trim(text).empty()) return lastPoint;

    if (std::size_t lt = text.find('<'); lt != std::string_view::npos) {
        auto distance = parseReal(text.substr(0, lt));
        auto angle = parseReal(text.substr(lt + 1));
        if (!distance || !angle) return std::nullopt;
        double radians = degreesToRadians(*angle);
        return ge::Point3d(origin.x + *distance * std::cos(radians),
                           origin.y + *distance * std::sin(radians), origin.z);
    }

    double coords[3] = {0.0, 0.0, 0.0};
    int count = 0;
    while (true) {
        std::size_t comma = text.find(',');
        auto value = parseReal(text.substr(0, comma));
        if (!value || count == 3) return std::nullopt;
        coords[count++] = *value;
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
    }
    if (count < 2) return std::nullopt;
    // A 2D point lies at the origin's elevation (the last point's, for relative input).
    if (count == 2) coords[2] = relative ? 0.0 : origin.z;
    return ge::Point3d(origin.x + coords[0], origin.y + coords[1], origin.z + coords[2]);
}

double degreesToRadians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

double normalizeAngle(double radians) {
    double turn = 2.0 * std::numbers::pi;
    double result = std::fmod(radians, turn);
    if (result < 0.0) result += turn;
    // fmod of a tiny negative angle can round up to a full turn.
    return result >= turn ? 0.0 : result;
}

double angleBetween(const ge::Point3d& from, const ge::Point3d& to) {
    return normalizeAngle(std::atan2(to.y - from.y, to.x - from.x));
}

}  // namespace cad::ed
