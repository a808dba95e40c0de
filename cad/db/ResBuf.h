// One typed value of an extended record's chain: a group code and a value whose type the
// code implies (strings, 16/32/64-bit integers, doubles, 3D points, binary chunks, handles).
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::db {

struct BinaryChunk {
    std::string bytes;
    friend bool operator==(const BinaryChunk&, const BinaryChunk&) = default;
};

struct ResBuf {
    using Value = std::variant<std::string, std::int16_t, std::int32_t, std::int64_t, double,
                               ge::Point3d, BinaryChunk, ObjectId>;
    int code = 0;
    Value value;

    const std::string* text() const { return std::get_if<std::string>(&value); }
    const ge::Point3d* point() const { return std::get_if<ge::Point3d>(&value); }
    // The value that the code implies when it is default-constructed for that code.
    static ResBuf forCode(int code);
};

using ResBufChain = std::vector<ResBuf>;

}  // namespace cad::db
