// Values DWG stores in another form than DXF, for the reader and the writer alike: line
// weights by index, multiline-style flags with some bits swapped, handles and binary data as
// hexadecimal text, and the binary form of an extended record's values by group code.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cad::db::dwg {

// DXF line weights (hundredths of a millimetre; -1 by layer, -2 by block, -3 the default)
// from and to the index DWG stores.
int lineweightFromIndex(int index);
int lineweightIndex(int weight);

// Multiline-style flags, between their DWG bits and their DXF ones.
int mlineStyleFlagsFromDwg(int stored);
int mlineStyleFlagsToDwg(int flags);

// A handle as DXF writes it: upper-case hexadecimal, no leading zeros.
std::string hexHandle(std::uint64_t handle);
// Bytes as pairs of upper-case hexadecimal digits, and back (a last odd digit is dropped).
std::string hexBytes(std::string_view bytes);
std::string bytesFromHex(std::string_view hex);

// How an extended record stores the value of a group code.
enum class XrecordValue { Text, Point, Real, Short, Long, Char, Int64, Binary, Handle, Unknown };
XrecordValue xrecordValueOf(int code);

}  // namespace cad::db::dwg
