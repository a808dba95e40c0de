// HATCH: an area filled solid or with a pattern, bounded by paths in the object coordinate
// system of its normal. The pattern name, fill kind, associativity, elevation and normal are
// fields; the boundary paths, style, pattern lines, seed points and gradient are kept as read
// (in order, so every tag is written back) and moved in place by transforms.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cad/db/Entity.h"

namespace cad::db {

class Hatch : public Entity {
public:
    Hatch() = default;

    const std::string& patternName() const { return patternName_; }
    ErrorStatus setPatternName(std::string name);
    bool isSolidFill() const { return solidFill_ != 0; }
    ErrorStatus setSolidFill(bool solid);
    bool associative() const { return associative_ != 0; }
    ErrorStatus setAssociative(bool associative);
    double elevation() const { return elevation_; }
    ErrorStatus setElevation(double elevation);
    const ge::Vector3d& normal() const { return normal_; }
    ErrorStatus setNormal(const ge::Vector3d& normal);

    // The tags from the path count (91) on: boundary paths with their source-boundary
    // references (330), style, pattern definition, seed points, gradient.
    const std::vector<RawTag>& definitionTags() const { return definition_; }
    ErrorStatus setDefinitionTags(std::vector<RawTag> tags);

    std::string_view dxfName() const override { return "HATCH"; }
    std::string_view className() const override { return "AcDbHatch"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Hatch>(*this); }

    // Rotations, moves, uniform scales and mirrors. Uneven scales (arcs would turn into
    // ellipses) and definitions whose layout is not understood answer eNotApplicable.
    ErrorStatus transformBy(const ge::Matrix3d& xform) override;
    // The boundary paths' exact bounds (arcs included; spline edges by their control points).
    ErrorStatus getGeomExtents(Extents3d& extents) const override;

private:
    std::string patternName_ = "SOLID";
    std::int16_t solidFill_ = 1;
    std::int16_t associative_ = 0;
    double elevation_ = 0.0;
    ge::Vector3d normal_ = ge::Vector3d::kZAxis;
    std::vector<RawTag> definition_;
};

}  // namespace cad::db
