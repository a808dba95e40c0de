// AttributeBase: the attribute fields shared by definitions and attributes.
#include "cad/db/AttributeBase.h"

#include "cad/db/DxfFiler.h"

namespace cad::db {

ErrorStatus AttributeBase::setTag(std::string tag) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    tag_ = std::move(tag);
    return ErrorStatus::eOk;
}

ErrorStatus AttributeBase::setFieldLength(std::int16_t length) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (length < 0) return ErrorStatus::eInvalidInput;
    fieldLength_ = length;
    return ErrorStatus::eOk;
}

ErrorStatus AttributeBase::setFlag(std::int16_t flag, bool value) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = static_cast<std::int16_t>(value ? flags_ | flag : flags_ & ~flag);
    return ErrorStatus::eOk;
}

void AttributeBase::attributeFields(DxfFiler& filer) {
    filer.string(2, tag_);
    filer.int16(70, flags_);
    filer.int16(73, fieldLength_, 0);
    verticalModeField(filer, 74);
}

void AttributeBase::copyAttributeFrom(const AttributeBase& other) {
    copyTextFrom(other);
    tag_ = other.tag_;
    flags_ = other.flags_;
    fieldLength_ = other.fieldLength_;
}

}  // namespace cad::db
