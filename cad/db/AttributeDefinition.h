// ATTDEF: the definition of an attribute in a block: tag, prompt, default value (the text),
// flags and field length. References of the block get attributes made from it.
#pragma once

#include <string>

#include "cad/db/AttributeBase.h"

namespace cad::db {

class AttributeDefinition : public AttributeBase {
public:
    AttributeDefinition() = default;
    AttributeDefinition(const ge::Point3d& position, std::string text, std::string tag,
                        std::string prompt, ObjectId style = {});

    const std::string& prompt() const { return prompt_; }
    ErrorStatus setPrompt(std::string prompt);

    std::string_view dxfName() const override { return "ATTDEF"; }
    std::string_view className() const override { return "AcDbAttributeDefinition"; }
    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override {
        return std::make_unique<AttributeDefinition>(*this);
    }

private:
    std::string prompt_;
};

}  // namespace cad::db
