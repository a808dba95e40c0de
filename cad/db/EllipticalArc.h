// An elliptical arc in space as center + u cos t + v sin t for t from start to end, u and v
// being conjugate semi-diameters. Affine maps keep this form exactly, so circles, arcs,
// ellipses and polyline bulges are transformed and measured through it.
#pragma once

#include <numbers>

#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

struct Extents3d;

struct EllipticalArc {
    ge::Point3d center;
    ge::Vector3d u = ge::Vector3d::kXAxis;
    ge::Vector3d v = ge::Vector3d::kYAxis;
    double start = 0.0;
    double end = 2.0 * std::numbers::pi;

    // The arc of a polyline segment from p to q whose bulge is the tangent of a quarter of
    // its included angle (positive: counter-clockwise), in the plane z = p.z. Bulge not zero.
    static EllipticalArc fromBulge(const ge::Point3d& p, const ge::Point3d& q, double bulge);

    bool isFull() const;
    ge::Point3d pointAt(double t) const;
    void transformBy(const ge::Matrix3d& m);
    // Rewrites u and v as the principal axes, u the major one and v perpendicular to it, and
    // shifts the parameters so the same points are named; start ends up in [0, 2 pi).
    void makePrincipal();
    // Reverses the sense of the parameter (v becomes -v): the same points, named by -t.
    void reverseParameter();
    // Exact bounds: the end points and, per world axis, the extreme points inside the sweep.
    void addToExtents(Extents3d& extents) const;
};

}  // namespace cad::db
