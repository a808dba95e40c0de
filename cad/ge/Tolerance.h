// The tolerances that decide when two numbers, points or directions count as the same, and the
// one global setting every geometric comparison falls back on.
#pragma once

namespace cad::ge {

class Point3d;
class Vector3d;

struct Tolerance {
    double equalPoint = 1e-10;   // distance within which two points are one point
    double equalVector = 1e-12;  // difference within which two vectors (or factors) are one

    // The tolerance used when a caller names none. Changing it affects every later comparison;
    // all geometry runs on the user-interface thread, so no locking is needed.
    static const Tolerance& global();
    static void setGlobal(const Tolerance& tol);
};

// "Differs by more than the tolerance": a difference exactly equal to the tolerance still counts
// as the same, so a sample that moved by no more than the tolerance is not a move.
bool differs(double a, double b, double tol);
bool differs(const Point3d& a, const Point3d& b, const Tolerance& tol = Tolerance::global());
bool differs(const Vector3d& a, const Vector3d& b, const Tolerance& tol = Tolerance::global());

}  // namespace cad::ge
