// Conversions between DWG's stored forms and DXF's.
#include "cad/db/dwg/DwgValues.h"

#include <array>
#include <charconv>
#include <utility>

namespace cad::db::dwg {
namespace {

constexpr std::array<int, 24> kWeights{0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                       53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

// DWG bit, DXF bit.
constexpr std::pair<int, int> kMlineFlagBits[] = {{1, 2},    {2, 1},     {16, 16},   {32, 64},
                                                  {64, 32},  {256, 256}, {512, 1024}, {1024, 512}};

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return 0;
}

}  // namespace

int lineweightFromIndex(int index) {
    if (index >= 0 && index < 24) return kWeights[static_cast<std::size_t>(index)];
    if (index == 30) return -2;
    if (index == 31) return -3;
    return -1;
}

int lineweightIndex(int weight) {
    if (weight == -1) return 29;
    if (weight == -2) return 30;
    if (weight == -3) return 31;
    for (std::size_t i = 0; i < kWeights.size(); ++i) {
        if (kWeights[i] >= weight) return static_cast<int>(i);
    }
    return 23;
}

int mlineStyleFlagsFromDwg(int stored) {
    int flags = 0;
    for (const auto& [dwgBit, dxfBit] : kMlineFlagBits) {
        if (stored & dwgBit) flags |= dxfBit;
    }
    return flags;
}

int mlineStyleFlagsToDwg(int flags) {
    int stored = 0;
    for (const auto& [dwgBit, dxfBit] : kMlineFlagBits) {
        if (flags & dxfBit) stored |= dwgBit;
    }
    return stored;
}

std::string hexHandle(std::uint64_t handle) {
    char buffer[17];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
    for (char* c = buffer; c != result.ptr; ++c) {
        if (*c >= 'a') *c = static_cast<char>(*c - 'a' + 'A');
    }
    return std::string(buffer, result.ptr);
}

std::string hexBytes(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        out += kDigits[byte >> 4];
        out += kDigits[byte & 0xF];
    }
    return out;
}

std::string bytesFromHex(std::string_view hex) {
    std::string out;
    out.reserve(hex.size() / 2);
    for (std::size_t k = 0; k + 1 < hex.size(); k += 2) {
        out += static_cast<char>(hexDigit(hex[k]) * 16 + hexDigit(hex[k + 1]));
    }
    return out;
}

XrecordValue xrecordValueOf(int code) {
    const auto in = [code](int low, int high) { return code >= low && code <= high; };
    if (in(0, 9) || in(100, 109) || in(300, 309) || in(410, 419) || in(430, 439) ||
        in(470, 479) || in(999, 1003)) {
        return XrecordValue::Text;
    }
    if (in(10, 39) || in(110, 139) || in(210, 239) || in(1010, 1039)) return XrecordValue::Point;
    if (in(40, 59) || in(140, 149) || in(460, 469) || in(1040, 1059)) return XrecordValue::Real;
    if (in(60, 79) || in(170, 179) || in(270, 279) || in(370, 389) || in(400, 409) ||
        in(1060, 1070)) {
        return XrecordValue::Short;
    }
    if (in(90, 99) || in(420, 429) || in(440, 449) || code == 1071) return XrecordValue::Long;
    if (in(280, 299)) return XrecordValue::Char;
    if (in(160, 169) || in(450, 459)) return XrecordValue::Int64;
    if (in(310, 319) || code == 1004) return XrecordValue::Binary;
    if (in(320, 369) || in(390, 399) || in(480, 481) || code == 1005) return XrecordValue::Handle;
    return XrecordValue::Unknown;
}

}  // namespace cad::db::dwg
