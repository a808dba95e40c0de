// Attribute: the AcDbAttribute subclass after the text, and making one from a definition.
#include "cad/db/Attribute.h"

#include "cad/db/AttributeDefinition.h"
#include "cad/db/DxfFiler.h"

namespace cad::db {

Attribute::Attribute(const ge::Point3d& position, std::string text, std::string tag,
                     ObjectId style) {
    setPosition(position);
    setAlignmentPoint(position);
    setTextString(std::move(text));
    setTag(std::move(tag));
    if (!style.isNull()) setTextStyle(style);
}

ErrorStatus Attribute::setAttributeFromBlock(const AttributeDefinition& definition,
                                             const ge::Matrix3d& blockTransform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    copyAttributeFrom(definition);
    return transformBy(blockTransform);
}

void Attribute::dxfFields(DxfFiler& filer) {
    textFields(filer);
    filer.subclass("AcDbAttribute");
    attributeFields(filer);
}

}  // namespace cad::db
