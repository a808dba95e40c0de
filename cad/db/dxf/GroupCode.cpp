// The group code ranges of the DXF reference, as one lookup table.
#include "cad/db/dxf/GroupCode.h"

#include <array>

namespace cad::db::dxf {
namespace {

constexpr int kTableSize = 1072;

struct Range {
    int first;
    int last;
    ValueType type;
};

constexpr Range kRanges[] = {
    {0, 9, ValueType::String},       {10, 59, ValueType::Double},
    {60, 79, ValueType::Int16},      {90, 99, ValueType::Int32},
    {100, 102, ValueType::String},   {105, 105, ValueType::Handle},
    {110, 149, ValueType::Double},   {160, 169, ValueType::Int64},
    {170, 179, ValueType::Int16},    {210, 239, ValueType::Double},
    {270, 289, ValueType::Int16},    {290, 299, ValueType::Bool},
    {300, 309, ValueType::String},   {310, 319, ValueType::Binary},
    {320, 369, ValueType::Handle},   {370, 389, ValueType::Int16},
    {390, 399, ValueType::Handle},   {400, 409, ValueType::Int16},
    {410, 419, ValueType::String},   {420, 429, ValueType::Int32},
    {430, 439, ValueType::String},   {440, 459, ValueType::Int32},
    {460, 469, ValueType::Double},   {470, 479, ValueType::String},
    {480, 481, ValueType::Handle},   {999, 999, ValueType::Comment},
    {1000, 1003, ValueType::String}, {1004, 1004, ValueType::Binary},
    {1005, 1005, ValueType::Handle}, {1010, 1059, ValueType::Double},
    {1060, 1070, ValueType::Int16},  {1071, 1071, ValueType::Int32},
};

// The tag reader asks for every tag's type, so the ranges are flattened once.
constexpr std::array<ValueType, kTableSize> makeTable() {
    std::array<ValueType, kTableSize> table{};
    for (auto& type : table) type = ValueType::String;
    for (const Range& range : kRanges) {
        for (int code = range.first; code <= range.last; ++code) table[code] = range.type;
    }
    return table;
}

constexpr std::array<ValueType, kTableSize> kTable = makeTable();

}  // namespace

ValueType valueTypeOf(int code) {
    if (code < 0 || code >= kTableSize) return ValueType::String;
    return kTable[static_cast<std::size_t>(code)];
}

bool isPointCode(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 ||
           (code >= 1010 && code <= 1013);
}

bool isHandleReference(int code) {
    return (code >= 330 && code <= 369) || (code >= 390 && code <= 399) ||
           (code >= 480 && code <= 481) || code == 1005;
}

}  // namespace cad::db::dxf
