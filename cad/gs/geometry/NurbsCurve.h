// A NURBS curve evaluated by de Boor's algorithm, made only from data that passes its checks
// (so evaluating never divides by zero or reads past a list), and the cubic that CAD programs
// draw through fit points.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::gs {

class NurbsCurve {
public:
    // The largest degree accepted; higher degrees are damaged data, not curves anyone drew.
    static constexpr int kMaxDegree = 20;

    // Nothing when the data describes no curve: degree outside 1..kMaxDegree, fewer than
    // degree + 1 control points, knots that are not finite, decrease or leave an empty domain,
    // weights that are not positive, points that are not finite. Knots count control points +
    // degree + 1; a periodic curve may also give one period (control points + 1 knots), which
    // is unwrapped here. Weights are used when there is one per control point.
    static std::optional<NurbsCurve> fromControlPoints(int degree,
                                                       const std::vector<ge::Point3d>& points,
                                                       const std::vector<double>& knots,
                                                       const std::vector<double>& weights,
                                                       bool periodic);

    // The cubic through the points with chord-length parameters and knots at the fit points,
    // its end derivatives along the given tangents (estimated from the neighbouring points when
    // a tangent is zero) scaled by the total chord length. A closed curve ends where it started
    // with one tangent at the join. Nothing when fewer than two distinct points remain.
    static std::optional<NurbsCurve> throughFitPoints(std::vector<ge::Point3d> points,
                                                      const ge::Vector3d& startTangent,
                                                      const ge::Vector3d& endTangent, bool closed);

    int degree() const { return degree_; }
    double startParam() const { return knots_[static_cast<std::size_t>(degree_)]; }
    double endParam() const { return knots_[points_.size()]; }
    ge::Point3d pointAt(double u) const;

    // Points from the start to the end of the curve whose chords stay within `tolerance` of
    // it; about `maxPoints` at most, which bounds the work whatever the data asks for.
    std::vector<ge::Point3d> flatten(double tolerance, std::size_t maxPoints) const;

private:
    struct Weighted {
        double x, y, z, w;  // the point times its weight, and the weight
    };

    NurbsCurve() = default;
    std::size_t spanOf(double u) const;
    // Appends the points after p0 up to p1 (pm is the point halfway in parameter).
    void refine(double t0, const ge::Point3d& p0, double t1, const ge::Point3d& p1,
                const ge::Point3d& pm, double tolerance, int depth, std::size_t maxPoints,
                std::vector<ge::Point3d>& out) const;

    int degree_ = 1;
    std::vector<double> knots_;
    std::vector<Weighted> points_;
};

}  // namespace cad::gs
