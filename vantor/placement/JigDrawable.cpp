// The drag image of the placed entities.
#include "vantor/placement/JigDrawable.h"

#include "cad/db/ObjectPtr.h"

namespace vantor {

using cad::ErrorStatus;

ErrorStatus JigDrawable::transformBy(const cad::ge::Matrix3d& xform) {
    transform_.preMultiplyBy(xform);
    return ErrorStatus::eOk;
}

ErrorStatus JigDrawable::getGeomExtents(cad::db::Extents3d& extents) const {
    std::vector<std::unique_ptr<cad::db::Entity>> pieces;
    if (ErrorStatus es = explode(pieces); es != ErrorStatus::eOk) return es;
    for (const auto& piece : pieces) {
        cad::db::Extents3d own;
        if (piece->getGeomExtents(own) == ErrorStatus::eOk) extents.addExtents(own);
    }
    return ErrorStatus::eOk;
}

ErrorStatus JigDrawable::explode(std::vector<std::unique_ptr<cad::db::Entity>>& pieces) const {
    for (cad::db::ObjectId id : entities_) {
        auto entity = cad::db::open<cad::db::Entity>(id, cad::db::OpenMode::ForRead);
        if (!entity) return entity.openStatus();
        std::unique_ptr<cad::db::Entity> piece;
        if (ErrorStatus es = entity->getTransformedCopy(transform_, piece); es != ErrorStatus::eOk)
            return es;
        piece->setVisibility(true);
        pieces.push_back(std::move(piece));
    }
    return ErrorStatus::eOk;
}

}  // namespace vantor
