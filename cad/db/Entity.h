// The base of every entity: the properties all entities share (layer, colour, linetype,
// linetype scale, visibility, lineweight) and the geometric operations every type answers.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cad/db/DbObject.h"
#include "cad/ge/Matrix3d.h"
#include "cad/ge/Point3d.h"

namespace cad::db {

// An axis-aligned box in world coordinates.
struct Extents3d {
    ge::Point3d minPoint{1e300, 1e300, 1e300};
    ge::Point3d maxPoint{-1e300, -1e300, -1e300};
    bool isEmpty() const { return minPoint.x > maxPoint.x; }
    void addPoint(const ge::Point3d& p);
    void addExtents(const Extents3d& other);
};

// Colour indices with a meaning of their own.
inline constexpr std::int16_t kColorByBlock = 0;
inline constexpr std::int16_t kColorByLayer = 256;

class Entity : public DbObject {
public:
    ObjectId blockId() const { return ownerId(); }

    ObjectId layerId() const { return layer_; }
    ErrorStatus setLayer(ObjectId layer);
    std::int16_t colorIndex() const { return colorIndex_; }
    ErrorStatus setColorIndex(std::int16_t index);
    std::int32_t trueColor() const { return trueColor_; }  // 0xRRGGBB, or -1 for none
    ErrorStatus setTrueColor(std::int32_t rgb);
    ObjectId linetypeId() const { return linetype_; }
    ErrorStatus setLinetype(ObjectId linetype);
    double linetypeScale() const { return linetypeScale_; }
    ErrorStatus setLinetypeScale(double scale);
    bool isVisible() const { return visible_; }
    ErrorStatus setVisibility(bool visible);
    std::int16_t lineWeight() const { return lineWeight_; }  // -1 by layer, -2 by block, -3 default
    ErrorStatus setLineWeight(std::int16_t weight);
    bool isInPaperSpace() const { return paperSpace_; }

    // Takes layer, linetype and colour from the database's current settings, as new entities
    // in the host do (layer "0", ByLayer linetype and colour unless set otherwise).
    void setDatabaseDefaults(const Database& db);
    // Copies layer, colour, linetype, scale, visibility and lineweight from another entity.
    void setPropertiesFrom(const Entity& other);

    virtual ErrorStatus transformBy(const ge::Matrix3d& xform) = 0;
    virtual ErrorStatus getGeomExtents(Extents3d& extents) const = 0;
    // A transformed copy in no database. By default a clone moved with transformBy; types
    // that cannot take the transform themselves answer with another type (a circle under an
    // uneven scale becomes an ellipse).
    virtual ErrorStatus getTransformedCopy(const ge::Matrix3d& xform,
                                           std::unique_ptr<Entity>& copy) const;
    // The simpler entities this one is made of, in no database. eNotApplicable by default.
    virtual ErrorStatus explode(std::vector<std::unique_ptr<Entity>>& pieces) const;
    // A clone made to leave this object: no owner, extension dictionary or reactors, which
    // belong to the original (a copy must not claim membership of the original's group).
    std::unique_ptr<Entity> detachedClone() const;

    // The common "AcDbEntity" subclass; derived classes call it first in their dxfFields.
    void dxfFields(DxfFiler& filer) override;

protected:
    Entity() = default;
    Entity(const Entity&) = default;

private:
    ObjectId layer_;
    ObjectId linetype_;
    std::int16_t colorIndex_ = kColorByLayer;
    std::int32_t trueColor_ = -1;  // 420; -1 when the entity has none
    double linetypeScale_ = 1.0;
    bool visible_ = true;
    bool paperSpace_ = false;
    std::int16_t lineWeight_ = -1;
};

}  // namespace cad::db
