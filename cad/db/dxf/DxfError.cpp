// The wording shared by the messages of the tag reader and the structure loader.
#include "cad/db/dxf/DxfError.h"

namespace cad::db::dxf {

std::string placeText(TagPlace place, std::uint32_t where) {
    return (place == TagPlace::Line ? "line " : "offset ") + std::to_string(where);
}

DxfError dxfError(TagPlace place, std::uint32_t where, std::string_view what) {
    return {where, placeText(place, where) + ": " + std::string(what)};
}

}  // namespace cad::db::dxf
