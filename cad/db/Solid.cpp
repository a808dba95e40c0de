// Solid: its DXF layout (the AcDbTrace subclass, as the host writes it) and geometry.
#include "cad/db/Solid.h"

#include <cmath>
#include <limits>

#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

Solid::Solid(const ge::Point3d& p0, const ge::Point3d& p1, const ge::Point3d& p2,
             const ge::Point3d& p3)
    : corners_{p0, p1, p2, p3} {}

ErrorStatus Solid::getPointAt(int index, ge::Point3d& point) const {
    if (index < 0 || index > 3) return ErrorStatus::eInvalidInput;
    point = corners_[static_cast<std::size_t>(index)];
    return ErrorStatus::eOk;
}

ErrorStatus Solid::setPointAt(int index, const ge::Point3d& point) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index < 0 || index > 3) return ErrorStatus::eInvalidInput;
    corners_[static_cast<std::size_t>(index)] = point;
    return ErrorStatus::eOk;
}

ErrorStatus Solid::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Solid::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

void Solid::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbTrace");
    const ge::Matrix3d toOcs = ge::Matrix3d::worldToPlane(normal_);
    std::array<ge::Point3d, 4> ocs;
    for (std::size_t i = 0; i < 4; ++i) ocs[i] = toOcs * corners_[i];
    // A triangle read without its fourth corner repeats the third, as the format says.
    if (filer.isReading()) ocs[3].x = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t i = 0; i < 4; ++i) filer.point(10 + static_cast<int>(i), ocs[i]);
    if (filer.isReading() && std::isnan(ocs[3].x)) ocs[3] = ocs[2];
    filer.real(39, thickness_, 0.0);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    if (filer.isReading()) {
        const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
        for (std::size_t i = 0; i < 4; ++i) corners_[i] = toWorld * ocs[i];
    }
}

ErrorStatus Solid::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    for (ge::Point3d& corner : corners_) corner = xform * corner;
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Solid::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    for (const ge::Point3d& corner : corners_) {
        extents.addPoint(corner);
        if (thickness_ != 0.0) extents.addPoint(corner + normal_ * thickness_);
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
