// Construction, composition and inversion of affine transforms.
#include "cad/ge/Matrix3d.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "cad/ge/Scale3d.h"

namespace cad::ge {

namespace {
Vector3d column(const Matrix3d& m, int c) {
    return {m(0, c), m(1, c), m(2, c)};
}

// A transform whose linear part is diagonal, placed so that center stays where it is.
Matrix3d scalingAbout(double sx, double sy, double sz, const Point3d& center) {
    Matrix3d m;
    m(0, 0) = sx;
    m(1, 1) = sy;
    m(2, 2) = sz;
    m(0, 3) = center.x * (1.0 - sx);
    m(1, 3) = center.y * (1.0 - sy);
    m(2, 3) = center.z * (1.0 - sz);
    return m;
}
}  // namespace

const Matrix3d Matrix3d::kIdentity{};

Matrix3d& Matrix3d::setToIdentity() {
    return *this = Matrix3d();
}

Matrix3d Matrix3d::translation(const Vector3d& offset) {
    Matrix3d m;
    m(0, 3) = offset.x;
    m(1, 3) = offset.y;
    m(2, 3) = offset.z;
    return m;
}

Matrix3d Matrix3d::rotation(double angle, const Vector3d& axis, const Point3d& center) {
    const Vector3d k = axis.normal();
    if (k.isZeroLength()) return Matrix3d();
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double t = 1.0 - c;
    Matrix3d m;
    m(0, 0) = c + t * k.x * k.x;
    m(0, 1) = t * k.x * k.y - s * k.z;
    m(0, 2) = t * k.x * k.z + s * k.y;
    m(1, 0) = t * k.y * k.x + s * k.z;
    m(1, 1) = c + t * k.y * k.y;
    m(1, 2) = t * k.y * k.z - s * k.x;
    m(2, 0) = t * k.z * k.x - s * k.y;
    m(2, 1) = t * k.z * k.y + s * k.x;
    m(2, 2) = c + t * k.z * k.z;
    // The center must stay fixed: t = c - R c.
    const Vector3d shift = center.asVector() - m * center.asVector();
    m(0, 3) = shift.x;
    m(1, 3) = shift.y;
    m(2, 3) = shift.z;
    return m;
}

Matrix3d Matrix3d::scaling(double factor, const Point3d& center) {
    return scalingAbout(factor, factor, factor, center);
}

Matrix3d Matrix3d::scaling(const Scale3d& factors, const Point3d& center) {
    return scalingAbout(factors.sx, factors.sy, factors.sz, center);
}

Matrix3d Matrix3d::alignCoordSys(const Point3d& fromOrigin, const Vector3d& fromXAxis,
                                 const Vector3d& fromYAxis, const Vector3d& fromZAxis,
                                 const Point3d& toOrigin, const Vector3d& toXAxis,
                                 const Vector3d& toYAxis, const Vector3d& toZAxis) {
    Matrix3d from;
    from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
    Matrix3d to;
    to.setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
    return to * from.inverse();
}

Matrix3d Matrix3d::planeToWorld(const Vector3d& normal) {
    const Vector3d n = normal.isZeroLength() ? Vector3d::kZAxis : normal.normal();
    const Vector3d xAxis = n.perpVector();
    return Matrix3d().setCoordSystem(Point3d::kOrigin, xAxis, n.crossProduct(xAxis), n);
}

Matrix3d Matrix3d::worldToPlane(const Vector3d& normal) {
    // The plane's axes are orthonormal, so the inverse is the transpose.
    return planeToWorld(normal).transpose();
}

Matrix3d& Matrix3d::setCoordSystem(const Point3d& origin, const Vector3d& xAxis,
                                   const Vector3d& yAxis, const Vector3d& zAxis) {
    setToIdentity();
    const Vector3d axes[3] = {xAxis, yAxis, zAxis};
    for (int c = 0; c < 3; ++c) {
        entry[0][c] = axes[c].x;
        entry[1][c] = axes[c].y;
        entry[2][c] = axes[c].z;
    }
    entry[0][3] = origin.x;
    entry[1][3] = origin.y;
    entry[2][3] = origin.z;
    return *this;
}

void Matrix3d::getCoordSystem(Point3d& origin, Vector3d& xAxis, Vector3d& yAxis,
                              Vector3d& zAxis) const {
    origin = Point3d::kOrigin + translation();
    xAxis = column(*this, 0);
    yAxis = column(*this, 1);
    zAxis = column(*this, 2);
}

Vector3d Matrix3d::translation() const {
    return column(*this, 3);
}

Matrix3d Matrix3d::operator*(const Matrix3d& m) const {
    Matrix3d product;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += entry[r][k] * m.entry[k][c];
            product.entry[r][c] = sum;
        }
    }
    return product;
}

