// The BOM tags and the attribute rule.
#include "vantor/placement/BomAttributes.h"

#include <memory>
#include <vector>

#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "vantor/store/PartRecord.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::OpenMode;

namespace {

// The quantity has a row of the mark but no field of the record: every marker counts one part.
constexpr std::string_view kQuantityTag = "QTY";
constexpr std::size_t kQuantityRow = 4;

}  // namespace

const std::array<std::string_view, BomAttributes::kTagCount>& BomAttributes::tags() {
    static const std::array<std::string_view, kTagCount> table = [] {
        std::array<std::string_view, kTagCount> rows{};
        rows.at(kQuantityRow) = kQuantityTag;
        for (const PartFields::Field& field : PartFields::all())
            if (field.bomRow != PartFields::kNone) rows.at(field.bomRow) = field.bomTag;
        return rows;
    }();
    return table;
}

std::string BomAttributes::textFor(std::string_view tag, const PartRecord& record) {
    if (tag == kQuantityTag) return "1";
    if (const PartFields::Field* field = PartFields::byBomTag(tag)) return record.text(field->id);
    return std::string(tag);
}

ErrorStatus BomAttributes::fill(cad::db::ObjectId referenceId, const PartRecord* record) {
    auto reference = cad::db::open<cad::db::BlockReference>(referenceId, OpenMode::ForWrite);
    if (!reference) return reference.openStatus();
    for (cad::db::ObjectId old : reference->attributeIds()) {
        auto attribute = cad::db::open<cad::db::Attribute>(old, OpenMode::ForWrite);
        if (attribute) attribute->erase();
    }
    std::vector<cad::db::ObjectId> entities;
    {
        auto block = cad::db::open<cad::db::BlockTableRecord>(reference->blockTableRecord(),
                                                              OpenMode::ForRead);
        if (!block) return block.openStatus();
        entities = block->entityIds();
    }
    const cad::ge::Matrix3d placement = reference->blockTransform();
    for (cad::db::ObjectId id : entities) {
        auto definition = cad::db::open<cad::db::AttributeDefinition>(id, OpenMode::ForRead);
        if (!definition || definition->isConstant()) continue;
        // Made as "Tag" with room for 25 characters, then given the definition's own tag and
        // length, so an attribute never stands without a tag while it is being built.
        auto attribute = std::make_unique<cad::db::Attribute>();
        attribute->setTag("Tag");
        attribute->setFieldLength(25);
        if (ErrorStatus es = attribute->setAttributeFromBlock(*definition, placement);
            es != ErrorStatus::eOk)
            return es;
        if (record != nullptr) attribute->setTextString(textFor(definition->tag(), *record));
        cad::db::ObjectId attributeId;
        if (ErrorStatus es = reference->appendAttribute(std::move(attribute), attributeId);
            es != ErrorStatus::eOk)
            return es;
    }
    return ErrorStatus::eOk;
}

}  // namespace vantor
