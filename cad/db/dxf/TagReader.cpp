// Splitting DXF files into tags. Text files are scanned line by line with memchr and values
// stay views into the buffer; the tag vector is sized once from the line count, so reading
// allocates nothing per tag.
#include "cad/db/dxf/TagReader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "cad/db/dxf/GroupCode.h"

namespace cad::db::dxf {
namespace {

constexpr std::string_view kBinarySentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};
constexpr std::string_view kUtf8Bom{"\xEF\xBB\xBF"};
constexpr int kMaxGroupCode = std::numeric_limits<std::int16_t>::max();
constexpr int kComment = 999;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// The offending text as the message shows it: short, and with bytes that are not printable
// ASCII written as \xNN so the message stays readable and valid UTF-8.
std::string excerpt(std::string_view text) {
    constexpr std::size_t kMaxShown = 40;
    std::string shown;
    for (std::size_t i = 0; i < text.size() && i < kMaxShown; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x20 && byte < 0x7F) {
            shown += static_cast<char>(byte);
        } else {
            constexpr char kHex[] = "0123456789ABCDEF";
            shown += "\\x";
            shown += kHex[byte >> 4];
            shown += kHex[byte & 0xF];
        }
    }
    if (text.size() > kMaxShown) shown += "...";
    return shown;
}

DxfError error(TagPlace place, std::uint32_t where, std::string_view what) {
    return {where, placeText(place, where) + ": " + std::string(what)};
}

DxfError endAfterCode(TagPlace place, std::uint32_t where, int code) {
    return error(place, where, "unexpected end of file after group code " + std::to_string(code));
}

bool isEof(const Tag& tag) {
    return tag.code == 0 && trimBlanks(tag.value) == "EOF";
}

// A group code line: digits with optional blanks around them (some writers right-align codes
// in a field of three, others pad on the right).
bool parseCode(const char* begin, const char* end, int& code) {
    while (begin < end && isBlank(*begin)) ++begin;
    while (end > begin && isBlank(end[-1])) --end;
    if (begin == end || *begin < '0' || *begin > '9') return false;
    const auto [last, ec] = std::from_chars(begin, end, code);
    return ec == std::errc() && last == end && code <= kMaxGroupCode;
}

std::optional<DxfError> readText(std::string_view bytes, std::vector<Tag>& tags) {
    if (bytes.starts_with(kUtf8Bom)) bytes.remove_prefix(kUtf8Bom.size());
    const char* p = bytes.data();
    const char* const end = p + bytes.size();
    tags.reserve(tags.size() + static_cast<std::size_t>(std::count(p, end, '\n')) / 2 + 1);

    std::uint32_t line = 1;
    while (p < end) {
        const auto* codeEnd = static_cast<const char*>(std::memchr(p, '\n', end - p));
        int code = 0;
        if (!parseCode(p, codeEnd ? codeEnd : end, code)) {
            std::string_view found(p, static_cast<std::size_t>((codeEnd ? codeEnd : end) - p));
            if (found.ends_with('\r')) found.remove_suffix(1);
            return error(TagPlace::Line, line,
                         "expected a group code, found '" + excerpt(found) + "'");
        }
        if (!codeEnd || codeEnd + 1 == end) return endAfterCode(TagPlace::Line, line, code);
        const char* value = codeEnd + 1;
        const auto* valueEnd = static_cast<const char*>(std::memchr(value, '\n', end - value));
        p = valueEnd ? valueEnd + 1 : end;
        if (!valueEnd) valueEnd = end;

        const ValueType type = valueTypeOf(code);
        if (type == ValueType::String || type == ValueType::Comment) {
            if (valueEnd > value && valueEnd[-1] == '\r') --valueEnd;
        } else {
            while (valueEnd > value && isBlank(valueEnd[-1])) --valueEnd;
        }
        const Tag tag{code, {value, static_cast<std::size_t>(valueEnd - value)}, line};
        line += 2;
        if (code == kComment) continue;
        tags.push_back(tag);
        if (isEof(tag)) break;
    }
    return {};
}

// Binary DXF: little-endian numbers, zero-terminated strings, binary chunks behind a length
// byte. R12 files give group codes one byte (255 escapes a two-byte code), later ones two.
class BinaryReader {
public:
    BinaryReader(std::string_view bytes, std::vector<Tag>& tags, TextArena& arena)
        : bytes_(bytes), tags_(tags), arena_(arena) {}

