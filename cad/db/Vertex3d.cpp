// Vertex3d: the layouts of the 3D polyline, mesh and polyface vertices and face records.
#include "cad/db/Vertex3d.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

Vertex3d::Vertex3d(std::int16_t flags) : Vertex(flags) {}

Vertex3d::Vertex3d(const ge::Point3d& position, std::int16_t flags) : Vertex(flags) {
    setPosition(position);
}

bool Vertex3d::isFaceRecord() const {
    return (flags() & (kPolygonMesh | kPolyfaceMesh)) == kPolyfaceMesh;
}

std::int16_t Vertex3d::faceIndex(int corner) const {
    return corner >= 0 && corner < 4 ? faces_[static_cast<std::size_t>(corner)] : 0;
}

ErrorStatus Vertex3d::setFaceIndex(int corner, std::int16_t index) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (corner < 0 || corner > 3) return ErrorStatus::eInvalidInput;
    faces_[static_cast<std::size_t>(corner)] = index;
    return ErrorStatus::eOk;
}

std::string_view Vertex3d::className() const {
    if (isFaceRecord()) return "AcDbFaceRecord";
    if ((flags() & kPolyfaceMesh) != 0) return "AcDbPolyFaceMeshVertex";
    if ((flags() & kPolygonMesh) != 0) return "AcDbPolygonMeshVertex";
    return "AcDb3dPolylineVertex";
}

void Vertex3d::dxfFields(DxfFiler& filer) {
    // A face record has no vertex part: its subclass follows the entity directly. The
    // factory makes the object with the flags read, so the markers match when reading too.
    if (isFaceRecord())
        Entity::dxfFields(filer);
    else
        vertexFields(filer);
    filer.subclass(className());
    filer.point(10, positionField());
    filer.int16(70, flagsField());
    for (int corner = 0; corner < 4; ++corner)
        filer.int16(71 + corner, faces_[static_cast<std::size_t>(corner)], 0);
}

ErrorStatus Vertex3d::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!isFaceRecord()) positionField() = xform * position();
    return ErrorStatus::eOk;
}

ErrorStatus Vertex3d::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    if (!isFaceRecord()) extents.addPoint(position());
    return ErrorStatus::eOk;
}

}  // namespace cad::db
