// The value type each group code implies, for building and reading typed chains.
#include "cad/db/ResBuf.h"

#include "cad/db/dxf/GroupCode.h"

namespace cad::db {

ResBuf ResBuf::forCode(int code) {
    ResBuf rb;
    rb.code = code;
    switch (dxf::valueTypeOf(code)) {
        case dxf::ValueType::Int16:
        case dxf::ValueType::Bool:
            rb.value = std::int16_t{0};
            break;
        case dxf::ValueType::Int32:
            rb.value = std::int32_t{0};
            break;
        case dxf::ValueType::Int64:
            rb.value = std::int64_t{0};
            break;
        case dxf::ValueType::Double:
            if (dxf::isPointCode(code)) {
                rb.value = ge::Point3d{};
            } else {
                rb.value = 0.0;
            }
            break;
        case dxf::ValueType::Binary:
            rb.value = BinaryChunk{};
            break;
        case dxf::ValueType::Handle:
            // Only references name objects; an arbitrary handle (320-329) or an object's own
            // handle is text that no database translates.
            if (dxf::isHandleReference(code)) {
                rb.value = ObjectId{};
            } else {
                rb.value = std::string{};
            }
            break;
        case dxf::ValueType::String:
        case dxf::ValueType::Comment:
            rb.value = std::string{};
            break;
    }
    return rb;
}

}  // namespace cad::db