Matrix3d& Matrix3d::preMultiplyBy(const Matrix3d& left) {
    return *this = left * *this;
}

Matrix3d& Matrix3d::postMultiplyBy(const Matrix3d& right) {
    return *this = *this * right;
}

double Matrix3d::det() const {
    // Gaussian elimination with partial pivoting on a copy; the product of the pivots, with a
    // sign change per row swap, is the determinant.
    double a[4][4];
    std::copy(&entry[0][0], &entry[0][0] + 16, &a[0][0]);
    double result = 1.0;
    for (int k = 0; k < 4; ++k) {
        int pivot = k;
        for (int r = k + 1; r < 4; ++r) {
            if (std::fabs(a[r][k]) > std::fabs(a[pivot][k])) pivot = r;
        }
        if (a[pivot][k] == 0.0) return 0.0;
        if (pivot != k) {
            std::swap(a[pivot], a[k]);
            result = -result;
        }
        result *= a[k][k];
        for (int r = k + 1; r < 4; ++r) {
            const double f = a[r][k] / a[k][k];
            for (int c = k; c < 4; ++c) a[r][c] -= f * a[k][c];
        }
    }
    return result;
}

bool Matrix3d::isSingular(const Tolerance& tol) const {
    // Hadamard: |det| never exceeds the product of the column lengths, and reaches it only for
    // perpendicular columns, so the ratio measures how flat the axes are whatever their scale.
    const double bound =
        column(*this, 0).length() * column(*this, 1).length() * column(*this, 2).length();
    return std::fabs(det()) <= tol.equalVector * bound;
}

bool Matrix3d::inverse(Matrix3d& result, const Tolerance& tol) const {
    if (isSingular(tol)) return false;
    // Gauss-Jordan on [this | identity] with partial pivoting.
    double a[4][4];
    std::copy(&entry[0][0], &entry[0][0] + 16, &a[0][0]);
    Matrix3d inv;
    for (int k = 0; k < 4; ++k) {
        int pivot = k;
        for (int r = k + 1; r < 4; ++r) {
            if (std::fabs(a[r][k]) > std::fabs(a[pivot][k])) pivot = r;
        }
        std::swap(a[pivot], a[k]);
        std::swap(inv.entry[pivot], inv.entry[k]);
        const double p = a[k][k];
        for (int c = 0; c < 4; ++c) {
            a[k][c] /= p;
            inv.entry[k][c] /= p;
        }
        for (int r = 0; r < 4; ++r) {
            if (r == k || a[r][k] == 0.0) continue;
            const double f = a[r][k];
            for (int c = 0; c < 4; ++c) {
                a[r][c] -= f * a[k][c];
                inv.entry[r][c] -= f * inv.entry[k][c];
            }
        }
    }
    result = inv;
    return true;
}

Matrix3d Matrix3d::inverse() const {
    Matrix3d result;
    inverse(result);
    return result;
}

Matrix3d& Matrix3d::invert() {
    return *this = inverse();
}

Matrix3d Matrix3d::transpose() const {
    Matrix3d t;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) t.entry[r][c] = entry[c][r];
    }
    return t;
}

double Matrix3d::scale() const {
    return std::max(
        {column(*this, 0).length(), column(*this, 1).length(), column(*this, 2).length()});
}

bool Matrix3d::isUniScaledOrtho(const Tolerance& tol) const {
    const double s = scale();
    if (s == 0.0) return false;
    const Vector3d x = column(*this, 0) / s;
    const Vector3d y = column(*this, 1) / s;
    const Vector3d z = column(*this, 2) / s;
    const auto unit = [&](const Vector3d& v) {
        return std::fabs(v.length() - 1.0) <= tol.equalVector;
    };
    const auto perpendicular = [&](const Vector3d& u, const Vector3d& v) {
        return std::fabs(u.dotProduct(v)) <= tol.equalVector;
    };
    return unit(x) && unit(y) && unit(z) && perpendicular(x, y) && perpendicular(y, z) &&
           perpendicular(z, x);
}

bool Matrix3d::isEqualTo(const Matrix3d& m, const Tolerance& tol) const {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            const double limit = (c == 3 && r < 3) ? tol.equalPoint : tol.equalVector;
            if (std::fabs(entry[r][c] - m.entry[r][c]) > limit) return false;
        }
    }
    return true;
}

Point3d operator*(const Matrix3d& m, const Point3d& p) {
    return Point3d(p).transformBy(m);
}

Vector3d operator*(const Matrix3d& m, const Vector3d& v) {
    return Vector3d(v).transformBy(m);
}

}  // namespace cad::ge
