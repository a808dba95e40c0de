// ATTRIB: the value of one attribute of a block reference, owned by the reference.
#pragma once

#include "cad/db/AttributeBase.h"

namespace cad::db {

class AttributeDefinition;

class Attribute : public AttributeBase {
public:
    Attribute() = default;
    Attribute(const ge::Point3d& position, std::string text, std::string tag, ObjectId style = {});

    // Takes everything from the definition (text properties, tag, flags, field length, the
    // default value as text, entity properties) and places it with the reference's block
    // transform, as a new attribute of a reference is made.
    ErrorStatus setAttributeFromBlock(const AttributeDefinition& definition,
                                      const ge::Matrix3d& blockTransform);

    std::string_view dxfName() const override { return "ATTRIB"; }
    std::string_view className() const override { return "AcDbAttribute"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Attribute>(*this); }
};

}  // namespace cad::db
