// Decoding and encoding of DXF text values. Escapes are looked for after the conversion to
// UTF-8: in double-byte code pages a trail byte may be 0x5C, which is not a backslash there.
#include "cad/db/dxf/TextCodec.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "cad/sys/CaretText.h"

namespace cad::db::dxf {
namespace {

using sys::CodePage;

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD, what toUtf8 gives for junk

bool needsNoWork(std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 || byte < 0x20 || c == '\\' || c == '^') return false;
    }
    return true;
}

std::optional<unsigned> hexValue(std::string_view text) {
    unsigned value = 0;
    for (const char c : text) {
        value <<= 4;
        if (c >= '0' && c <= '9') {
            value |= static_cast<unsigned>(c - '0');
        } else if (c >= 'A' && c <= 'F') {
            value |= static_cast<unsigned>(c - 'A' + 10);
        } else if (c >= 'a' && c <= 'f') {
            value |= static_cast<unsigned>(c - 'a' + 10);
        } else {
            return {};
        }
    }
    return value;
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool isHighSurrogate(unsigned c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(unsigned c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// "\U+XXXX" at the start of `text`, or nullopt.
std::optional<unsigned> unicodeEscape(std::string_view text) {
    if (text.size() < 7 || !text.starts_with("\\U+")) return {};
    return hexValue(text.substr(3, 4));
}

// Decodes the escape at the start of `text` (which starts with a backslash) into `out`;
// answers how many bytes it took, 0 when there is no well-formed escape.
std::size_t decodeBackslash(std::string_view text, std::string& out) {
    if (const auto c = unicodeEscape(text)) {
        if (isHighSurrogate(*c)) {
            // Characters beyond the first plane come as a pair of escapes.
            const auto low = unicodeEscape(text.substr(7));
            if (!low || !isLowSurrogate(*low)) return 0;
            appendUtf8(out, 0x10000 + ((*c - 0xD800) << 10) + (*low - 0xDC00));
            return 14;
        }
        if (isLowSurrogate(*c) || *c == 0) return 0;
        appendUtf8(out, *c);
        return 7;
    }
    if (text.size() >= 8 && text.starts_with("\\M+")) {
        // The digit names the code page the double-byte code belongs to.
        std::optional<CodePage> page;
        switch (text[3]) {
            case '1':
                page = CodePage::Ansi932;
                break;
            case '2':
                page = CodePage::Ansi950;
                break;
            case '3':
                page = CodePage::Ansi949;
                break;
            case '5':
                page = CodePage::Ansi936;
                break;
            default:
                break;  // '4' is Johab, which no conversion here supports
        }
        const auto code = hexValue(text.substr(4, 4));
        if (!page || !code || *code < 0x8000) return 0;
        const char bytes[2] = {static_cast<char>(*code >> 8), static_cast<char>(*code & 0xFF)};
        const std::string decoded = sys::toUtf8({bytes, 2}, *page);
        if (decoded.find(kReplacement) != std::string::npos) return 0;
        out += decoded;
        return 8;
    }
    return 0;
}

// "^ " is a caret, "^@" to "^_" the control characters 0 to 31.
std::size_t decodeCaret(std::string_view text, std::string& out) {
    if (text.size() < 2) return 0;
    if (text[1] == ' ') {
        out += '^';
        return 2;
    }
    if (text[1] >= '@' && text[1] <= '_') {
        out += static_cast<char>(text[1] - '@');
        return 2;
    }
    return 0;
}

}  // namespace

CodePage fileCodePage(std::string_view acadVersion, std::string_view dwgCodePageName) {
    constexpr int kFirstUtf8Version = 1021;
    int version = 0;
    if (acadVersion.starts_with("AC")) {
        std::from_chars(acadVersion.data() + 2, acadVersion.data() + acadVersion.size(), version);
    }
    if (version >= kFirstUtf8Version) return CodePage::Utf8;
    return sys::codePageFromDxfName(dwgCodePageName).value_or(CodePage::Ansi1252);
}

std::string decodeText(std::string_view raw, CodePage codePage) {
    if (needsNoWork(raw)) return std::string(raw);
    const std::string text = sys::toUtf8(raw, codePage);
    if (text.find_first_of("\\^") == std::string::npos) return text;
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t mark = text.find_first_of("\\^", pos);
        if (mark == std::string::npos) {
            out.append(text, pos);
            break;
        }
        out.append(text, pos, mark - pos);
        const std::string_view rest = std::string_view(text).substr(mark);
        const std::size_t taken =
            rest[0] == '\\' ? decodeBackslash(rest, out) : decodeCaret(rest, out);
        if (taken == 0) out += rest[0];
        pos = mark + (taken == 0 ? 1 : taken);
    }
    return out;
}

std::string encodeText(std::string_view utf8, CodePage codePage) {
    if (needsNoWork(utf8)) return std::string(utf8);
    std::string careted = sys::toCaretForm(utf8);
    if (codePage == CodePage::Utf8) return careted;
    return sys::fromUtf8(careted, codePage, sys::Unmappable::DxfEscape);
}

}  // namespace cad::db::dxf
