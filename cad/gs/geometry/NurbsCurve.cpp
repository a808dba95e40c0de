// NurbsCurve: checks, de Boor evaluation, adaptive flattening and fit-point interpolation.
#include "cad/gs/geometry/NurbsCurve.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace cad::gs {

namespace {

bool finite(const ge::Point3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool finite(const ge::Vector3d& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

double distanceToSegment(const ge::Point3d& p, const ge::Point3d& a, const ge::Point3d& b) {
    const ge::Vector3d ab = b - a;
    const double length2 = ab.lengthSqrd();
    if (!(length2 > 0.0)) return p.distanceTo(a);
    const double t = std::clamp((p - a).dotProduct(ab) / length2, 0.0, 1.0);
    return p.distanceTo(a + ab * t);
}

// Refinement below this depth only chases rounding noise.
constexpr int kMaxDepth = 24;
// Each knot span starts as this many pieces, so a span whose midpoint happens to lie on its
// chord (an S shape) is still refined.
constexpr std::size_t kPiecesPerSpan = 4;

// Values of the degree-3 basis functions N[span-3..span] at u (the Cox-de Boor triangle).
std::array<double, 4> cubicBasis(const std::vector<double>& knots, std::size_t span, double u) {
    std::array<double, 4> n{1.0, 0.0, 0.0, 0.0};
    std::array<double, 4> left{}, right{};
    for (std::size_t j = 1; j <= 3; ++j) {
        left[j] = u - knots[span + 1 - j];
        right[j] = knots[span + j] - u;
        double saved = 0.0;
        for (std::size_t r = 0; r < j; ++r) {
            const double denominator = right[r + 1] + left[j - r];
            const double temp = denominator != 0.0 ? n[r] / denominator : 0.0;
            n[r] = saved + right[r + 1] * temp;
            saved = left[j - r] * temp;
        }
        n[j] = saved;
    }
    return n;
}

// The direction of the curve at fit point k, from the chords around it weighted by how much
// they turn (Akima's estimate); chords beyond the ends are extrapolated linearly. Points
// holds at least three entries.
ge::Vector3d estimatedTangent(const std::vector<ge::Point3d>& points, long k) {
    const long m = static_cast<long>(points.size());
    auto chord = [&](auto& self, long j) -> ge::Vector3d {
        if (j >= 1 && j <= m - 1)
            return points[static_cast<std::size_t>(j)] - points[static_cast<std::size_t>(j - 1)];
        if (j < 1) return self(self, j + 1) * 2.0 - self(self, j + 2);
        return self(self, j - 1) * 2.0 - self(self, j - 2);
    };
    const double before = chord(chord, k - 1).crossProduct(chord(chord, k)).length();
    const double after = chord(chord, k + 1).crossProduct(chord(chord, k + 2)).length();
    const double alpha = before + after > 0.0 ? before / (before + after) : 0.5;
    return chord(chord, k) * (1.0 - alpha) + chord(chord, k + 1) * alpha;
}

}  // namespace

std::optional<NurbsCurve> NurbsCurve::fromControlPoints(int degree,
                                                        const std::vector<ge::Point3d>& points,
                                                        const std::vector<double>& knots,
                                                        const std::vector<double>& weights,
                                                        bool periodic) {
    if (degree < 1 || degree > kMaxDegree) return std::nullopt;
    const std::size_t p = static_cast<std::size_t>(degree);
    const std::size_t n = points.size();
    if (n < p + 1) return std::nullopt;
    if (!std::all_of(points.begin(), points.end(), [](const ge::Point3d& q) { return finite(q); }))
        return std::nullopt;
    for (std::size_t i = 0; i < knots.size(); ++i) {
        if (!std::isfinite(knots[i]) || (i > 0 && knots[i] < knots[i - 1])) return std::nullopt;
    }
    // Weights of another count than the points belong to nothing; the curve is drawn without.
    const bool rational = weights.size() == n;
    if (rational && !std::all_of(weights.begin(), weights.end(),
                                 [](double w) { return std::isfinite(w) && w > 0.0; }))
        return std::nullopt;

    NurbsCurve curve;
    curve.degree_ = degree;
    auto weighted = [&](std::size_t i) {
        const double w = rational ? weights[i] : 1.0;
        return Weighted{points[i].x * w, points[i].y * w, points[i].z * w, w};
    };
    if (knots.size() == n + p + 1) {
        curve.knots_ = knots;
        for (std::size_t i = 0; i < n; ++i) curve.points_.push_back(weighted(i));
    } else if (periodic && knots.size() == n + 1) {
        // One period of knots: the first `degree` points repeat after the last, and the knots
        // continue by the period on both sides.
        const double period = knots[n] - knots[0];
        for (std::size_t i = 0; i < n + p; ++i) curve.points_.push_back(weighted(i % n));
        const long count = static_cast<long>(n);
        for (long index = -static_cast<long>(p); index <= count + static_cast<long>(p); ++index) {
            const long turns = index >= 0 ? index / count : -((-index + count - 1) / count);
            const long rest = index - turns * count;
            curve.knots_.push_back(knots[static_cast<std::size_t>(rest)] +
                                   static_cast<double>(turns) * period);
        }
    } else {
        return std::nullopt;
    }
    if (!(curve.startParam() < curve.endParam())) return std::nullopt;
    return curve;
}

std::optional<NurbsCurve> NurbsCurve::throughFitPoints(std::vector<ge::Point3d> fitPoints,
                                                       const ge::Vector3d& startTangent,
                                                       const ge::Vector3d& endTangent,
                                                       bool closed) {
    // Repeated points would give repeated knots and a singular system.
    std::vector<ge::Point3d> q;
    for (const ge::Point3d& p : fitPoints) {
        if (!finite(p)) return std::nullopt;
        const double scale = std::max({1.0, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
        if (q.empty() || q.back().distanceTo(p) > 1e-12 * scale) q.push_back(p);
    }
    if (closed && q.size() >= 3 && q.front().distanceTo(q.back()) > 0.0) q.push_back(q.front());
    if (q.size() < 2) return std::nullopt;

    const std::size_t n = q.size() - 1;  // the last fit point's index
    std::vector<double> u(n + 1, 0.0);
    for (std::size_t k = 1; k <= n; ++k) u[k] = u[k - 1] + q[k].distanceTo(q[k - 1]);
    const double total = u[n];
    if (!(total > 0.0) || !std::isfinite(total)) return std::nullopt;
    for (double& value : u) value /= total;
    u[n] = 1.0;

    ge::Vector3d start = finite(startTangent) ? startTangent : ge::Vector3d{};
    ge::Vector3d end = finite(endTangent) ? endTangent : ge::Vector3d{};
    const bool joined = closed && q.front().distanceTo(q.back()) == 0.0 && n >= 2;
    if (joined && start.isZeroLength() && end.isZeroLength()) {
        start = end = q[1] - q[n - 1];  // one direction through the join
    }
    if (start.isZeroLength()) start = n >= 2 ? estimatedTangent(q, 0) : q[1] - q[0];
    if (end.isZeroLength()) end = n >= 2 ? estimatedTangent(q, static_cast<long>(n)) : q[1] - q[0];
    if (start.isZeroLength()) start = q[1] - q[0];
    if (end.isZeroLength()) end = q[n] - q[n - 1];
    // Parameters run over [0, 1], so a derivative of the total length moves at about the
    // speed of the chords.
    start = start.normal() * total;
    end = end.normal() * total;

    std::vector<double> knots{0.0, 0.0, 0.0, 0.0};
    for (std::size_t k = 1; k < n; ++k) knots.push_back(u[k]);
    knots.insert(knots.end(), {1.0, 1.0, 1.0, 1.0});

    std::vector<ge::Point3d> points(n + 3);
    points[0] = q[0];
    points[1] = q[0] + start * (knots[4] / 3.0);
    points[n + 1] = q[n] - end * ((1.0 - knots[n + 2]) / 3.0);
    points[n + 2] = q[n];
    if (n >= 2) {
        // Fit point k (0 < k < n) sits on the knot of span k + 3, where only the basis
        // functions of points k, k + 1 and k + 2 are non-zero: a tridiagonal system for the
        // points 2..n, solved by elimination (Thomas).
        const std::size_t m = n - 1;
        std::vector<double> lower(m), diagonal(m), upper(m);
        std::vector<ge::Vector3d> rhs(m);
        for (std::size_t r = 0; r < m; ++r) {
            const std::size_t k = r + 1;
            const std::array<double, 4> basis = cubicBasis(knots, k + 3, u[k]);
            lower[r] = basis[0];
            diagonal[r] = basis[1];
            upper[r] = basis[2];
            rhs[r] = q[k].asVector();
        }
        rhs[0] -= points[1].asVector() * lower[0];
        rhs[m - 1] -= points[n + 1].asVector() * upper[m - 1];
        for (std::size_t r = 1; r < m; ++r) {
            if (diagonal[r - 1] == 0.0) return std::nullopt;
            const double factor = lower[r] / diagonal[r - 1];
            diagonal[r] -= factor * upper[r - 1];
            rhs[r] -= rhs[r - 1] * factor;
        }
        if (diagonal[m - 1] == 0.0) return std::nullopt;
        std::vector<ge::Vector3d> x(m);
        x[m - 1] = rhs[m - 1] / diagonal[m - 1];
        for (std::size_t r = m - 1; r-- > 0;) x[r] = (rhs[r] - x[r + 1] * upper[r]) / diagonal[r];
        for (std::size_t r = 0; r < m; ++r) points[r + 2] = ge::Point3d::kOrigin + x[r];
    }
    return fromControlPoints(3, points, knots, {}, false);
}

std::size_t NurbsCurve::spanOf(double u) const {
    const std::size_t p = static_cast<std::size_t>(degree_);
    const std::size_t n = points_.size();
    const auto first = knots_.begin() + static_cast<long>(p);
    const auto last = knots_.begin() + static_cast<long>(n);
    std::size_t k = static_cast<std::size_t>(std::upper_bound(first, last, u) - knots_.begin());
    k = std::clamp<std::size_t>(k == 0 ? 0 : k - 1, p, n - 1);
    // At the end of the domain the last span of non-zero length holds u.
    while (k > p && !(knots_[k] < knots_[k + 1])) --k;
    return k;
}

ge::Point3d NurbsCurve::pointAt(double u) const {
    u = std::clamp(u, startParam(), endParam());
    const std::size_t p = static_cast<std::size_t>(degree_);
    const std::size_t k = spanOf(u);
    std::array<Weighted, kMaxDegree + 1> d;
    for (std::size_t j = 0; j <= p; ++j) d[j] = points_[j + k - p];
    for (std::size_t r = 1; r <= p; ++r) {
        for (std::size_t j = p; j >= r; --j) {
            const std::size_t i = j + k - p;
            const double denominator = knots_[i + p - r + 1] - knots_[i];
            const double a = denominator > 0.0 ? (u - knots_[i]) / denominator : 0.0;
            d[j] = {(1.0 - a) * d[j - 1].x + a * d[j].x, (1.0 - a) * d[j - 1].y + a * d[j].y,
                    (1.0 - a) * d[j - 1].z + a * d[j].z, (1.0 - a) * d[j - 1].w + a * d[j].w};
        }
    }
    const Weighted& h = d[p];
    return {h.x / h.w, h.y / h.w, h.z / h.w};
}

std::vector<ge::Point3d> NurbsCurve::flatten(double tolerance, std::size_t maxPoints) const {
    maxPoints = std::max<std::size_t>(maxPoints, 2);
    const double a = startParam(), b = endParam();
    std::vector<double> breaks{a};
    for (double knot : knots_)
        if (knot > breaks.back() && knot < b) breaks.push_back(knot);
    breaks.push_back(b);
    const std::size_t spans = breaks.size() - 1;

    std::vector<ge::Point3d> out;
    if (spans * kPiecesPerSpan >= maxPoints) {
        // More spans than the budget: evenly spread samples are all there is room for.
        out.reserve(maxPoints);
        for (std::size_t i = 0; i < maxPoints; ++i)
            out.push_back(pointAt(a + (b - a) * double(i) / double(maxPoints - 1)));
        return out;
    }
    // Below this the chords measure rounding, not the curve.
    double size = 0.0;
    for (const Weighted& h : points_)
        size = std::max({size, std::abs(h.x / h.w), std::abs(h.y / h.w), std::abs(h.z / h.w)});
    tolerance = std::max(tolerance, std::max(size, 1.0) * 1e-12);

    out.push_back(pointAt(a));
    for (std::size_t s = 0; s < spans; ++s) {
        for (std::size_t piece = 0; piece < kPiecesPerSpan; ++piece) {
            const double t0 =
                breaks[s] + (breaks[s + 1] - breaks[s]) * double(piece) / kPiecesPerSpan;
            const double t1 =
                piece + 1 == kPiecesPerSpan
                    ? breaks[s + 1]
                    : breaks[s] + (breaks[s + 1] - breaks[s]) * double(piece + 1) / kPiecesPerSpan;
            const ge::Point3d from = out.back();  // out grows below
            refine(t0, from, t1, pointAt(t1), pointAt((t0 + t1) / 2.0), tolerance, 0, maxPoints,
                   out);
        }
    }
    return out;
}

void NurbsCurve::refine(double t0, const ge::Point3d& p0, double t1, const ge::Point3d& p1,
                        const ge::Point3d& pm, double tolerance, int depth, std::size_t maxPoints,
                        std::vector<ge::Point3d>& out) const {
    if (depth < kMaxDepth && out.size() < maxPoints) {
        // The middle and both quarter points must lie near the chord: one probe alone misses
        // a piece that crosses its chord at the middle.
        const double tm = (t0 + t1) / 2.0;
        const ge::Point3d q1 = pointAt((t0 + tm) / 2.0);
        const ge::Point3d q3 = pointAt((tm + t1) / 2.0);
        const double error = std::max({distanceToSegment(pm, p0, p1), distanceToSegment(q1, p0, p1),
                                       distanceToSegment(q3, p0, p1)});
        if (error > tolerance) {
            refine(t0, p0, tm, pm, q1, tolerance, depth + 1, maxPoints, out);
            refine(tm, pm, t1, p1, q3, tolerance, depth + 1, maxPoints, out);
            return;
        }
    }
    out.push_back(p1);
}

}  // namespace cad::gs
