// Polyline3d: the layouts of 3D polylines and meshes, geometry through the vertices.
#include "cad/db/Polyline3d.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/Line.h"
#include "cad/db/Vertex3d.h"

namespace cad::db {

Polyline3d::Polyline3d(std::int16_t flags) : flags_(flags) {}

Polyline3d::Polyline3d(const std::vector<ge::Point3d>& vertices, bool closed)
    : flags_(static_cast<std::int16_t>(kPolyline3d | (closed ? kClosed : 0))) {
    for (const ge::Point3d& p : vertices) {
        ObjectId ignored;
        appendVertex(std::make_unique<Vertex3d>(p), ignored);
    }
}

ErrorStatus Polyline3d::appendVertex(std::unique_ptr<Vertex3d> vertex, ObjectId& id) {
    return appendSubentity(std::move(vertex), id);
}

ErrorStatus Polyline3d::setClosed(bool closed) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = static_cast<std::int16_t>(closed ? flags_ | kClosed : flags_ & ~kClosed);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline3d::setMeshSize(std::int16_t m, std::int16_t n) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (m < 0 || n < 0) return ErrorStatus::eInvalidInput;
    mSize_ = m;
    nSize_ = n;
    return ErrorStatus::eOk;
}

std::string_view Polyline3d::className() const {
    if (isPolyfaceMesh()) return "AcDbPolyFaceMesh";
    if (isPolygonMesh()) return "AcDbPolygonMesh";
    return "AcDb3dPolyline";
}

void Polyline3d::dxfFields(DxfFiler& filer) {
    ComplexEntity::dxfFields(filer);
    filer.subclass(className());
    std::int16_t verticesFollow = 1;
    filer.int16(66, verticesFollow);
    ge::Point3d origin;
    filer.point(10, origin);
    filer.int16(70, flags_);
    filer.int16(71, mSize_, 0);
    filer.int16(72, nSize_, 0);
    filer.int16(73, mDensity_, 0);
    filer.int16(74, nDensity_, 0);
    filer.int16(75, curveType_, 0);
}

ErrorStatus Polyline3d::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (xform.isSingular()) return ErrorStatus::eInvalidInput;
    return forEachSubentity(OpenMode::ForWrite, [&](Entity& e) { return e.transformBy(xform); });
}

ErrorStatus Polyline3d::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    return forEachSubentity(OpenMode::ForRead, [&](Entity& e) {
        Extents3d part;
        if (e.getGeomExtents(part) == ErrorStatus::eOk) extents.addExtents(part);
        return ErrorStatus::eOk;
    });
}

ErrorStatus Polyline3d::explode(std::vector<std::unique_ptr<Entity>>& pieces) const {
    if (isPolygonMesh() || isPolyfaceMesh()) return ErrorStatus::eNotApplicable;
    std::vector<ge::Point3d> points;
    if (ErrorStatus es = forEachSubentity(OpenMode::ForRead,
                                          [&](Entity& e) {
                                              const auto* v = dynamic_cast<const Vertex3d*>(&e);
                                              if (v != nullptr && v->isOnCurve())
                                                  points.push_back(v->position());
                                              return ErrorStatus::eOk;
                                          });
        es != ErrorStatus::eOk)
        return es;
    const std::size_t segments =
        points.size() < 2 ? 0 : (isClosed() ? points.size() : points.size() - 1);
    for (std::size_t i = 0; i < segments; ++i) {
        const ge::Point3d& from = points[i];
        const ge::Point3d& to = points[(i + 1) % points.size()];
        if (from.isEqualTo(to)) continue;
        auto line = std::make_unique<Line>(from, to);
        line->setPropertiesFrom(*this);
        pieces.push_back(std::move(line));
    }
    return ErrorStatus::eOk;
}

}  // namespace cad::db
