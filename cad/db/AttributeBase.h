// What attribute definitions (ATTDEF) and attributes (ATTRIB) add to a text: the tag, the
// flags (invisible, constant, verify, preset) and the field length.
#pragma once

#include <cstdint>
#include <string>

#include "cad/db/Text.h"

namespace cad::db {

class AttributeBase : public Text {
public:
    const std::string& tag() const { return tag_; }
    ErrorStatus setTag(std::string tag);
    std::int16_t flags() const { return flags_; }
    bool isInvisible() const { return (flags_ & kInvisible) != 0; }
    ErrorStatus setInvisible(bool value) { return setFlag(kInvisible, value); }
    bool isConstant() const { return (flags_ & kConstant) != 0; }
    ErrorStatus setConstant(bool value) { return setFlag(kConstant, value); }
    bool isVerifiable() const { return (flags_ & kVerify) != 0; }
    ErrorStatus setVerifiable(bool value) { return setFlag(kVerify, value); }
    bool isPreset() const { return (flags_ & kPreset) != 0; }
    ErrorStatus setPreset(bool value) { return setFlag(kPreset, value); }
    std::int16_t fieldLength() const { return fieldLength_; }
    ErrorStatus setFieldLength(std::int16_t length);

    static constexpr std::int16_t kInvisible = 1;
    static constexpr std::int16_t kConstant = 2;
    static constexpr std::int16_t kVerify = 4;
    static constexpr std::int16_t kPreset = 8;

protected:
    AttributeBase() = default;
    AttributeBase(const AttributeBase&) = default;

    // Tag 2, flags 70, field length 73 and the vertical mode 74, in the order both attribute
    // subclasses write them.
    void attributeFields(DxfFiler& filer);
    void copyAttributeFrom(const AttributeBase& other);

private:
    ErrorStatus setFlag(std::int16_t flag, bool value);

    std::string tag_;
    std::int16_t flags_ = 0;
    std::int16_t fieldLength_ = 0;
};

}  // namespace cad::db
