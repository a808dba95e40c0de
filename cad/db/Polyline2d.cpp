// Polyline2d: the AcDb2dPolyline layout and geometry through the owned vertices.
#include "cad/db/Polyline2d.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"
#include "cad/db/Vertex2d.h"

namespace cad::db {

Polyline2d::Polyline2d(const std::vector<ge::Point3d>& vertices, double elevation, bool closed,
                       const ge::Vector3d& normal)
    : flags_(closed ? kClosed : 0),
      elevation_(elevation),
      normal_(normal.isZeroLength() ? ge::Vector3d::kZAxis : normal.normal()) {
    for (const ge::Point3d& p : vertices) {
        ObjectId ignored;
        appendVertex(std::make_unique<Vertex2d>(ge::Point3d(p.x, p.y, 0.0)), ignored);
    }
}

ErrorStatus Polyline2d::appendVertex(std::unique_ptr<Vertex2d> vertex, ObjectId& id) {
    return appendSubentity(std::move(vertex), id);
}

Polyline2d::PolyType Polyline2d::polyType() const {
    if ((flags_ & kCurveFit) != 0) return PolyType::k2dFitCurvePoly;
    if ((flags_ & kSplineFit) == 0) return PolyType::k2dSimplePoly;
    return curveType_ == 5 ? PolyType::k2dQuadSplinePoly : PolyType::k2dCubicSplinePoly;
}

ErrorStatus Polyline2d::setClosed(bool closed) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = static_cast<std::int16_t>(closed ? flags_ | kClosed : flags_ & ~kClosed);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::setElevation(double elevation) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    elevation_ = elevation;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::setDefaultStartWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    startWidth_ = width;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::setDefaultEndWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    endWidth_ = width;
    return ErrorStatus::eOk;
}

void Polyline2d::dxfFields(DxfFiler& filer) {
    ComplexEntity::dxfFields(filer);
    filer.subclass("AcDb2dPolyline");
    // "Vertices follow": obsolete, but readers of R12 habits still look for it.
    std::int16_t verticesFollow = 1;
    filer.int16(66, verticesFollow);
    ge::Point3d elevation(0.0, 0.0, elevation_);
    filer.point(10, elevation);
    filer.real(39, thickness_, 0.0);
    filer.int16(70, flags_, 0);
    filer.real(40, startWidth_, 0.0);
    filer.real(41, endWidth_, 0.0);
    filer.int16(75, curveType_, 0);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    if (filer.isReading()) elevation_ = elevation.z;
}

ErrorStatus Polyline2d::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    if (!mapping.isUniform()) {
        bool hasArc = false;
        forEachSubentity(OpenMode::ForRead, [&](Entity& e) {
            if (auto* v = dynamic_cast<Vertex2d*>(&e)) hasArc = hasArc || v->bulge() != 0.0;
            return ErrorStatus::eOk;
        });
        if (hasArc) return ErrorStatus::eNotApplicable;
    }
    if (ErrorStatus es = forEachSubentity(OpenMode::ForWrite,
                                          [&](Entity& e) {
                                              if (auto* v = dynamic_cast<Vertex2d*>(&e))
                                                  v->transformInPlane(mapping, elevation_);
                                              return ErrorStatus::eOk;
                                          });
        es != ErrorStatus::eOk)
        return es;
    elevation_ = mapping.mapPoint({0.0, 0.0, elevation_}).z;
    startWidth_ *= mapping.scale();
    endWidth_ *= mapping.scale();
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::path(BulgedPath& outline) const {
    outline.closed = isClosed();
    return forEachSubentity(OpenMode::ForRead, [&](Entity& e) {
        const auto* v = dynamic_cast<const Vertex2d*>(&e);
        if (v != nullptr && v->isOnCurve())
            outline.vertices.push_back(
                {{v->position().x, v->position().y, elevation_}, v->bulge()});
        return ErrorStatus::eOk;
    });
}

ErrorStatus Polyline2d::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    BulgedPath outline;
    if (ErrorStatus es = path(outline); es != ErrorStatus::eOk) return es;
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
    outline.addToExtents(extents, toWorld);
    if (thickness_ != 0.0)
        outline.addToExtents(extents, ge::Matrix3d::translation(normal_ * thickness_) * toWorld);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline2d::explode(std::vector<std::unique_ptr<Entity>>& pieces) const {
    BulgedPath outline;
    if (ErrorStatus es = path(outline); es != ErrorStatus::eOk) return es;
    outline.explode(*this, normal_, thickness_, pieces);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
