// The global tolerance and the "differs by more than" comparisons.
#include "cad/ge/Tolerance.h"

#include <cmath>

#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::ge {

namespace {
Tolerance& globalTolerance() {
    static Tolerance tol;
    return tol;
}
}  // namespace

const Tolerance& Tolerance::global() {
    return globalTolerance();
}

void Tolerance::setGlobal(const Tolerance& tol) {
    globalTolerance() = tol;
}

bool differs(double a, double b, double tol) {
    return std::fabs(a - b) > tol;
}

bool differs(const Point3d& a, const Point3d& b, const Tolerance& tol) {
    return !a.isEqualTo(b, tol);
}

bool differs(const Vector3d& a, const Vector3d& b, const Tolerance& tol) {
    return !a.isEqualTo(b, tol);
}

}  // namespace cad::ge
