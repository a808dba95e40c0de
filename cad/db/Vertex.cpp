// Vertex: the part every kind of polyline vertex shares.
#include "cad/db/Vertex.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus Vertex::setPosition(const ge::Point3d& position) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    position_ = position;
    return ErrorStatus::eOk;
}

bool Vertex::isOnCurve() const {
    if ((flags_ & kSplineFrame) != 0) return false;
    return (flags_ & (kPolygonMesh | kPolyfaceMesh)) != kPolyfaceMesh;
}

void Vertex::vertexFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbVertex");
}

}  // namespace cad::db
