// Splitting DXF files into tags: the cursor's rare paths (errors, odd code lines, long
// values), whole-file reading and binary files. Text values stay views into the buffer; the
// tag vector is sized once from the line count, so reading allocates nothing per tag.
#include "cad/db/dxf/TagReader.h"

#include <algorithm>
#include <bit>
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

DxfError endAfterCode(TagPlace place, std::uint32_t where, int code) {
    return dxfError(place, where,
                    "unexpected end of file after group code " + std::to_string(code));
}

bool isEof(const Tag& tag) {
    return tag.code == 0 && trimBlanks(tag.value) == "EOF";
}

// A group code line: digits with optional blanks around them (some writers right-align codes
// in a field of three, others pad on the right). Scanned by hand rather than with memchr and
// from_chars: the line is a few bytes long and this loop runs for every tag. Answers where
// the line ends (its LF or the end of the file), or nullptr when it is no group code.
const char* parseCodeLine(const char* p, const char* end, int& code) {
    constexpr int kMaxDigits = 5;
    while (p < end && (*p == ' ' || *p == '\t')) ++p;
    const char* digits = p;
    code = 0;
    while (p < end && p - digits < kMaxDigits && *p >= '0' && *p <= '9')
        code = code * 10 + (*p++ - '0');
    if (p == digits || code > kMaxGroupCode) return nullptr;
    while (p < end && isBlank(*p)) ++p;
    return p == end || *p == '\n' ? p : nullptr;
}

// Line feeds in `text`, eight bytes at a time: sizing the tag vector once from this count is
// cheaper than letting it grow, but a byte-by-byte count would cost a quarter of the reading.
std::size_t countLineFeeds(std::string_view text) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7F;
    std::size_t count = 0;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + i, sizeof word);
        const std::uint64_t x = word ^ (kOnes * '\n');  // bytes equal to LF become zero
        // One bit per zero byte, moved to the byte's low end; the multiplication sums the
        // eight bytes into the top one (no popcnt instruction in a portable build).
        const std::uint64_t zeroBytes = ~(((x & kLow7) + kLow7) | x | kLow7) >> 7;
        count += static_cast<std::size_t>(zeroBytes * kOnes >> 56);
    }
    for (; i < text.size(); ++i) count += text[i] == '\n';
    return count;
}

std::optional<DxfError> readText(std::string_view bytes, std::vector<Tag>& tags) {
    tags.reserve(tags.size() + countLineFeeds(bytes) / 2 + 1);
    TextTagCursor cursor(bytes);
    Tag tag;
    std::optional<DxfError> error;
    while (cursor.next(tag, error)) {
        tags.push_back(tag);
        if (isEof(tag)) break;
    }
    return error;
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
                        return dxfError(TagPlace::Offset, where,
                                        "unexpected end of file in a group code");
                }
            } else if (!readInt(pos, 2, code)) {
                return dxfError(TagPlace::Offset, where, "unexpected end of file in a group code");
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

TextTagCursor::TextTagCursor(std::string_view bytes) : TextTagCursor(bytes, 0, 1) {
    if (bytes.starts_with(kUtf8Bom)) p_ += kUtf8Bom.size();
}

TextTagCursor::TextTagCursor(std::string_view bytes, std::uint32_t offset, std::uint32_t line)
    : p_(bytes.data() + std::min<std::size_t>(offset, bytes.size())),
      begin_(bytes.data()),
      end_(bytes.data() + bytes.size()),
      line_(line) {}

const char* TextTagCursor::parseAnyCode(const char* p, int& code) const {
    return parseCodeLine(p, end_, code);
}

const char* TextTagCursor::endOfLine(const char* p) const {
    const auto* newline = static_cast<const char*>(std::memchr(p, '\n', end_ - p));
    return newline ? newline : end_;
}

const char* TextTagCursor::trimmedEnd(int code, const char* value, const char* end) {
    const ValueType type = valueTypeOf(code);
    if (type == ValueType::String || type == ValueType::Comment) return end;
    while (end > value && isBlank(end[-1])) --end;
    return end;
}

DxfError TextTagCursor::badCode() const {
    std::string_view found(p_, static_cast<std::size_t>(endOfLine(p_) - p_));
    if (found.ends_with('\r')) found.remove_suffix(1);
    return dxfError(TagPlace::Line, line_, "expected a group code, found '" + excerpt(found) + "'");
}

DxfError TextTagCursor::endAfter(int code) const {
    return endAfterCode(TagPlace::Line, line_, code);
}

bool TagReader::isBinaryDxf(std::string_view bytes) {
    return bytes.starts_with(kBinarySentinel);
}

bool TagReader::isDwg(std::string_view bytes) {
    return bytes.starts_with("AC10");
}

std::optional<DxfError> TagReader::refusal(std::string_view bytes) {
    // Line numbers and offsets are 32 bits; no drawing comes near that size.
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        return DxfError{0, "the file is larger than 4 GiB and cannot be read"};
    }
    if (bytes.empty())
        return dxfError(TagPlace::Line, 1, "the file is empty; expected a group code");
    if (isDwg(bytes)) {
        return DxfError{0, "DWG files cannot be read; save the drawing as DXF"};
    }
    return {};
}

std::optional<DxfError> TagReader::read(std::string_view bytes, std::vector<Tag>& tags,
                                        TextArena& arena) {
    if (auto error = refusal(bytes)) return error;
    if (isBinaryDxf(bytes)) return BinaryReader(bytes, tags, arena).read();
    return readText(bytes, tags);
}

}  // namespace cad::db::dxf
