// Scale factors per axis, as a block reference carries them. A negative factor mirrors along
// that axis, which is how a part is placed mirrored in X or Y.
#pragma once

#include "cad/ge/Tolerance.h"

namespace cad::ge {

class Matrix3d;

class Scale3d {
public:
    constexpr Scale3d() = default;
    constexpr explicit Scale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
    constexpr Scale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}

    static const Scale3d kIdentity;

    Scale3d& set(double x, double y, double z);

    constexpr Scale3d operator*(double s) const { return {sx * s, sy * s, sz * s}; }
    constexpr Scale3d operator*(const Scale3d& s) const {
        return {sx * s.sx, sy * s.sy, sz * s.sz};
    }
    Scale3d& operator*=(double s) { return *this = *this * s; }
    friend constexpr Scale3d operator*(double s, const Scale3d& scale) { return scale * s; }

    bool isEqualTo(const Scale3d& s, const Tolerance& tol = Tolerance::global()) const;
    bool operator==(const Scale3d& s) const { return isEqualTo(s); }

    // All three factors have the same magnitude: shapes keep their proportions, so a circle
    // stays a circle. A mirror (a negative factor) does not break proportion.
    bool isProportional(const Tolerance& tol = Tolerance::global()) const;

    // Sets the factors to the lengths of m's axis columns, with the sign of a mirror where the
    // matrix shows one (negative determinant). Two mirrors make a half turn and cannot be told
    // from one, so they come back as positive factors. An axis-aligned matrix keeps the signs
    // of its diagonal; otherwise the mirror is put on X, as block references carry it.
    Scale3d& extractScale(const Matrix3d& m);
    // Extracts the factors and divides them out of m, leaving its rotation and translation.
    Scale3d& removeScale(Matrix3d& m);

    double sx = 1.0;
    double sy = 1.0;
    double sz = 1.0;
};

}  // namespace cad::ge
