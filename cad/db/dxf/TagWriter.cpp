// Formatting of tags with std::to_chars: no locale, no stream, and doubles that read back
// exactly.
#include "cad/db/dxf/TagWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cad/db/dxf/TextCodec.h"

namespace cad::db::dxf {

void TagWriter::writeCode(int code) {
    // Every tag starts here, so what the sink gets always ends with a whole tag.
    if (sink_ && text_.size() >= chunk_) {
        sink_(text_);
        text_.clear();
    }
    // Codes stand right-aligned in a field of three, as every DXF writer does it.
    if (code >= 0 && code < 10) {
        text_ += "  ";
    } else if (code >= 0 && code < 100) {
        text_ += ' ';
    }
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, code);
    text_.append(buffer, result.ptr);
    text_ += '\n';
}

void TagWriter::writeString(int code, std::string_view utf8) {
    writeRaw(code, encodeText(utf8, codePage_));
}

void TagWriter::writeRaw(int code, std::string_view value) {
    writeCode(code);
    text_ += value;
    text_ += '\n';
}

void TagWriter::writeDouble(int code, double value) {
    writeCode(code);
    char buffer[40];
    char* end;
    // Whole numbers of at most five digits (zeros, unit vectors, counts kept as reals: most
    // of the values in a drawing) are what the shortest form prints too, since its exponent
    // form is never shorter below 1e5; integer formatting is several times cheaper.
    if (value > -1e5 && value < 1e5 && value == static_cast<double>(static_cast<int>(value)) &&
        !(value == 0 && std::signbit(value))) {
        end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<int>(value)).ptr;
        *end++ = '.';
        *end++ = '0';
    } else {
        end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
        // Readers that look at the text to tell reals from integers expect a decimal point.
        if (std::none_of(buffer, end, [](char c) { return c == '.' || c == 'e'; })) {
            *end++ = '.';
            *end++ = '0';
        }
    }
    *end++ = '\n';
    text_.append(buffer, end);
}

void TagWriter::writeInt(int code, std::int64_t value) {
    writeCode(code);
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text_.append(buffer, result.ptr);
    text_ += '\n';
}

void TagWriter::writeHandle(int code, std::uint64_t handle) {
    writeCode(code);
    char buffer[24];
    char* end = std::to_chars(buffer, buffer + sizeof buffer, handle, 16).ptr;
    std::transform(buffer, end, buffer,
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    text_.append(buffer, end);
    text_ += '\n';
}

void TagWriter::writeBinary(int code, std::string_view bytes) {
    constexpr char kHex[] = "0123456789ABCDEF";
    do {
        const std::string_view chunk = bytes.substr(0, kMaxBinaryChunk);
        bytes.remove_prefix(chunk.size());
        writeCode(code);
        for (const char c : chunk) {
            const auto byte = static_cast<unsigned char>(c);
            text_ += kHex[byte >> 4];
            text_ += kHex[byte & 0xF];
        }
        text_ += '\n';
    } while (!bytes.empty());
}

void TagWriter::writePoint(int code, double x, double y, double z) {
    writePoint2d(code, x, y);
    writeDouble(code + 20, z);
}

void TagWriter::writePoint2d(int code, double x, double y) {
    writeDouble(code, x);
    writeDouble(code + 10, y);
}

}  // namespace cad::db::dxf
