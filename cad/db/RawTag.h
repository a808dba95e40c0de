// A tag kept as it was read, for data the engine does not model: unknown objects and
// entities, extended data, codes a known class does not declare. Written back unchanged.
#pragma once

#include <string>

namespace cad::db {

struct RawTag {
    int code = 0;
    // The value as text: strings decoded to UTF-8, numbers as they stood in the file (so they
    // are written back byte for byte), handles in hexadecimal, binary data in hexadecimal.
    std::string value;

    friend bool operator==(const RawTag&, const RawTag&) = default;
};

}  // namespace cad::db
