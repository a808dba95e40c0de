// Polyline: the AcDbPolyline layout (vertices as records starting at 10) and geometry.
#include "cad/db/Polyline.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

ErrorStatus Polyline::addVertexAt(unsigned index, const ge::Point2d& point, double bulge,
                                  double startWidth, double endWidth) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index > vertices_.size() || startWidth < 0.0 || endWidth < 0.0)
        return ErrorStatus::eInvalidInput;
    vertices_.insert(vertices_.begin() + index,
                     Vertex{{point.x, point.y, 0.0}, startWidth, endWidth, bulge});
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::removeVertexAt(unsigned index) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    vertices_.erase(vertices_.begin() + index);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::getPointAt(unsigned index, ge::Point2d& point) const {
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    point = {vertices_[index].point.x, vertices_[index].point.y};
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::getPointAt(unsigned index, ge::Point3d& point) const {
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    const ge::Point3d& p = vertices_[index].point;
    point = ge::Matrix3d::planeToWorld(normal_) * ge::Point3d(p.x, p.y, elevation_);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setPointAt(unsigned index, const ge::Point2d& point) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    vertices_[index].point = {point.x, point.y, 0.0};
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::getBulgeAt(unsigned index, double& bulge) const {
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    bulge = vertices_[index].bulge;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setBulgeAt(unsigned index, double bulge) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    vertices_[index].bulge = bulge;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::getWidthsAt(unsigned index, double& startWidth, double& endWidth) const {
    if (index >= vertices_.size()) return ErrorStatus::eInvalidInput;
    startWidth = vertices_[index].startWidth;
    endWidth = vertices_[index].endWidth;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setWidthsAt(unsigned index, double startWidth, double endWidth) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index >= vertices_.size() || startWidth < 0.0 || endWidth < 0.0)
        return ErrorStatus::eInvalidInput;
    vertices_[index].startWidth = startWidth;
    vertices_[index].endWidth = endWidth;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::getConstantWidth(double& width) const {
    if (vertices_.empty()) {
        width = constantWidth_;
        return ErrorStatus::eOk;
    }
    const double first = vertices_.front().startWidth;
    for (const Vertex& v : vertices_) {
        if (v.startWidth != first || v.endWidth != first) return ErrorStatus::eNotApplicable;
    }
    width = first;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setConstantWidth(double width) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (width < 0.0) return ErrorStatus::eInvalidInput;
    constantWidth_ = width;
    for (Vertex& v : vertices_) v.startWidth = v.endWidth = width;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setClosed(bool closed) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = static_cast<std::int16_t>(closed ? flags_ | kClosed : flags_ & ~kClosed);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setPlinegen(bool plinegen) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = static_cast<std::int16_t>(plinegen ? flags_ | kPlinegen : flags_ & ~kPlinegen);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setElevation(double elevation) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    elevation_ = elevation;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setThickness(double thickness) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    thickness_ = thickness;
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

void Polyline::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    filer.subclass("AcDbPolyline");
    auto count = static_cast<std::int32_t>(vertices_.size());
    filer.int32(90, count);
    filer.int16(70, flags_, 0);
    // One width for every segment is written once (43) instead of at every vertex.
    double constant = 0.0;
    const bool uniformWidth = getConstantWidth(constant) == ErrorStatus::eOk;
    double widthField = filer.isWriting() ? (uniformWidth ? constant : 0.0) : constantWidth_;
    filer.real(43, widthField, 0.0);
    if (filer.isReading()) constantWidth_ = widthField;
    filer.real(38, elevation_, 0.0);
    filer.real(39, thickness_, 0.0);
    const bool vertexWidths = !filer.isWriting() || !uniformWidth;
    filer.records(10, vertices_, [&](Vertex& v) {
        filer.point2d(10, v.point);
        if (vertexWidths) {
            filer.real(40, v.startWidth, 0.0);
            filer.real(41, v.endWidth, 0.0);
        }
        filer.real(42, v.bulge, 0.0);
    });
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
    if (filer.isReading() && constantWidth_ != 0.0) {
        for (Vertex& v : vertices_) {
            if (v.startWidth == 0.0 && v.endWidth == 0.0)
                v.startWidth = v.endWidth = constantWidth_;
        }
    }
}

ErrorStatus Polyline::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;
    if (!mapping.isUniform()) {
        for (const Vertex& v : vertices_) {
            if (v.bulge != 0.0) return ErrorStatus::eNotApplicable;
        }
    }
    for (Vertex& v : vertices_) {
        const ge::Point3d p = mapping.mapPoint({v.point.x, v.point.y, elevation_});
        v.point = {p.x, p.y, 0.0};
        if (mapping.isMirror()) v.bulge = -v.bulge;
        v.startWidth *= mapping.scale();
        v.endWidth *= mapping.scale();
    }
    elevation_ = mapping.mapPoint({0.0, 0.0, elevation_}).z;
    constantWidth_ *= mapping.scale();
    thickness_ *= mapping.thicknessScale();
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

BulgedPath Polyline::path() const {
    BulgedPath outline;
    outline.closed = isClosed();
    outline.vertices.reserve(vertices_.size());
    for (const Vertex& v : vertices_)
        outline.vertices.push_back({{v.point.x, v.point.y, elevation_}, v.bulge});
    return outline;
}

ErrorStatus Polyline::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal_);
    const BulgedPath outline = path();
    outline.addToExtents(extents, toWorld);
    if (thickness_ != 0.0)
        outline.addToExtents(extents, ge::Matrix3d::translation(normal_ * thickness_) * toWorld);
    return ErrorStatus::eOk;
}

ErrorStatus Polyline::explode(std::vector<std::unique_ptr<Entity>>& pieces) const {
    path().explode(*this, normal_, thickness_, pieces);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
