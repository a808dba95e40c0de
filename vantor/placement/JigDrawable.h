// What the view draws while a part is dragged: the placed entities (kept invisible meanwhile)
// as they would stand under the jig's current transform. Never added to a database.
#pragma once

#include <memory>
#include <vector>

#include "cad/db/Entity.h"

namespace vantor {

class JigDrawable : public cad::db::Entity {
public:
    JigDrawable() = default;

    void setEntities(std::vector<cad::db::ObjectId> ids) { entities_ = std::move(ids); }
    const std::vector<cad::db::ObjectId>& entities() const { return entities_; }
    void setTransform(const cad::ge::Matrix3d& transform) { transform_ = transform; }
    const cad::ge::Matrix3d& transform() const { return transform_; }

    std::string_view dxfName() const override { return "VANTOR_DRAG"; }
    std::string_view className() const override { return "VantorJigDrawable"; }
    // A drawable of the drag only: nothing of it is ever written.
    void dxfFields(cad::db::DxfFiler&) override {}
    std::unique_ptr<cad::db::DbObject> clone() const override {
        return std::unique_ptr<cad::db::DbObject>(new JigDrawable(*this));
    }
    cad::ErrorStatus transformBy(const cad::ge::Matrix3d& xform) override;
    cad::ErrorStatus getGeomExtents(cad::db::Extents3d& extents) const override;
    // The placed entities transformed and shown, for the view to draw.
    cad::ErrorStatus explode(std::vector<std::unique_ptr<cad::db::Entity>>& pieces) const override;

private:
    JigDrawable(const JigDrawable&) = default;

    std::vector<cad::db::ObjectId> entities_;
    cad::ge::Matrix3d transform_;
};

}  // namespace vantor