    std::optional<DxfError> read() {
        std::size_t pos = kBinarySentinel.size();
        // The first tag is 0/SECTION: with one-byte codes its text starts right after the code.
        const bool shortCodes = bytes_.size() > pos + 1 && bytes_[pos + 1] == 'S';
        while (pos < bytes_.size()) {
            const auto where = static_cast<std::uint32_t>(pos);
            int code = 0;
            if (shortCodes) {
                code = byteAt(pos++);
                if (code == 255) {
                    if (!readInt(pos, 2, code))
                        return error(TagPlace::Offset, where,
                                     "unexpected end of file in a group code");
                }
            } else if (!readInt(pos, 2, code)) {
                return error(TagPlace::Offset, where, "unexpected end of file in a group code");
            }
            std::string_view value;
            if (!readValue(code, pos, value)) return endAfterCode(TagPlace::Offset, where, code);
            if (code == kComment) continue;
            tags_.push_back({code, value, where});
            if (isEof(tags_.back())) break;
        }
        return {};
    }

private:
    int byteAt(std::size_t pos) const { return static_cast<unsigned char>(bytes_[pos]); }

    // A little-endian signed integer of `size` bytes.
    template <class Int>
    bool readInt(std::size_t& pos, std::size_t size, Int& value) const {
        if (bytes_.size() - pos < size) return false;
        std::uint64_t bits = 0;
        for (std::size_t i = size; i-- > 0;)
            bits = bits << 8 | static_cast<std::uint64_t>(byteAt(pos + i));
        const unsigned shift = 64 - static_cast<unsigned>(size) * 8;
        value = static_cast<Int>(static_cast<std::int64_t>(bits << shift) >> shift);
        pos += size;
        return true;
    }

    template <class Number>
    std::string_view asText(Number number) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
        return arena_.store({buffer, static_cast<std::size_t>(result.ptr - buffer)});
    }

    bool readValue(int code, std::size_t& pos, std::string_view& value) {
        switch (valueTypeOf(code)) {
            case ValueType::String:
            case ValueType::Handle:
            case ValueType::Comment: {
                const auto* begin = bytes_.data() + pos;
                const auto* nul =
                    static_cast<const char*>(std::memchr(begin, '\0', bytes_.size() - pos));
                if (!nul) return false;
                value = {begin, static_cast<std::size_t>(nul - begin)};
                pos += value.size() + 1;
                return true;
            }
            case ValueType::Int16:
                return readNumber<std::int16_t>(pos, 2, value);
            case ValueType::Int32:
                return readNumber<std::int32_t>(pos, 4, value);
            case ValueType::Int64:
                return readNumber<std::int64_t>(pos, 8, value);
            case ValueType::Bool:
                if (pos >= bytes_.size()) return false;
                value = asText(byteAt(pos++));
                return true;
            case ValueType::Double: {
                std::uint64_t bits = 0;
                if (!readInt(pos, 8, bits)) return false;
                double number = 0;
                std::memcpy(&number, &bits, sizeof number);
                value = asText(number);
                return true;
            }
            case ValueType::Binary: {
                if (pos >= bytes_.size()) return false;
                const auto size = static_cast<std::size_t>(byteAt(pos++));
                if (bytes_.size() - pos < size) return false;
                constexpr char kHex[] = "0123456789ABCDEF";
                char* text = arena_.allocate(2 * size);
                for (std::size_t i = 0; i < size; ++i) {
                    text[2 * i] = kHex[byteAt(pos + i) >> 4];
                    text[2 * i + 1] = kHex[byteAt(pos + i) & 0xF];
                }
                value = {text, 2 * size};
                pos += size;
                return true;
            }
        }
        return false;
    }

    template <class Int>
    bool readNumber(std::size_t& pos, std::size_t size, std::string_view& value) {
        Int number = 0;
        if (!readInt(pos, size, number)) return false;
        value = asText(number);
        return true;
    }

    std::string_view bytes_;
    std::vector<Tag>& tags_;
    TextArena& arena_;
};

}  // namespace

bool TagReader::isBinaryDxf(std::string_view bytes) {
    return bytes.starts_with(kBinarySentinel);
}

bool TagReader::isDwg(std::string_view bytes) {
    return bytes.starts_with("AC10");
}

std::optional<DxfError> TagReader::read(std::string_view bytes, std::vector<Tag>& tags,
                                        TextArena& arena) {
    // Line numbers and offsets are 32 bits; no drawing comes near that size.
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        return DxfError{0, "the file is larger than 4 GiB and cannot be read"};
    }
    if (bytes.empty()) return error(TagPlace::Line, 1, "the file is empty; expected a group code");
    if (isDwg(bytes)) {
        return DxfError{0, "DWG files cannot be read; save the drawing as DXF"};
    }
    if (isBinaryDxf(bytes)) return BinaryReader(bytes, tags, arena).read();
    return readText(bytes, tags);
}

}  // namespace cad::db::dxf
