// What a DXF group code says about its value: the type, whether it starts a point, and whether
// it refers to another object by handle.
#pragma once

#include <cstdint>

namespace cad::db::dxf {

enum class ValueType : std::uint8_t {
    String,
    Int16,
    Int32,
    Int64,
    Double,
    Bool,     // 0 or 1; one byte in binary files
    Binary,   // hexadecimal text in text files, a length-prefixed chunk in binary ones
    Handle,   // hexadecimal text
    Comment,  // 999
};

// The type of the value that follows `code`. Codes the format does not assign read as String,
// which keeps their text intact.
ValueType valueTypeOf(int code);

// True for the codes whose x value is followed by y at code + 10 and z at code + 20.
bool isPointCode(int code);

// True for the codes that hold a reference which cloning must remap. Arbitrary handles
// (320-329) and an object's own handle (5, 105) are not references.
bool isHandleReference(int code);

}  // namespace cad::db::dxf
