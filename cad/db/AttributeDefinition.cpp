// AttributeDefinition: the AcDbAttributeDefinition subclass after the text (prompt first).
#include "cad/db/AttributeDefinition.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

AttributeDefinition::AttributeDefinition(const ge::Point3d& position, std::string text,
                                         std::string tag, std::string prompt, ObjectId style)
    : prompt_(std::move(prompt)) {
    setPosition(position);
    setAlignmentPoint(position);
    setTextString(std::move(text));
    setTag(std::move(tag));
    if (!style.isNull()) setTextStyle(style);
}

ErrorStatus AttributeDefinition::setPrompt(std::string prompt) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    prompt_ = std::move(prompt);
    return ErrorStatus::eOk;
}

void AttributeDefinition::dxfFields(DxfFiler& filer) {
    textFields(filer);
    filer.subclass("AcDbAttributeDefinition");
    filer.string(3, prompt_);
    attributeFields(filer);
}

}  // namespace cad::db
