// Why a DXF file could not be read into tags or sections: the place (a line of a text file, a
// byte offset of a binary one) and a sentence saying what was expected there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cad::db::dxf {

// How a file's tags are placed: text files count lines, binary files count bytes.
enum class TagPlace { Line, Offset };

// "line 12" or "offset 12".
std::string placeText(TagPlace place, std::uint32_t where);

struct DxfError {
    std::uint32_t line = 0;
    std::string message;  // complete, with the place: "line 12: expected a group code, found 'x'"

    friend bool operator==(const DxfError&, const DxfError&) = default;
};

// The error at `where` with the place put before `what`.
DxfError dxfError(TagPlace place, std::uint32_t where, std::string_view what);

}  // namespace cad::db::dxf
